#pragma once

#include <xercesc/dom/DOMNode.hpp>

#include "framework/api/Color.h"
#include "framework/xml_util/DomWalk.h"
#include "framework/xml_util/FormatNames.h"
#include "framework/xml_util/XMLStrUtil.h"

namespace KVR
{

/// Reads the four attributes "FractionRed", "FractionGreen", "FractionBlue", "FractionAlpha". All must be there and
/// convert, or the colour is left alone. Values are not clamped.
void ReadColor(xercesc::DOMNode const* node, Color& color);

/// Reads "FractionRed", "FractionGreen", "FractionBlue" and perhaps "FractionAlpha"; without one of the first three the
/// colour is left alone and the answer is false. A fraction that does not convert is 0.
// Kept: alpha is optional here, although a plain colour needs it, and texts that do not convert do no harm.
[[nodiscard]] bool ReadFractions(xercesc::DOMNode const* node, Color& color);

/// Reads a style's colour as above and hands it to the setter, then the attribute "ColorFactor", if there is one, to
/// the other; that setter may be null. Whether a colour was read: without one the factor is not looked at.
template <class Style>
[[nodiscard]] bool ReadColorFactor(xercesc::DOMNode const* node, Style& style, void (Style::*setColor)(Color const&),
                                   void (Style::*setFactor)(double const&))
{
    Color color;
    if (!ReadFractions(node, color))
        return false;
    (style.*setColor)(color);
    XMLCh const* const factorText = AttributeText(node, Names::ColorFactor);
    if (setFactor && factorText)
    {
        double factor = 0.0;
        XMLStrUtil::XMLStrToDouble(factorText, factor);
        (style.*setFactor)(factor);
    }
    return true;
}

}  // namespace KVR

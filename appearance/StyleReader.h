#pragma once

#include <xercesc/dom/DOMNode.hpp>

#include "framework/xml_util/DomWalk.h"
#include "framework/xml_util/FormatNames.h"
#include "framework/xml_util/XMLStrUtil.h"

namespace KVR
{

class XMLStyle;
class XMLVitreolStyle;

/// Whether the style element has a child "VitreolStyleInfo", which ties it to the material library.
[[nodiscard]] bool HasVitreolStyleInfo(xercesc::DOMNode const* node);

/// Fills what an "IRenderStyle" element says, but id and label, into a plain style.
void ReadStyle(xercesc::DOMNode* node, XMLStyle& style);

/// The same for a style of the material library, whose elements and attributes are fewer.
void ReadVitreolStyle(xercesc::DOMNode* node, XMLVitreolStyle& style);

/// Hands the number in an attribute to the setter, 0 for a text that is no number; nothing for an absent attribute.
template <class Style>
void ReadStyleDouble(xercesc::DOMNode const* node, AttributeName name, Style& style,
                     void (Style::*setter)(double const&))
{
    XMLCh const* const text = AttributeText(node, name);
    if (!text)
        return;
    double value = 0.0;
    XMLStrUtil::XMLStrToDouble(text, value);
    (style.*setter)(value);
}

}  // namespace KVR

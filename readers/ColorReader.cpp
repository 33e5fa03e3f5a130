#include "readers/ColorReader.h"

#include <array>

#include "framework/xml_util/FormatNames.h"

namespace KVR
{

void ReadColor(xercesc::DOMNode const* node, Color& color)
{
    std::array<XMLCh const*, 4> const texts = {
        AttributeText(node, Names::FractionRed), AttributeText(node, Names::FractionGreen),
        AttributeText(node, Names::FractionBlue), AttributeText(node, Names::FractionAlpha)};
    std::array<double, 4> fractions{};
    for (std::size_t i = 0; i < texts.size(); ++i)
    {
        if (!texts[i] || !XMLStrUtil::XMLStrToDouble(texts[i], fractions[i]))
            return;
    }
    color.SetFractionalRGBA(fractions[0], fractions[1], fractions[2], fractions[3]);
}

bool ReadFractions(xercesc::DOMNode const* node, Color& color)
{
    XMLCh const* const redText = AttributeText(node, Names::FractionRed);
    XMLCh const* const greenText = AttributeText(node, Names::FractionGreen);
    XMLCh const* const blueText = AttributeText(node, Names::FractionBlue);
    if (!redText || !greenText || !blueText)
        return false;
    double red = 0.0;
    double green = 0.0;
    double blue = 0.0;
    XMLStrUtil::XMLStrToDouble(redText, red);
    XMLStrUtil::XMLStrToDouble(greenText, green);
    XMLStrUtil::XMLStrToDouble(blueText, blue);
    XMLCh const* const alphaText = AttributeText(node, Names::FractionAlpha);
    if (alphaText)
    {
        double alpha = 0.0;
        XMLStrUtil::XMLStrToDouble(alphaText, alpha);
        color.SetFractionalRGBA(red, green, blue, alpha);
    }
    else
    {
        color.SetFractionalRGB(red, green, blue);
    }
    return true;
}

}  // namespace KVR

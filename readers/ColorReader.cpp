#include "readers/ColorReader.h"

#include <array>

namespace KVR
{

void ReadColor(xercesc::DOMNode const* node, Color& color)
{
    std::array<XMLCh const*, 4> const texts = {
        AttributeText(node, u"FractionRed"), AttributeText(node, u"FractionGreen"),
        AttributeText(node, u"FractionBlue"), AttributeText(node, u"FractionAlpha")};
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
    XMLCh const* const redText = AttributeText(node, u"FractionRed");
    XMLCh const* const greenText = AttributeText(node, u"FractionGreen");
    XMLCh const* const blueText = AttributeText(node, u"FractionBlue");
    if (!redText || !greenText || !blueText)
        return false;
    double red = 0.0;
    double green = 0.0;
    double blue = 0.0;
    XMLStrUtil::XMLStrToDouble(redText, red);
    XMLStrUtil::XMLStrToDouble(greenText, green);
    XMLStrUtil::XMLStrToDouble(blueText, blue);
    XMLCh const* const alphaText = AttributeText(node, u"FractionAlpha");
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

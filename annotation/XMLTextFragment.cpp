#include "annotation/XMLTextFragment.h"

#include "annotation/Marked.h"
#include "annotation/NumberAttributes.h"
#include "framework/xml_util/FormatNames.h"
#include "framework/xml_util/XMLUtils.h"
#include "readers/BooleanText.h"
#include "readers/ColorReader.h"

namespace KVR
{

namespace
{

// Kept: "True" alone is true here, although the text as a whole takes "1" for its flag.
void ReadFlag(xercesc::DOMNode const* node, AttributeName name, std::optional<bool>& flag)
{
    if (XMLCh const* const text = AttributeText(node, name))
        flag = ToldBoolean(text, kBoolean_TrueWordElseFalse.test);
}

// Kept: specified also when the element is incomplete, with the colour that a new Color has.
void ReadColorInto(xercesc::DOMNode const* node, std::optional<Color>& color)
{
    ReadColor(node, color.emplace());
}

}  // namespace

XMLTextFragment::XMLTextFragment() = default;
XMLTextFragment::~XMLTextFragment() = default;

IsValueSpecifiedEnum XMLTextFragment::TextColor(Color& color) const
{
    return AnswerMarked(m_textColor, color);
}
IsValueSpecifiedEnum XMLTextFragment::TextBackgroundColor(Color& color) const
{
    return AnswerMarked(m_backgroundColor, color);
}
IsValueSpecifiedEnum XMLTextFragment::FontName(UTF16String& name) const
{
    return AnswerMarked(m_fontName, name);
}
IsValueSpecifiedEnum XMLTextFragment::IsBold(bool& bold) const
{
    return AnswerMarked(m_isBold, bold);
}
IsValueSpecifiedEnum XMLTextFragment::IsItalic(bool& italic) const
{
    return AnswerMarked(m_isItalic, italic);
}
IsValueSpecifiedEnum XMLTextFragment::IsUnderlined(bool& underlined) const
{
    return AnswerMarked(m_isUnderlined, underlined);
}
IsValueSpecifiedEnum XMLTextFragment::IsOverlined(bool& overlined) const
{
    return AnswerMarked(m_isOverlined, overlined);
}
IsValueSpecifiedEnum XMLTextFragment::Height(double& height) const
{
    return AnswerMarked(m_height, height);
}
IsValueSpecifiedEnum XMLTextFragment::Width(double& width) const
{
    return AnswerMarked(m_width, width);
}
IsValueSpecifiedEnum XMLTextFragment::FontSize(double& size) const
{
    return AnswerMarked(m_fontSize, size);
}
IsValueSpecifiedEnum XMLTextFragment::Gap(double& gap) const
{
    return AnswerMarked(m_gap, gap);
}
IsValueSpecifiedEnum XMLTextFragment::ScriptType(int& type) const
{
    return AnswerMarked(m_scriptType, type);
}

void XMLTextFragment::ReadAttributes(xercesc::DOMNode const* node)
{
    if (UTF16String name; XMLUtils::GetNodeAttribute(node, Names::FontName, name))
        m_fontName = std::move(name);
    XMLUtils::GetNodeAttribute(node, Names::Value, m_value);
    ReadFlag(node, Names::IsBold, m_isBold);
    ReadFlag(node, Names::IsItalic, m_isItalic);
    ReadFlag(node, Names::IsUnderlined, m_isUnderlined);
    ReadFlag(node, Names::IsOverlined, m_isOverlined);
    ReadDoubleAttribute(node, Names::Height, m_height);
    ReadDoubleAttribute(node, Names::Width, m_width);
    ReadDoubleAttribute(node, Names::FontSize, m_fontSize);
    ReadDoubleAttribute(node, Names::Gap, m_gap);
    ReadIntAttribute(node, Names::ScriptType, m_scriptType);
}

bool XMLTextFragment::ReadFromXML(xercesc::DOMNode const* node)
{
    if (!node)
        return false;
    ReadAttributes(node);
    for (xercesc::DOMNode const* const child : Children(node))
    {
        Match(child, On(Names::TextColor, [&] { ReadColorInto(child, m_textColor); }),
              On(Names::TextBackgroundColor, [&] { ReadColorInto(child, m_backgroundColor); }));
    }
    return true;
}

}  // namespace KVR

#include "annotation/XMLText.h"

#include "annotation/Marked.h"
#include "annotation/NumberAttributes.h"
#include "framework/api/Subscript.h"
#include "framework/xml_util/FormatNames.h"
#include "framework/xml_util/XMLStrUtil.h"
#include "readers/BooleanText.h"
#include "readers/CoordinateReader.h"
#include "readers/Ignored.h"

namespace KVR
{

XMLText::XMLText() = default;
XMLText::~XMLText() = default;

IsValueSpecifiedEnum XMLText::Origin(Position& origin) const
{
    origin = m_origin;
    return kIsValueSpecified_Yes;
}

IsValueSpecifiedEnum XMLText::Transform(Matrix3d& transform) const
{
    return AnswerMarked(m_transform, transform);
}

ITextLine* XMLText::LineAt(unsigned long long index) const
{
    return CheckedAt(m_lines, index).get();
}

IsValueSpecifiedEnum XMLText::TextJustification(int& justification) const
{
    justification = m_textJustification;
    return static_cast<IsValueSpecifiedEnum>(m_textJustification);
}

IsValueSpecifiedEnum XMLText::IsVertical(bool& vertical) const
{
    return AnswerMarked(m_isVertical, vertical);
}

IsValueSpecifiedEnum XMLText::LengthUnit(UnitTypeEnum& unit) const
{
    return AnswerMarked(m_lengthUnit, unit);
}

void XMLText::ReadAttributes(xercesc::DOMNode const* node)
{
    // Kept: a text that is no unit counts as specified all the same, as unit 0.
    if (XMLCh const* const text = AttributeText(node, Names::LengthUnit))
        Ignored(XMLStrUtil::StringToUnitType(text, m_lengthUnit.emplace(kUnitType_Unknown)));
    // Kept: "1" alone is true here, although the flags of a fragment take "True".
    if (XMLCh const* const text = AttributeText(node, Names::IsVertical))
        m_isVertical = ToldBoolean(text, kBoolean_OneElseFalse.test);
    std::optional<int> justification;
    ReadIntAttribute(node, Names::TextJustification, justification);
    m_textJustification = justification.value_or(m_textJustification);
}

void XMLText::ReadChild(xercesc::DOMNode* child)
{
    Match(child,  //
          On(Names::Origin,
             [&]
             {
                 double x = 0.0;
                 double y = 0.0;
                 double z = 0.0;
                 ReadXYZ(child, x, y, z);
                 m_origin = Position(x, y, z);
             }),
          // Kept: the identity is kept here, although no object keeps it as its place.
          On(Names::Transform,
             [&]
             {
                 TellObserver(&ReadObserver::LastCounts, child);
                 XMLStrUtil::GetTransfFromStr(TextContent(child), m_transform.emplace());
             }),
          On(Names::ITextLine,
             [&]
             {
                 m_lines.push_back(std::make_unique<XMLTextLine>());
                 Ignored(m_lines.back()->ReadFromXML(child));
             }));
}

bool XMLText::ReadFromXML(xercesc::DOMNode* node)
{
    if (!node)
        return false;
    ReadAttributes(node);
    for (xercesc::DOMNode* const child : Children(node))
        ReadChild(child);
    return true;
}

}  // namespace KVR

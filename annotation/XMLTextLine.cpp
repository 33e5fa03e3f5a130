#include "annotation/XMLTextLine.h"

#include "annotation/Marked.h"
#include "annotation/NumberAttributes.h"
#include "framework/api/Subscript.h"
#include "framework/xml_util/DomWalk.h"
#include "framework/xml_util/FormatNames.h"
#include "readers/Ignored.h"

namespace KVR
{

XMLTextLine::XMLTextLine() = default;
XMLTextLine::~XMLTextLine() = default;

ITextFragment* XMLTextLine::FragmentAt(unsigned long long index) const
{
    return CheckedAt(m_fragments, index).get();
}

IsValueSpecifiedEnum XMLTextLine::TextAlignment(int& alignment) const
{
    return AnswerMarked(m_textAlignment, alignment);
}

IsValueSpecifiedEnum XMLTextLine::Indentation(double& indentation) const
{
    return AnswerMarked(m_indentation, indentation);
}

bool XMLTextLine::ReadFromXML(xercesc::DOMNode const* node)
{
    if (!node)
        return false;
    ReadIntAttribute(node, Names::TextAlignment, m_textAlignment);
    ReadDoubleAttribute(node, Names::Indentation, m_indentation);
    for (xercesc::DOMNode const* const child : Children(node))
    {
        Match(child, On(Names::ITextFragment,
                        [&]
                        {
                            m_fragments.push_back(std::make_unique<XMLTextFragment>());
                            Ignored(m_fragments.back()->ReadFromXML(child));
                        }));
    }
    return true;
}

}  // namespace KVR

#include "inspect/document/TagText.h"

#include <cstddef>

namespace KVR
{

namespace
{

constexpr std::string_view kWhiteSpace = " \t\r\n";
constexpr std::string_view kNameEnds = " \t\r\n=/>";

}  // namespace

// In a start tag a "<" stands at its beginning alone.
TagText::TagText(std::string_view before, std::uint64_t end)
{
    std::size_t const start = before.rfind('<');
    if (start == std::string_view::npos)
        return;
    m_tag = before.substr(start);
    m_begin = end - m_tag.size();
}

ByteRange TagText::RangeOf(std::size_t begin, std::size_t end) const
{
    return {m_begin + begin, m_begin + end};
}

ByteRange TagText::Tag() const
{
    return RangeOf(0, m_tag.size());
}

ByteRange TagText::Name() const
{
    if (m_tag.empty())
        return {};
    std::size_t const end = m_tag.find_first_of(kNameEnds, 1);
    return RangeOf(1, end == std::string_view::npos ? m_tag.size() : end);
}

bool TagText::Find(std::string_view name, Attribute& attribute) const
{
    for (std::size_t at = m_tag.find_first_of(kNameEnds);;)
    {
        at = m_tag.find_first_not_of(kWhiteSpace, at);
        if (at == std::string_view::npos || m_tag[at] == '/' || m_tag[at] == '>')
            return false;
        attribute.name = at;
        attribute.nameEnd = m_tag.find_first_of(kNameEnds, at);
        std::size_t const quote = m_tag.find_first_of("\"'", attribute.nameEnd);
        if (quote == std::string_view::npos)
            return false;
        attribute.value = quote + 1;
        attribute.valueEnd = m_tag.find(m_tag[quote], quote + 1);
        if (attribute.valueEnd == std::string_view::npos)
            return false;
        if (m_tag.substr(attribute.name, attribute.nameEnd - attribute.name) == name)
            return true;
        at = attribute.valueEnd + 1;
    }
}

ByteRange TagText::AttributeName(std::string_view name) const
{
    Attribute attribute;
    return !m_tag.empty() && Find(name, attribute) ? RangeOf(attribute.name, attribute.nameEnd) : ByteRange();
}

ByteRange TagText::AttributeValue(std::string_view name) const
{
    Attribute attribute;
    return !m_tag.empty() && Find(name, attribute) ? RangeOf(attribute.value, attribute.valueEnd) : ByteRange();
}

}  // namespace KVR

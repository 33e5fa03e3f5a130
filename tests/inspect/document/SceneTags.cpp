#include "tests/inspect/document/SceneTags.h"

#include <algorithm>
#include <regex>

namespace KVR::Test
{

namespace
{

constexpr char kSpace[] = " \t\r\n";

void ReadAttributes(std::string const& text, SceneTag& tag, std::size_t at)
{
    for (;;)
    {
        at = text.find_first_not_of(kSpace, at);
        if (text[at] == '/' || text[at] == '>')
            break;
        TagAttribute attribute;
        attribute.nameBegin = at;
        std::size_t const equals = text.find('=', at);
        attribute.name = text.substr(at, text.find_first_of(" \t\r\n=", at) - at);
        attribute.valueBegin = text.find_first_of("\"'", equals) + 1;
        std::size_t const end = text.find(text[attribute.valueBegin - 1], attribute.valueBegin);
        attribute.value = text.substr(attribute.valueBegin, end - attribute.valueBegin);
        tag.attributes.push_back(attribute);
        at = end + 1;
    }
    tag.isEmpty = text[at] == '/';
    tag.end = text.find('>', at) + 1;
}

}  // namespace

std::vector<SceneTag> TagsOf(std::string const& text)
{
    std::vector<SceneTag> tags;
    std::vector<std::size_t> open;
    std::size_t behind = 0;
    for (std::size_t at = text.find('<'); at != std::string::npos; at = text.find('<', behind))
    {
        if (!open.empty() && text.find_first_not_of(kSpace, behind) < at)
            tags[open.back()].hasText = true;
        if (text.compare(at, 4, "<!--") == 0)
            behind = text.find("-->", at) + 3;
        else if (text[at + 1] == '?' || text[at + 1] == '!')
            behind = text.find('>', at) + 1;
        else if (text[at + 1] == '/')
        {
            behind = text.find('>', at) + 1;
            tags[open.back()].endTag = at;
            tags[open.back()].elementEnd = behind;
            open.pop_back();
        }
        else
        {
            SceneTag tag;
            tag.begin = at;
            std::size_t const nameEnd = text.find_first_of(" \t\r\n/>", at);
            tag.name = text.substr(at + 1, nameEnd - at - 1);
            tag.parent = open.empty() ? std::string() : tags[open.back()].name;
            tag.grandparent = open.empty() ? std::string() : tags[open.back()].parent;
            ReadAttributes(text, tag, nameEnd);
            behind = tag.end;
            tag.endTag = tag.elementEnd = tag.end;
            tags.push_back(tag);
            if (!tag.isEmpty)
                open.push_back(tags.size() - 1);
        }
    }
    return tags;
}

std::size_t LineOf(std::string const& text, std::size_t at)
{
    return 1 + static_cast<std::size_t>(std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(at), '\n'));
}

std::string Replaced(std::string text, std::size_t at, std::size_t length, std::string const& by)
{
    return text.replace(at, length, by);
}

std::string OtherCase(std::string name)
{
    bool const isUpper = name[0] >= 'A' && name[0] <= 'Z';
    name[0] = static_cast<char>(isUpper ? name[0] - 'A' + 'a' : name[0] - 'a' + 'A');
    return name;
}

bool Matches(std::string const& text, char const* pattern)
{
    return std::regex_match(text, std::regex(pattern));
}

}  // namespace KVR::Test

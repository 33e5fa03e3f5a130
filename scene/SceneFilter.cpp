#include "scene/SceneFilter.h"

namespace KVR
{

namespace
{

bool IsInside(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

// Where the character ends that begins at a place of the text.
std::size_t EndOfCharacter(std::string_view text, std::size_t place)
{
    do
    {
        ++place;
    } while (place < text.size() && IsInside(text[place]));
    return place;
}

std::string SentenceOf(std::vector<SceneFilterError::Unmatched> const& unmatched)
{
    std::string sentence;
    for (SceneFilterError::Unmatched const& entry : unmatched)
    {
        sentence += sentence.empty() ? "" : "; ";
        sentence +=
            (entry.isLayer ? "nothing to take or leave out is in the layer " : "nothing has the name ") + entry.name;
        for (std::size_t i = 0; i < entry.nearest.size(); ++i)
            sentence += (i == 0 ? ", the nearest are " : ", ") + entry.nearest[i];
    }
    return sentence;
}

}  // namespace

bool SceneFilter::Fits(std::string_view name, std::string_view pattern)
{
    constexpr std::size_t kNone = std::string_view::npos;
    std::size_t at = 0;
    std::size_t next = 0;
    // The latest "*", and up to where of the name it reaches.
    std::size_t star = kNone;
    std::size_t reach = 0;
    while (at < name.size())
        if (next < pattern.size() && pattern[next] == '*')
        {
            star = next++;
            reach = at;
        }
        else if (next < pattern.size() && pattern[next] == '?')
        {
            at = EndOfCharacter(name, at);
            ++next;
        }
        else if (next < pattern.size() && pattern[next] == name[at])
        {
            ++at;
            ++next;
        }
        else if (star != kNone)
        {
            reach = EndOfCharacter(name, reach);
            at = reach;
            next = star + 1;
        }
        else
            return false;
    return pattern.find_first_not_of('*', next) == kNone;
}

SceneFilterError::SceneFilterError(std::vector<Unmatched> unmatched)
    : runtime_error(SentenceOf(unmatched)), m_unmatched(std::move(unmatched))
{
}

}  // namespace KVR

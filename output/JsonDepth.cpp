#include "output/JsonDepth.h"

#include <algorithm>
#include <cstddef>

namespace KVR
{

namespace
{

constexpr std::size_t kMostLevels = 200;

// Of the quote behind a text that begins at a quote; the end of all without one.
std::size_t EndOfText(std::string_view json, std::size_t begin) noexcept
{
    std::size_t end = begin;
    std::size_t escapes = 0;
    do
    {
        end = std::min(json.find('"', end + 1), json.size());
        escapes = 0;
        while (json[end - 1 - escapes] == '\\')
            ++escapes;
    } while (escapes % 2 == 1 && end < json.size());
    return end;
}

}  // namespace

bool IsShallowJson(std::string_view json) noexcept
{
    std::size_t level = 0;
    for (std::size_t i = 0; i < json.size(); ++i)
    {
        char const c = json[i];
        if (c == '"')
            i = EndOfText(json, i);
        else if ((c == '[' || c == '{') && ++level > kMostLevels)
            return false;
        else if ((c == ']' || c == '}') && level > 0)
            --level;
    }
    return true;
}

}  // namespace KVR

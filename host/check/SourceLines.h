#pragma once

#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace KVR
{

/// Some lines of a text file, which is read once from its beginning to the last of them.
class SourceLines
{
public:
    /// Lines count from 1. None of a file that cannot be read, or that is no text in UTF-8 or a form of ASCII.
    SourceLines(std::string const& path, std::set<std::size_t> const& numbers);

    struct Excerpt
    {
        /// Of one line, with blanks for what is no character to show, and "..." where it is cut; empty for none.
        std::string text;
        /// How many columns stand before the place.
        std::size_t caret = 0;
    };
    /// What stands around a column, which counts from 1 in characters.
    Excerpt Around(std::size_t line, std::size_t column);

private:
    std::map<std::size_t, std::string> m_lines;
    /// Where the characters of the line begin that was looked at last: many places of long lines are looked at.
    std::size_t m_latest = 0;
    std::vector<std::size_t> m_starts;
};

}  // namespace KVR

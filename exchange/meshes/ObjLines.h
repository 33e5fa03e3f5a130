#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "exchange/meshes/TextWords.h"

namespace KVR
{

/// The lines of an OBJ file: those of which the last character of each but the last is a backslash are one.
class ObjLines
{
public:
    explicit ObjLines(std::string_view text) : m_lines(text) {}

    bool Next(std::string_view& line)
    {
        if (!m_lines.Next(line))
            return false;
        m_number = m_lines.Number();
        if (!line.ends_with('\\'))
            return true;
        m_joined.clear();
        bool isMore = true;
        while (isMore)
        {
            isMore = line.ends_with('\\');
            m_joined += line.substr(0, line.size() - (isMore ? 1 : 0));
            m_joined += ' ';
            isMore = isMore && m_lines.Next(line);
        }
        line = m_joined;
        return true;
    }
    std::string Where() const { return "line " + std::to_string(m_number); }
    std::size_t Place() const noexcept { return m_lines.Place(); }

private:
    TextLines m_lines;
    std::size_t m_number = 0;
    std::string m_joined;
};

}  // namespace KVR

#include "host/export/NotCarried.h"

#include <fmt/format.h>

namespace KVR
{

std::string NotCarried::Text() const
{
    std::string text;
    for (auto const& [kind, count] : m_counts)
        text += fmt::format("{}{} {}", text.empty() ? "" : ", ", count, kind);
    return text;
}

}  // namespace KVR

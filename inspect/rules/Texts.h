#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace KVR
{

/// "1 polygon", "3 polygons", "2 vertices".
inline std::string Counted(std::size_t count, std::string_view thing)
{
    std::string text = std::to_string(count) + ' ';
    if (count != 1 && thing.ends_with("ex"))
        return text.append(thing.substr(0, thing.size() - 2)) + "ices";
    if (count != 1 && thing.ends_with('y'))
        return text.append(thing.substr(0, thing.size() - 1)) + "ies";
    return text.append(thing) + (count == 1 ? "" : "s");
}

}  // namespace KVR

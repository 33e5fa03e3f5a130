#pragma once

#include <set>
#include <string>
#include <string_view>
#include <unordered_set>

namespace KVR
{

class ReadRecord;

/// The ids of the objects of a scene that take something out of side files, by what they are; and of the textures that
/// styles name.
struct UsedIds
{
    using Ids = std::unordered_set<std::string>;

    Ids meshes;
    Ids curves;
    Ids bodies;
    Ids styles;
    /// The data ids of edges that curves name.
    Ids edges;
    /// Named by styles.
    Ids textures;
    /// Of elements that found no record: what a record may have been meant for.
    std::set<std::string> withoutRecord;

    static UsedIds Of(ReadRecord const& record);
};

}  // namespace KVR

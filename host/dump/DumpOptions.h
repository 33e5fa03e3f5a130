#pragma once

#include <string>
#include <vector>

namespace KVR
{

/// What the user wants to see of a scene's objects.
struct DumpOptions
{
    /// Ids to begin a walk at, behind the walk from the root.
    std::vector<std::string> ids;
    /// Type ids of the extension data to ask each object for.
    std::vector<std::string> extensionTypeIds;
    /// Leave out the long lists of meshes, point clouds and polylines, and the measures of bodies that cost much.
    bool summary = false;
    /// Leave those measures in a summary: volumes, areas and boxes.
    bool mass = false;
};

}  // namespace KVR

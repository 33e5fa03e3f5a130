#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "scene/SceneBox.h"

namespace KVR
{

class IObject;

/// What the tree says of geometry.
struct GeometryFacts
{
    struct Count
    {
        std::string_view one;
        std::string_view many;
        /// The name in JSON.
        std::string_view key;
        unsigned long long value;
    };
    std::vector<Count> counts;
    /// What is to be said instead of counts.
    std::string_view remark;
    /// In the object's own coordinates. None for bodies, of which a box takes long to compute, geometry without points
    /// and for curves that are infinitely long. That of a bent curve is right to a millionth of its size.
    std::optional<SceneBox> box;

    /// Nothing for objects other than bodies, meshes and curves.
    static std::optional<GeometryFacts> Of(IObject& object);
};

}  // namespace KVR

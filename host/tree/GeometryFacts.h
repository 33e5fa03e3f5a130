#pragma once

#include <optional>
#include <string_view>
#include <vector>

namespace KVR
{

class IObject;

/// The smallest box around geometry, parallel to the axes, in the object's own coordinates.
struct Box
{
    double low[3];
    double high[3];

    /// The box around a box and a point.
    static Box Around(std::optional<Box> const& box, double x, double y, double z);
};

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
    /// None for bodies, of which a box takes long to compute, geometry without points and for curves that are
    /// infinitely long. That of a bent curve is right to a millionth of its size.
    std::optional<Box> box;

    /// Nothing for objects other than bodies, meshes and curves.
    static std::optional<GeometryFacts> Of(IObject& object);
};

}  // namespace KVR

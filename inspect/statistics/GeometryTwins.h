#pragma once

#include <cstddef>
#include <vector>

namespace KVR
{

class Scene;
class IObject;

/// Meshes, or bodies, of a scene that are the same but for their ids, or for a rigid motion.
struct GeometryTwins
{
    /// The points of one are within this share of the diagonal of its box of those of the other, after the motion.
    static constexpr double kTolerance = 1e-6;

    struct Member
    {
        IObject* object;
        /// One of the components that have it.
        std::size_t component;
    };
    /// Two or more, in the scene's order. They are all meshes or all bodies.
    std::vector<Member> members;
    /// Whether one of them has to be moved to be another; otherwise all have the same numbers.
    bool areMoved = false;

    /// All sets of twins, in the order of their first members. What is compared are, of meshes, triangles and the
    /// points of their corners; of bodies, points on the edges and the centres of the faces, beside the kinds, areas
    /// and lengths of both: in the order in which they have them, so that what lists the same in another order is not
    /// found. Mirror images are no twins. Normals, texture and styles count for nothing.
    static std::vector<GeometryTwins> Of(Scene const& scene);
};

}  // namespace KVR

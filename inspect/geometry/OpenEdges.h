#pragma once

#include <cstddef>

namespace KVR
{

class IPolygonMesh;

/// The sides of polygons that no other polygon meets from the other side. Points in the same place count as one.
struct OpenEdges
{
    std::size_t count = 0;
    /// A polygon that has one; of no meaning without any.
    std::size_t polygon = 0;

    /// Polygons with indices that the mesh does not have are left out.
    static OpenEdges Of(IPolygonMesh const& mesh);
};

}  // namespace KVR

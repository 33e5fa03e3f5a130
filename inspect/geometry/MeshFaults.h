#pragma once

#include <cstddef>

namespace KVR
{

class IPolygonMesh;

/// What of a mesh makes no sense, or not what it seems to. Polygons, vertices and segments count from 0, as the mesh
/// has them.
struct MeshFaults
{
    struct Fault
    {
        std::size_t count = 0;
        /// The first of them; of no meaning without any.
        std::size_t first = 0;

        void Add(std::size_t place)
        {
            if (count++ == 0)
                first = place;
        }
    };

    /// Vertices with a coordinate that is no number, or infinite.
    Fault numbers;
    /// Polygons that name a vertex, a normal or a texture vertex that the mesh does not have.
    Fault vertexIndices;
    Fault normalIndices;
    Fault textureIndices;
    /// Segments that name a polygon, or a vertex, that the mesh does not have.
    Fault faceSegments;
    Fault edgeSegments;
    /// Polygons of fewer than three vertices.
    Fault tooFewCorners;
    /// Polygons without area: of a strip or a fan one with a triangle of three different vertices that has none. A
    /// strip may name a vertex twice in a row: so it turns.
    Fault degenerate;
    /// Polygons with a normal of length 0, or that is no number.
    Fault zeroNormals;
    /// Polygons with a normal that points against the side from which the corners run counter-clockwise.
    Fault turnedNormals;

    /// Each polygon counts once for each fault. Those of the indices take no part in the others.
    static MeshFaults Of(IPolygonMesh const& mesh);
};

}  // namespace KVR

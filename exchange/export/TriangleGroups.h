#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "scene/Scene.h"

namespace KVR
{

class BodyMesh;

/// Triangles of geometry by their styles, in single precision and with one index for each corner, as graphics formats
/// want them: corners that differ in normal or texture are vertices of their own.
class TriangleGroups
{
public:
    struct Group
    {
        /// Empty for triangles without a style of their own.
        std::string style;
        bool hasNormals = false;
        bool hasTexture = false;
        /// Three for each vertex, and two of texture.
        std::vector<float> positions;
        std::vector<float> normals;
        std::vector<float> texture;
        /// Three for each triangle.
        std::vector<std::uint32_t> indices;
    };

    /// The triangles of a mesh. Polygons whose indices or numbers make no sense are left out, and counted.
    static TriangleGroups Of(IPolygonMesh& mesh);
    /// The triangles of a body, which is meshed where it has none. Its faces' styles come from the body's own map.
    static TriangleGroups Of(IBrep& body, double deflection);

    std::vector<Group> groups;
    std::size_t brokenPolygons = 0;
    std::size_t facesWithoutTriangles = 0;

private:
    friend class TriangleCollector;
};

/// Polylines of geometry in single precision: three numbers for each point.
using Polylines = std::vector<std::vector<float>>;

/// The edges of a body, and of a curve its pieces. What is infinitely long is left out.
Polylines EdgesOf(IBrep& body);
Polylines PiecesOf(ICurve& curve);

}  // namespace KVR

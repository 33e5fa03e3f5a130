#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "scene/Export.h"
#include "scene/MeshQuality.h"

namespace KVR
{

class IBrep;
class IPolygonMesh;

/// The triangles of a mesh, or of a meshed body, as flat arrays, in the object's own coordinates and unit of length and
/// before its transform. A vertex is a point with one normal and one place in the texture: corners that differ in one
/// of them are vertices of their own. What is read is copied: nothing of it belongs to the producer.
struct KVR_SCENE_API SceneMesh
{
    static constexpr std::uint32_t kNoFace = std::numeric_limits<std::uint32_t>::max();

    /// The triangles of one style, and the vertices that they alone use, each one after the other. What a style has
    /// with normals and what without, or with texture and without, are runs of their own.
    struct Run
    {
        /// The first style of the polygons' material, or of the face; empty for triangles without a style of their own.
        std::string style;
        bool hasNormals = false;
        bool hasTexture = false;
        std::size_t firstVertex = 0;
        std::size_t vertexCount = 0;
        std::size_t firstTriangle = 0;
        std::size_t triangleCount = 0;
    };

    /// A face of a body, or a face segment of a mesh. Ids are empty where there is none.
    struct Face
    {
        /// The triangles of a segment that is not shown are left out.
        bool isVisible = true;
        std::string dataId;
        std::string persistentId;
    };

    /// An edge of a body, or an edge segment of a mesh: a run of points. Ids as of a face.
    struct Edge
    {
        std::size_t firstPoint = 0;
        std::size_t pointCount = 0;
        std::string dataId;
        std::string persistentId;
    };

    /// The triangles of a mesh. Strips, fans and polygons with dents are divided. Polygons whose indices or numbers
    /// make no sense are left out, and counted. Whether the mesh calls its polygons clockwise is not looked at.
    static SceneMesh Of(IPolygonMesh& mesh);

    /// The triangles of a body; a length of the quality is in the unit of the shape. A deflection that is finer than
    /// the kernel's tolerance, or no number, counts as that tolerance, and an angle that is none as 0.5. The shape
    /// keeps the triangulation, and one that it has and that is as fine is used. Styles are those that the body has for
    /// its faces. Edges to which no face brings points are followed by themselves. Empty for an object without a body.
    static SceneMesh Of(IBrep& body, MeshQuality const& quality);
    /// The same, unless that takes more triangles, or more points of edges by themselves: nothing then, and the shape
    /// has no triangulation of its surfaces.
    static std::optional<SceneMesh> Of(IBrep& body, MeshQuality const& quality, std::size_t most);
    /// The same to a distance of at most `deflection` times the diagonal of its box.
    static SceneMesh Of(IBrep& body, double deflection);

    /// Gives the faces of a mesh the ids of the faces of the body that it is the mesh of. Nothing happens unless both
    /// have the same number of faces; edges likewise.
    void TakeIdsOf(IBrep const& body);

    /// The number of vertices of all runs.
    std::size_t VertexCount() const noexcept { return positions.size() / 3; }
    /// The number of triangles of all runs.
    std::size_t TriangleCount() const noexcept { return indices.size() / 3; }

    /// In the order in which their first triangles come.
    std::vector<Run> runs;
    /// Three for each vertex. No number is greater than fits a float.
    std::vector<double> positions;
    /// Three for each vertex, of length 1; empty when no run has any, and zeros for the vertices of a run without.
    std::vector<float> normals;
    /// Two for each vertex, the second one down from the top; empty or zeros as for normals. They are those of the
    /// mesh's first set, if that has two dimensions.
    std::vector<float> texture;
    /// Three for each triangle: places in the list of all vertices.
    std::vector<std::uint32_t> indices;
    /// For each triangle its face, or kNoFace; empty when there are no faces. A polygon of several segments counts for
    /// the first one.
    std::vector<std::uint32_t> faceOfTriangle;
    std::vector<Face> faces;
    /// Three for each point.
    std::vector<double> edgePoints;
    /// Of a body those that have points, in the order of its edges; of a mesh all segments with two points or more.
    std::vector<Edge> edges;

    std::size_t brokenPolygons = 0;
    /// Of a segment that is not shown.
    std::size_t hiddenPolygons = 0;
    std::size_t facesWithoutTriangles = 0;
};

}  // namespace KVR

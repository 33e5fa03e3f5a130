#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

#include "scene/CurvePoints.h"
#include "scene/SceneBox.h"
#include "scene/SceneMesh.h"

namespace KVR
{

struct ScenePoints;

/// What a mesh of a viewer file is drawn with.
struct ViewPrimitive
{
    enum class Role
    {
        kFaces,
        kEdges,
        kLines,
        kPoints
    };

    Role role = Role::kFaces;
    /// The index of the style that it has of its own; -1 for none.
    int style = -1;
    /// Three for each vertex, from the origin of the mesh.
    std::vector<float> positions;
    /// The same, or empty.
    std::vector<float> normals;
    /// Three for each triangle, two for each segment of a line; empty for points.
    std::vector<std::uint32_t> indices;
    /// The first triangle or segment of each run of one face or edge, and the number of that; empty where nothing tells
    /// them apart.
    std::vector<std::uint32_t> ranges;
    std::vector<std::uint32_t> numbers;
};

/// A mesh of a viewer file.
struct ViewMesh
{
    using StyleIndex = std::function<int(std::string_view id)>;

    /// The triangles and edges of a mesh. `styleOf` tells the index of a style.
    static ViewMesh Of(SceneMesh const& mesh, StyleIndex const& styleOf);
    static ViewMesh Of(SceneLines const& lines);
    static ViewMesh Of(ScenePoints const& points);

    bool IsEmpty() const noexcept { return primitives.empty(); }
    std::size_t TriangleCount() const;
    /// Vertices of faces.
    std::size_t VertexCount() const;

    /// What stands so far out that floats would lose detail is moved: its numbers are from here.
    std::array<double, 3> origin{};
    /// Around all of it, in its own coordinates; nothing when it is empty.
    std::optional<SceneBox> box;
    std::vector<ViewPrimitive> primitives;
};

}  // namespace KVR

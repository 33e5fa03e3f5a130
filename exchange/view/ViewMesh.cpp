#include "exchange/view/ViewMesh.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <span>

#include "scene/ScenePoints.h"

namespace KVR
{

namespace
{

// Farther out than so many times its size a mesh is moved to the origin.
constexpr double kFarOut = 1e3;

// Takes in the points that a mesh is to have, and finds its origin.
void Enclose(ViewMesh& mesh, std::span<double const> points)
{
    for (std::size_t i = 0; i + 2 < points.size(); i += 3)
        mesh.box = SceneBox::Around(mesh.box, {points[i], points[i + 1], points[i + 2]});
}

void FindOrigin(ViewMesh& mesh)
{
    if (!mesh.box)
        return;
    double size = 0.0;
    double distance = 0.0;
    for (std::size_t i = 0; i < 3; ++i)
    {
        size = std::max(size, mesh.box->high[i] - mesh.box->low[i]);
        distance = std::max({distance, std::abs(mesh.box->high[i]), std::abs(mesh.box->low[i])});
    }
    for (std::size_t i = 0; i < 3 && distance > kFarOut * size; ++i)
        mesh.origin[i] = mesh.box->low[i];
}

std::vector<float> Moved(std::span<double const> points, std::array<double, 3> const& origin)
{
    std::vector<float> moved(points.size());
    for (std::size_t i = 0; i < points.size(); ++i)
        moved[i] = static_cast<float>(points[i] - origin[i % 3]);
    return moved;
}

// The triangles of a run sorted by face, which keeps their order within each, and the ranges of the faces.
void TakeTriangles(ViewPrimitive& primitive, SceneMesh const& mesh, SceneMesh::Run const& run)
{
    std::vector<std::size_t> order(run.triangleCount);
    std::iota(order.begin(), order.end(), run.firstTriangle);
    bool const hasFaces = !mesh.faceOfTriangle.empty();
    auto const isBefore = [&](std::size_t left, std::size_t right)
    { return mesh.faceOfTriangle[left] < mesh.faceOfTriangle[right]; };
    if (hasFaces && !std::is_sorted(order.begin(), order.end(), isBefore))
        std::stable_sort(order.begin(), order.end(), isBefore);
    primitive.indices.reserve(3 * run.triangleCount);
    for (std::size_t place = 0; place < order.size(); ++place)
    {
        std::size_t const triangle = order[place];
        if (hasFaces && (place == 0 || isBefore(order[place - 1], triangle)))
        {
            primitive.ranges.push_back(static_cast<std::uint32_t>(place));
            primitive.numbers.push_back(mesh.faceOfTriangle[triangle]);
        }
        for (std::size_t corner = 0; corner < 3; ++corner)
            primitive.indices.push_back(mesh.indices[3 * triangle + corner] -
                                        static_cast<std::uint32_t>(run.firstVertex));
    }
}

// A polyline behind those that are there.
void AddLine(ViewPrimitive& primitive, std::span<double const> points, std::array<double, 3> const& origin,
             std::size_t number)
{
    auto const first = static_cast<std::uint32_t>(primitive.positions.size() / 3);
    auto const count = static_cast<std::uint32_t>(points.size() / 3);
    if (count < 2)
        return;
    primitive.ranges.push_back(static_cast<std::uint32_t>(primitive.indices.size() / 2));
    primitive.numbers.push_back(static_cast<std::uint32_t>(number));
    std::vector<float> const moved = Moved(points, origin);
    primitive.positions.insert(primitive.positions.end(), moved.begin(), moved.end());
    for (std::uint32_t i = 0; i + 1 < count; ++i)
        primitive.indices.insert(primitive.indices.end(), {first + i, first + i + 1});
}

}  // namespace

ViewMesh ViewMesh::Of(SceneMesh const& mesh, StyleIndex const& styleOf)
{
    ViewMesh made;
    Enclose(made, mesh.positions);
    Enclose(made, mesh.edgePoints);
    FindOrigin(made);
    for (SceneMesh::Run const& run : mesh.runs)
    {
        if (run.triangleCount == 0)
            continue;
        ViewPrimitive& primitive = made.primitives.emplace_back();
        primitive.style = run.style.empty() ? -1 : styleOf(run.style);
        std::span const positions(mesh.positions);
        primitive.positions = Moved(positions.subspan(3 * run.firstVertex, 3 * run.vertexCount), made.origin);
        if (run.hasNormals)
        {
            auto const first = mesh.normals.begin() + static_cast<std::ptrdiff_t>(3 * run.firstVertex);
            primitive.normals.assign(first, first + static_cast<std::ptrdiff_t>(3 * run.vertexCount));
        }
        TakeTriangles(primitive, mesh, run);
    }
    ViewPrimitive edges;
    edges.role = ViewPrimitive::Role::kEdges;
    for (std::size_t i = 0; i < mesh.edges.size(); ++i)
        AddLine(edges, std::span(mesh.edgePoints).subspan(3 * mesh.edges[i].firstPoint, 3 * mesh.edges[i].pointCount),
                made.origin, i);
    if (!edges.indices.empty())
        made.primitives.push_back(std::move(edges));
    return made;
}

ViewMesh ViewMesh::Of(SceneLines const& lines)
{
    ViewMesh made;
    Enclose(made, lines.points);
    FindOrigin(made);
    ViewPrimitive drawn;
    drawn.role = ViewPrimitive::Role::kLines;
    for (std::size_t i = 0; i < lines.Count(); ++i)
        AddLine(drawn, lines.At(i), made.origin, i);
    if (!drawn.indices.empty())
        made.primitives.push_back(std::move(drawn));
    return made;
}

ViewMesh ViewMesh::Of(ScenePoints const& points)
{
    ViewMesh made;
    Enclose(made, points.points);
    FindOrigin(made);
    if (points.points.empty())
        return made;
    ViewPrimitive& drawn = made.primitives.emplace_back();
    drawn.role = ViewPrimitive::Role::kPoints;
    drawn.positions = Moved(points.points, made.origin);
    return made;
}

std::size_t ViewMesh::TriangleCount() const
{
    std::size_t count = 0;
    for (ViewPrimitive const& primitive : primitives)
        count += primitive.role == ViewPrimitive::Role::kFaces ? primitive.indices.size() / 3 : 0;
    return count;
}

std::size_t ViewMesh::VertexCount() const
{
    std::size_t count = 0;
    for (ViewPrimitive const& primitive : primitives)
        count += primitive.role == ViewPrimitive::Role::kFaces ? primitive.positions.size() / 3 : 0;
    return count;
}

}  // namespace KVR

#include "scene/geometry/MeshTriangles.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "framework/api/IdSetSet.h"
#include "framework/api/SegmentInfo.h"
#include "framework/api/TextureVertexSet.h"

namespace KVR
{

namespace
{

// Graphics formats hold floats.
constexpr double kMost = std::numeric_limits<float>::max();

double Usable(double x)
{
    return std::abs(x) <= kMost ? x : 0.0;
}

bool IsUsable(std::array<double, 3> const& point)
{
    return std::all_of(point.begin(), point.end(), [](double x) { return std::abs(x) <= kMost; });
}

bool IsBelow(int index, std::size_t count)
{
    return index >= 0 && static_cast<std::size_t>(index) < count;
}

}  // namespace

MeshTriangles::MeshTriangles(IPolygonMesh& mesh, SceneMesh& target)
    : m_mesh(mesh),
      m_target(target),
      m_runs(mesh.VertexCount(), mesh.FaceSegmentCount() > 0),
      m_type(mesh.MeshType()),
      m_polygonCount(mesh.PolygonCount()),
      m_vertexCount(mesh.VertexCount()),
      m_normalCount(mesh.NormalCount())
{
    if (mesh.TextureVertexSetCount() > 0)
    {
        ITextureVertexSet* const first = mesh.TextureVertexSetAt(0);
        if (first && first->VertexDimension() == 2)
        {
            m_texture = first;
            m_textureCount = first->VertexCount();
        }
    }
}

std::array<double, 3> MeshTriangles::VertexAt(std::uint32_t index) const
{
    PolygonVertex const vertex = m_mesh.VertexAt(index);
    return {vertex.x, vertex.y, vertex.z};
}

std::array<double, 3> MeshTriangles::NormalAt(std::uint32_t index) const
{
    Normal const normal = m_mesh.NormalAt(index);
    return {normal.x, normal.y, normal.z};
}

std::array<double, 2> MeshTriangles::TextureAt(std::uint32_t index) const
{
    MeshTextureVertex2D vertex(0.0, 0.0);
    m_texture->VertexAt(index, vertex);
    // Graphics formats count the second one down from the top.
    return {Usable(vertex.U()), Usable(1.0 - vertex.V())};
}

void MeshTriangles::Read()
{
    CheckVertices();
    ReadMaterials();
    ReadFaces();
    ReadEdges();
    for (unsigned long i = 0; i < m_polygonCount; ++i)
    {
        if (!m_isHidden.empty() && m_isHidden[i])
        {
            ++m_target.hiddenPolygons;
            continue;
        }
        EditablePolygon const* polygon = nullptr;
        if (m_mesh.PolygonAt(i, polygon) != kIsValueSpecified_Yes || !polygon || !Read(*polygon, i))
            ++m_target.brokenPolygons;
    }
    m_runs.MoveInto(m_target);
}

// Once for all polygons, which share them.
void MeshTriangles::CheckVertices()
{
    for (unsigned long i = 0; i < m_vertexCount && !m_hasBadVertices; ++i)
        m_hasBadVertices = !IsUsable(VertexAt(static_cast<std::uint32_t>(i)));
}

void MeshTriangles::ReadMaterials()
{
    IdSetSet materials;
    if (m_mesh.PolygonMaterials(materials) == kIsValueSpecified_Yes)
        for (unsigned long long i = 0; i < materials.Size(); ++i)
            m_styles.emplace_back(materials.At(i).IsEmpty() ? std::string_view() : materials.At(i).At(0).View());
    m_runOfStyle.resize(m_styles.size() + 1, {kNoRun, kNoRun, kNoRun, kNoRun});
}

void MeshTriangles::ReadFaces()
{
    unsigned long const count = m_mesh.FaceSegmentCount();
    if (count == 0)
        return;
    m_target.faces.resize(count);
    m_faceOfPolygon.assign(m_polygonCount, SceneMesh::kNoFace);
    for (unsigned long i = 0; i < count; ++i)
    {
        FaceSegmentInfo segment;
        if (m_mesh.FaceSegmentAt(i, segment) != kIsValueSpecified_Yes)
            continue;
        m_target.faces[i].isVisible = segment.IsVisible();
        if (!segment.IsVisible())
            m_isHidden.resize(m_polygonCount);
        for (unsigned int const polygon : segment.PolygonIndices().Indices())
        {
            if (polygon >= m_polygonCount)
                continue;
            if (m_faceOfPolygon[polygon] == SceneMesh::kNoFace)
                m_faceOfPolygon[polygon] = static_cast<std::uint32_t>(i);
            if (!segment.IsVisible())
                m_isHidden[polygon] = true;
        }
    }
}

void MeshTriangles::ReadEdges()
{
    unsigned long const count = m_mesh.EdgeSegmentCount();
    for (unsigned long i = 0; i < count; ++i)
    {
        EdgeSegmentInfo segment;
        if (m_mesh.EdgeSegmentInfoAt(i, segment) != kIsValueSpecified_Yes)
            continue;
        std::vector<int> const& vertices = segment.VertexIndices().Indices();
        bool const isGood =
            vertices.size() > 1 && std::all_of(vertices.begin(), vertices.end(),
                                               [&](int vertex) {
                                                   return IsBelow(vertex, m_vertexCount) &&
                                                          IsUsable(VertexAt(static_cast<std::uint32_t>(vertex)));
                                               });
        if (!isGood)
            continue;
        SceneMesh::Edge& edge = m_target.edges.emplace_back();
        edge.firstPoint = m_target.edgePoints.size() / 3;
        edge.pointCount = vertices.size();
        for (int const vertex : vertices)
        {
            std::array<double, 3> const point = VertexAt(static_cast<std::uint32_t>(vertex));
            m_target.edgePoints.insert(m_target.edgePoints.end(), point.begin(), point.end());
        }
    }
}

std::size_t MeshTriangles::RunOf(unsigned long polygon, Lists const& lists)
{
    unsigned int material = 0;
    bool const has = m_mesh.PolygonMaterialIndexAt(polygon, material) == kIsValueSpecified_Yes;
    std::size_t const style = has && material < m_styles.size() ? material : m_styles.size();
    std::uint32_t& run = m_runOfStyle[style][(lists.normals ? 1U : 0U) + (lists.texture ? 2U : 0U)];
    if (run == kNoRun)
    {
        run = static_cast<std::uint32_t>(
            m_runs.RunOf(style < m_styles.size() ? std::string_view(m_styles[style]) : std::string_view(),
                         lists.normals != nullptr, lists.texture != nullptr));
        // One of many would get too much.
        if (m_styles.size() <= 1)
            m_runs.Reserve(run, m_vertexCount, m_polygonCount);
    }
    return run;
}

int const* MeshTriangles::TextureOf(EditablePolygon const& polygon, Lists& lists) const
{
    auto const sets = polygon.TextureSetIndices();
    auto const texture = polygon.TextureVertexIndices();
    if (!sets.data || sets.count <= 0 || sets.data[0] != 0 || !texture.data ||
        texture.count / sets.count != lists.vertices.count || texture.count % sets.count != 0)
        return nullptr;
    lists.setCount = static_cast<std::size_t>(sets.count);
    return texture.data;
}

bool MeshTriangles::IsGood(std::uint32_t vertex) const
{
    return IsUsable(VertexAt(vertex));
}

std::vector<PolygonSplitter::Triangle> const& MeshTriangles::Divided()
{
    if (m_type == IPolygonMesh::kPolygonMeshType_Strip)
        return m_splitter.Strip(m_corners.size());
    if (m_type == IPolygonMesh::kPolygonMeshType_Fan)
        return m_splitter.Fan(m_corners.size());
    m_points.clear();
    for (TriangleCorner const& corner : m_corners)
        m_points.push_back(VertexAt(corner.vertex));
    return m_splitter.Split(m_points);
}

bool MeshTriangles::Read(EditablePolygon const& polygon, unsigned long place)
{
    Lists lists{polygon.VertexIndices()};
    if (!lists.vertices.data || lists.vertices.count < 3)
        return false;
    if (auto const normals = polygon.NormalIndices(); normals.count == lists.vertices.count)
        lists.normals = normals.data;
    if (m_texture)
        lists.texture = TextureOf(polygon, lists);
    std::uint32_t const face = m_faceOfPolygon.empty() ? SceneMesh::kNoFace : m_faceOfPolygon[place];
    if (lists.vertices.count == 3)
    {
        // By far the most: without a list on the way.
        std::array<TriangleCorner, 3> corners;
        if (!TakeCorner(lists, 0, corners[0]) || !TakeCorner(lists, 1, corners[1]) || !TakeCorner(lists, 2, corners[2]))
            return false;
        m_runs.Add(RunOf(place, lists), corners, face, *this);
        return true;
    }
    m_corners.resize(static_cast<std::size_t>(lists.vertices.count));
    for (std::size_t i = 0; i < m_corners.size(); ++i)
        if (!TakeCorner(lists, i, m_corners[i]))
            return false;
    std::size_t const run = RunOf(place, lists);
    for (PolygonSplitter::Triangle const& triangle : Divided())
        m_runs.Add(run, {m_corners[triangle[0]], m_corners[triangle[1]], m_corners[triangle[2]]}, face, *this);
    return true;
}

}  // namespace KVR

#include "exchange/export/TriangleGroups.h"

#include <BRepBndLib.hxx>
#include <BRepMesh_IncrementalMesh.hxx>
#include <BRepTools.hxx>
#include <Bnd_Box.hxx>
#include <NCollection_DataMap.hxx>
#include <TopExp.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopTools_ShapeMapHasher.hxx>
#include <TopoDS_Shape.hxx>
#include <algorithm>
#include <bit>
#include <cmath>
#include <functional>
#include <limits>

#include "exchange/export/PolygonSplitter.h"
#include "framework/api/kvr_api.h"
#include "framework/kernel/entity.h"
#include "framework/kernel/tessellation/BodyMesh.h"

namespace KVR
{

namespace
{

constexpr std::uint32_t kNone = std::numeric_limits<std::uint32_t>::max();
// The angle between neighbouring triangles of a body, in radians.
constexpr double kAngle = 0.5;

// A corner of a triangle: places in the source's lists, kNone for a list that it does not use.
struct Corner
{
    std::uint32_t vertex = kNone;
    std::uint32_t normal = kNone;
    std::uint32_t texture = kNone;

    bool operator==(Corner const&) const = default;
    std::size_t Hash() const noexcept
    {
        std::uint64_t hash = vertex * 0x9E3779B97F4A7C15u;
        hash = (hash ^ (hash >> 29) ^ normal) * 0xBF58476D1CE4E5B9u;
        hash = (hash ^ (hash >> 32) ^ texture) * 0x94D049BB133111EBu;
        return hash ^ (hash >> 31);
    }
};

// Numbers corners in the order in which they come, equal ones alike.
class CornerIndex
{
public:
    // The number, and whether it is new.
    std::pair<std::uint32_t, bool> Add(Corner const& corner)
    {
        if ((m_corners.size() + 1) * 2 > m_slots.size())
            Grow();
        std::size_t slot = corner.Hash() & (m_slots.size() - 1);
        for (; m_slots[slot] != kNone; slot = (slot + 1) & (m_slots.size() - 1))
            if (m_corners[m_slots[slot]] == corner)
                return {m_slots[slot], false};
        m_slots[slot] = static_cast<std::uint32_t>(m_corners.size());
        m_corners.push_back(corner);
        return {m_slots[slot], true};
    }

private:
    void Grow()
    {
        m_slots.assign(std::max<std::size_t>(64, m_slots.size() * 2), kNone);
        for (std::size_t i = 0; i < m_corners.size(); ++i)
        {
            std::size_t slot = m_corners[i].Hash() & (m_slots.size() - 1);
            while (m_slots[slot] != kNone)
                slot = (slot + 1) & (m_slots.size() - 1);
            m_slots[slot] = static_cast<std::uint32_t>(i);
        }
    }

    std::vector<Corner> m_corners;
    std::vector<std::uint32_t> m_slots;
};

double Usable(double x)
{
    return std::abs(x) <= std::numeric_limits<float>::max() ? x : 0.0;
}

bool IsFinite(std::array<double, 3> const& point)
{
    constexpr double kMost = std::numeric_limits<float>::max();
    return std::all_of(point.begin(), point.end(), [](double x) { return std::abs(x) <= kMost; });
}

}  // namespace

// Sorts triangles into groups. The functions give a vertex, a normal and a texture vertex by their places.
class TriangleCollector
{
public:
    using Point = std::array<double, 3>;

    std::function<Point(std::uint32_t)> vertexAt;
    std::function<Point(std::uint32_t)> normalAt;
    std::function<std::array<double, 2>(std::uint32_t)> textureAt;

    explicit TriangleCollector(TriangleGroups& target) : m_target(target) {}

    void Add(std::string const& style, std::array<Corner, 3> const& corners)
    {
        bool const hasNormals = corners[0].normal != kNone;
        bool const hasTexture = corners[0].texture != kNone;
        std::size_t const group = GroupOf(style, hasNormals, hasTexture);
        TriangleGroups::Group& target = m_target.groups[group];
        for (Corner const& corner : corners)
        {
            auto const [number, isNew] = m_indices[group].Add(corner);
            target.indices.push_back(number);
            if (!isNew)
                continue;
            for (double const x : vertexAt(corner.vertex))
                target.positions.push_back(static_cast<float>(x));
            if (hasNormals)
                AddNormal(target, normalAt(corner.normal));
            if (hasTexture)
                for (double const x : textureAt(corner.texture))
                    target.texture.push_back(static_cast<float>(x));
        }
    }

private:
    static void AddNormal(TriangleGroups::Group& target, Point const& normal)
    {
        double const length = std::hypot(normal[0], normal[1], normal[2]);
        bool const isGood = length > 0.0 && std::isfinite(length);
        for (std::size_t i = 0; i < 3; ++i)
            target.normals.push_back(isGood ? static_cast<float>(normal[i] / length) : i == 2 ? 1.0f : 0.0f);
    }

    std::size_t GroupOf(std::string const& style, bool hasNormals, bool hasTexture)
    {
        // Neighbours are alike as a rule.
        auto const isIt = [&](std::size_t place)
        {
            TriangleGroups::Group const& group = m_target.groups[place];
            return group.hasNormals == hasNormals && group.hasTexture == hasTexture && group.style == style;
        };
        if (m_last < m_target.groups.size() && isIt(m_last))
            return m_last;
        std::string const key = style + (hasNormals ? "\n1" : "\n0") + (hasTexture ? "1" : "0");
        auto const [entry, isNew] = m_places.try_emplace(key, m_target.groups.size());
        if (isNew)
        {
            TriangleGroups::Group& group = m_target.groups.emplace_back();
            group.style = style;
            group.hasNormals = hasNormals;
            group.hasTexture = hasTexture;
            m_indices.emplace_back();
        }
        return m_last = entry->second;
    }

    TriangleGroups& m_target;
    std::vector<CornerIndex> m_indices;
    std::unordered_map<std::string, std::size_t> m_places;
    std::size_t m_last = 0;
};

namespace
{

// A mesh with its counts, against which indices are weighed.
class MeshReader
{
public:
    MeshReader(IPolygonMesh& mesh, TriangleGroups& groups) : m_mesh(mesh), m_groups(groups), m_collector(groups)
    {
        m_collector.vertexAt = [&mesh](std::uint32_t i)
        {
            PolygonVertex const vertex = mesh.VertexAt(i);
            return std::array<double, 3>{vertex.x, vertex.y, vertex.z};
        };
        m_collector.normalAt = [&mesh](std::uint32_t i)
        {
            Normal const normal = mesh.NormalAt(i);
            return std::array<double, 3>{normal.x, normal.y, normal.z};
        };
        if (mesh.TextureVertexSetCount() > 0 && mesh.TextureVertexSetAt(0)->VertexDimension() == 2)
            m_texture = mesh.TextureVertexSetAt(0);
        m_collector.textureAt = [this](std::uint32_t i)
        {
            MeshTextureVertex2D vertex(0.0, 0.0);
            m_texture->VertexAt(i, vertex);
            // Graphics formats count the second one down from the top.
            return std::array<double, 2>{Usable(vertex.U()), Usable(1.0 - vertex.V())};
        };
        IdSetSet materials;
        if (mesh.PolygonMaterials(materials) == kIsValueSpecified_Yes)
            for (unsigned long long i = 0; i < materials.Size(); ++i)
                m_materials.emplace_back(materials.At(i).IsEmpty() ? std::string_view() : materials.At(i).At(0).View());
    }

    void Read()
    {
        ReadHidden();
        unsigned long const count = m_mesh.PolygonCount();
        for (unsigned long i = 0; i < count; ++i)
        {
            if (i < m_isHidden.size() && m_isHidden[i])
                continue;
            EditablePolygon const* polygon = nullptr;
            if (m_mesh.PolygonAt(i, polygon) != kIsValueSpecified_Yes || !polygon || !Read(*polygon, StyleOf(i)))
                ++m_groups.brokenPolygons;
        }
    }

private:
    void ReadHidden()
    {
        unsigned long const count = m_mesh.FaceSegmentCount();
        for (unsigned long i = 0; i < count; ++i)
        {
            FaceSegmentInfo segment;
            if (m_mesh.FaceSegmentAt(i, segment) != kIsValueSpecified_Yes || segment.IsVisible())
                continue;
            m_isHidden.resize(m_mesh.PolygonCount());
            for (unsigned int const polygon : segment.PolygonIndices().Indices())
                if (polygon < m_isHidden.size())
                    m_isHidden[polygon] = true;
        }
    }

    std::string const& StyleOf(unsigned long polygon)
    {
        unsigned int material = 0;
        bool const has = m_mesh.PolygonMaterialIndexAt(polygon, material) == kIsValueSpecified_Yes;
        return has && material < m_materials.size() ? m_materials[material] : m_none;
    }

    bool Read(EditablePolygon const& polygon, std::string const& style)
    {
        auto const vertices = polygon.VertexIndices();
        auto const normals = polygon.NormalIndices();
        if (!vertices.data || vertices.count < 3)
            return false;
        auto const count = static_cast<std::size_t>(vertices.count);
        bool const hasNormals = normals.data && normals.count == vertices.count;
        auto const sets = polygon.TextureSetIndices();
        auto const texture = polygon.TextureVertexIndices();
        bool const hasTexture = m_texture && sets.data && sets.count > 0 && sets.data[0] == 0 && texture.data &&
                                texture.count == vertices.count * sets.count;
        m_corners.resize(count);
        m_points.resize(count);
        for (std::size_t i = 0; i < count; ++i)
        {
            Corner& corner = m_corners[i];
            corner = {};
            if (!IsBelow(vertices.data[i], m_vertexCount))
                return false;
            corner.vertex = static_cast<std::uint32_t>(vertices.data[i]);
            m_points[i] = m_collector.vertexAt(corner.vertex);
            if (!IsFinite(m_points[i]))
                return false;
            if (hasNormals)
            {
                if (!IsBelow(normals.data[i], m_normalCount))
                    return false;
                corner.normal = static_cast<std::uint32_t>(normals.data[i]);
            }
            if (hasTexture)
            {
                int const place = texture.data[i * static_cast<std::size_t>(sets.count)];
                if (!IsBelow(place, m_texture->VertexCount()))
                    return false;
                corner.texture = static_cast<std::uint32_t>(place);
            }
        }
        auto const& triangles = m_mesh.MeshType() == IPolygonMesh::kPolygonMeshType_Strip ? m_splitter.Strip(count)
                                : m_mesh.MeshType() == IPolygonMesh::kPolygonMeshType_Fan ? m_splitter.Fan(count)
                                                                                          : m_splitter.Split(m_points);
        for (PolygonSplitter::Triangle const& triangle : triangles)
            m_collector.Add(style, {m_corners[triangle[0]], m_corners[triangle[1]], m_corners[triangle[2]]});
        return true;
    }

    static bool IsBelow(int index, unsigned long long count)
    {
        return index >= 0 && static_cast<unsigned long long>(index) < count;
    }

    IPolygonMesh& m_mesh;
    TriangleGroups& m_groups;
    TriangleCollector m_collector;
    ITextureVertexSet* m_texture = nullptr;
    unsigned long m_vertexCount = m_mesh.VertexCount();
    unsigned long m_normalCount = m_mesh.NormalCount();
    std::vector<std::string> m_materials;
    /// Polygons of segments that are not shown.
    std::vector<bool> m_isHidden;
    std::string m_none;
    std::vector<Corner> m_corners;
    std::vector<std::array<double, 3>> m_points;
    PolygonSplitter m_splitter;
};

using FaceStyles = NCollection_DataMap<TopoDS_Shape, std::string, TopTools_ShapeMapHasher>;

// The first style of each face that has one.
FaceStyles StylesOfFaces(IBrep& body)
{
    FaceStyles result;
    SubEntityToStylesMap const* const styles = body.StylesMap();
    if (!styles || styles->Size() == 0)
        return result;
    TopTools_IndexedMapOfShape faces;
    TopExp::MapShapes(body.Body()->Shape(), TopAbs_FACE, faces);
    for (BODY::SubId const& face : body.Body()->FaceDataIds())
    {
        IdSet ids;
        if (face.place < static_cast<std::uint32_t>(faces.Extent()) &&
            styles->Styles(UTF8String(face.dataId), ids) == kIsValueSpecified_Yes && !ids.IsEmpty())
            result.Bind(faces(static_cast<int>(face.place) + 1), std::string(ids.At(0).View()));
    }
    return result;
}

}  // namespace

TriangleGroups TriangleGroups::Of(IPolygonMesh& mesh)
{
    TriangleGroups result;
    MeshReader(mesh, result).Read();
    return result;
}

TriangleGroups TriangleGroups::Of(IBrep& body, double deflection)
{
    TriangleGroups result;
    if (!body.Body())
        return result;
    TopoDS_Shape const& shape = body.Body()->Shape();
    Bnd_Box box;
    BRepBndLib::Add(shape, box);
    if (box.IsVoid())
        return result;
    BRepMesh_IncrementalMesh const meshed(shape, std::sqrt(box.SquareExtent()) * deflection, false, kAngle, true);
    BodyMesh const mesh(shape);
    result.facesWithoutTriangles = mesh.FacesWithoutTriangles();
    TriangleCollector collector(result);
    auto const at = [](std::vector<double> const& list)
    {
        return [&list](std::uint32_t i) {
            return std::array<double, 3>{list[3 * std::size_t{i}], list[3 * std::size_t{i} + 1],
                                         list[3 * std::size_t{i} + 2]};
        };
    };
    FaceStyles const styles = StylesOfFaces(body);
    collector.vertexAt = at(mesh.Vertices());
    collector.normalAt = at(mesh.Normals());
    for (std::size_t face = 0; face < mesh.Faces().size(); ++face)
    {
        std::string const* const found = styles.Seek(mesh.Faces()[face].face);
        std::string const style = found ? *found : std::string();
        std::size_t const end =
            face + 1 < mesh.Faces().size() ? mesh.Faces()[face + 1].firstTriangle : mesh.TriangleCount();
        for (std::size_t triangle = mesh.Faces()[face].firstTriangle; triangle < end; ++triangle)
        {
            std::array<Corner, 3> corners;
            for (std::size_t i = 0; i < 3; ++i)
                corners[i] = {static_cast<std::uint32_t>(mesh.Corners()[3 * triangle + i]),
                              static_cast<std::uint32_t>(mesh.CornerNormals()[3 * triangle + i]), kNone};
            collector.Add(style, corners);
        }
    }
    return result;
}

}  // namespace KVR

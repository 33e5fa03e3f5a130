#include "exchange/certify/scene/SceneMeshFacts.h"

#include <algorithm>
#include <numbers>
#include <vector>

#include "framework/api/kvr_api.h"

namespace KVR::Certification
{

namespace
{

struct Triangle
{
    std::size_t corners[3];
};

// How a polygon is made of triangles, by places in its list of corners.
std::vector<Triangle> TrianglesOf(std::size_t count, IPolygonMesh::PolygonMeshTypeEnum type)
{
    std::vector<Triangle> triangles;
    if (type == IPolygonMesh::kPolygonMeshType_Triangular)
        for (std::size_t i = 2; i < count; i += 3)
            triangles.push_back({{i - 2, i - 1, i}});
    else if (type == IPolygonMesh::kPolygonMeshType_Strip)
        for (std::size_t i = 2; i < count; ++i)
            triangles.push_back({{i - 2 + i % 2, i - 1 - i % 2, i}});
    else
        for (std::size_t i = 2; i < count; ++i)
            triangles.push_back({{0, i - 1, i}});
    return triangles;
}

// For each polygon whether its face segment is shown.
std::vector<bool> ShownPolygons(IPolygonMesh const& mesh, unsigned long long& hiddenFaces)
{
    std::vector<bool> shown(mesh.PolygonCount(), true);
    for (unsigned long i = 0; i < mesh.FaceSegmentCount(); ++i)
    {
        FaceSegmentInfo segment;
        if (mesh.FaceSegmentAt(i, segment) != kIsValueSpecified_Yes || segment.IsVisible())
            continue;
        ++hiddenFaces;
        for (unsigned int const polygon : segment.PolygonIndices().Indices())
            if (polygon < shown.size())
                shown[polygon] = false;
    }
    return shown;
}

std::vector<std::string> StylesOf(IPolygonMesh const& mesh)
{
    std::vector<std::string> styles;
    IdSetSet materials;
    if (mesh.PolygonMaterials(materials) == kIsValueSpecified_Yes)
        for (unsigned long long i = 0; i < materials.Size(); ++i)
            styles.emplace_back(materials.At(i).IsEmpty() ? std::string() : std::string(materials.At(i).At(0).View()));
    return styles;
}

}  // namespace

double AngleOfNormals(FactPoint const (&corners)[3], FactPoint const (&normals)[3])
{
    FactPoint flat{};
    for (std::size_t i = 0; i < 3; ++i)
    {
        std::size_t const next = (i + 1) % 3;
        std::size_t const last = (i + 2) % 3;
        flat[i] = (corners[1][next] - corners[0][next]) * (corners[2][last] - corners[0][last]) -
                  (corners[1][last] - corners[0][last]) * (corners[2][next] - corners[0][next]);
    }
    double sum = 0.0;
    double const size = std::hypot(flat[0], flat[1], flat[2]);
    for (FactPoint const& normal : normals)
    {
        double const both = size * std::hypot(normal[0], normal[1], normal[2]);
        double const cosine =
            both > 0.0 ? (flat[0] * normal[0] + flat[1] * normal[1] + flat[2] * normal[2]) / both : 1.0;
        sum += std::acos(std::clamp(cosine, -1.0, 1.0)) * 60.0 / std::numbers::pi;
    }
    return sum;
}

SceneMeshFacts::SceneMeshFacts(IPolygonMesh const& mesh, FactPlace const& place)
{
    std::vector<FactPoint> points;
    std::vector<FactPoint> local;
    for (unsigned long i = 0; i < mesh.VertexCount(); ++i)
    {
        PolygonVertex const vertex = mesh.VertexAt(i);
        local.push_back({vertex.x, vertex.y, vertex.z});
        points.push_back(place.Of(local.back()));
    }
    bool const mirrors = place.Determinant() < 0.0;
    std::vector<bool> const shown = ShownPolygons(mesh, hiddenFaces);
    std::vector<std::string> const styles = StylesOf(mesh);
    hasNormals = mesh.NormalCount() > 0;
    for (unsigned long i = 0; i < mesh.PolygonCount(); ++i)
    {
        EditablePolygon const* polygon = nullptr;
        if (!shown[i] || mesh.PolygonAt(i, polygon) != kIsValueSpecified_Yes || !polygon)
            continue;
        auto const vertices = polygon->VertexIndices();
        auto const normals = polygon->NormalIndices();
        unsigned int material = 0;
        bool const isStyled =
            mesh.PolygonMaterialIndexAt(i, material) == kIsValueSpecified_Yes && material < styles.size();
        double const before = bulk.area;
        double angles = 0.0;
        for (Triangle const& triangle :
             TrianglesOf(static_cast<std::size_t>(std::max(0, vertices.count)), mesh.MeshType()))
        {
            FactPoint corners[3];
            FactPoint directions[3]{};
            FactPoint moved[3];
            for (std::size_t k = 0; k < 3; ++k)
            {
                auto const vertex = static_cast<std::size_t>(vertices.data[triangle.corners[k]]);
                corners[k] = local.at(vertex);
                moved[k] = points.at(vertex);
                bulk.AddPoint(moved[k]);
                if (hasNormals && normals.count > static_cast<int>(triangle.corners[k]))
                {
                    Normal const normal = mesh.NormalAt(static_cast<unsigned long>(normals.data[triangle.corners[k]]));
                    directions[k] = {normal.x, normal.y, normal.z};
                }
            }
            double const area = bulk.area;
            bulk.AddTriangle(moved[0], moved[mirrors ? 2 : 1], moved[mirrors ? 1 : 2]);
            angles += hasNormals ? AngleOfNormals(corners, directions) * (bulk.area - area) : 0.0;
            ++triangles;
        }
        normalAngles += angles;
        areaOfStyle[isStyled ? styles[material] : std::string()] += bulk.area - before;
    }
    bulk.absoluteVolume = std::abs(bulk.volume);
}

}  // namespace KVR::Certification

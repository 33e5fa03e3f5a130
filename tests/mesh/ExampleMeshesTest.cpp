// The meshes of the scenes that come with the project, compared with what another program found in their models.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <vector>

#include "framework/api/kvr_api.h"
#include "producer/XMLProducer.h"

namespace KVR::Test
{

namespace
{

using nlohmann::json;

json FactsOf(std::string const& scene)
{
    std::ifstream file(std::string(KVR_TEST_DATA_DIR) + "/" + scene + ".facts.json");
    return json::parse(file);
}

// The facts are written with twelve digits.
void ExpectNear(double found, double expected, std::string const& what)
{
    EXPECT_NEAR(found, expected, 1e-10 * std::max(1.0, std::abs(expected))) << what;
}

PolygonVertex Difference(PolygonVertex const& a, PolygonVertex const& b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

PolygonVertex Cross(PolygonVertex const& a, PolygonVertex const& b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

double Dot(PolygonVertex const& a, PolygonVertex const& b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

struct Measures
{
    unsigned long triangles = 0;
    double area = 0.0;
    double volume = 0.0;
    std::vector<double> box = {INFINITY, INFINITY, INFINITY, -INFINITY, -INFINITY, -INFINITY};
};

// Of a mesh of triangles; the volume is that enclosed when the mesh is closed.
Measures MeasuresOf(IPolygonMesh const& mesh)
{
    Measures measures;
    measures.triangles = mesh.PolygonCount();
    for (unsigned long i = 0; i < mesh.PolygonCount(); ++i)
    {
        EditablePolygon const* polygon = nullptr;
        EXPECT_EQ(mesh.PolygonAt(i, polygon), kIsValueSpecified_Yes);
        EditablePolygon::IndexList const indices = polygon->VertexIndices();
        EXPECT_EQ(indices.count, 3);
        PolygonVertex const a = mesh.VertexAt(static_cast<unsigned long>(indices.data[0]));
        PolygonVertex const b = mesh.VertexAt(static_cast<unsigned long>(indices.data[1]));
        PolygonVertex const c = mesh.VertexAt(static_cast<unsigned long>(indices.data[2]));
        PolygonVertex const normal = Cross(Difference(b, a), Difference(c, a));
        measures.area += std::sqrt(Dot(normal, normal)) / 2.0;
        measures.volume += Dot(a, normal) / 6.0;
    }
    for (unsigned long i = 0; i < mesh.VertexCount(); ++i)
    {
        PolygonVertex const vertex = mesh.VertexAt(i);
        double const at[3] = {vertex.x, vertex.y, vertex.z};
        for (std::size_t axis = 0; axis < 3; ++axis)
        {
            measures.box[axis] = std::min(measures.box[axis], at[axis]);
            measures.box[axis + 3] = std::max(measures.box[axis + 3], at[axis]);
        }
    }
    return measures;
}

class ExampleMeshes : public testing::TestWithParam<char const*>
{
};

TEST_P(ExampleMeshes, AreThoseOfTheirModels)
{
    std::string const name = GetParam();
    json const facts = FactsOf(name);
    std::string const path = std::string(KVR_EXAMPLES_DIR) + "/" + name + "/" + name + ".xml";
    XMLProducer producer{UTF16String(UTF8String(path)), nullptr};
    IProducer& host = producer;
    host.BeginProcess(IdSet(), nullptr, nullptr);

    unsigned long long vertices = 0;
    unsigned long long triangles = 0;
    unsigned long long faceSegments = 0;
    unsigned long long edgeSegments = 0;
    double area = 0.0;
    std::set<std::string> styles;
    for (auto const& [id, expected] : facts["perMesh"].items())
    {
        auto const* const mesh = dynamic_cast<IPolygonMesh const*>(host.Load(UTF8String(id)));
        ASSERT_TRUE(mesh) << id;
        Measures const found = MeasuresOf(*mesh);
        EXPECT_EQ(found.triangles, expected["triangles"]) << id;
        ExpectNear(found.area, expected["area"], id + " area");
        ExpectNear(found.volume, expected["volume"], id + " volume");
        for (std::size_t i = 0; i < 6; ++i)
            ExpectNear(found.box[i], expected["box"][i], id + " box");
        vertices += mesh->VertexCount();
        triangles += found.triangles;
        faceSegments += mesh->FaceSegmentCount();
        edgeSegments += mesh->EdgeSegmentCount();
        area += found.area;
        IdSetSet materials;
        mesh->PolygonMaterials(materials);
        for (unsigned long long i = 0; i < materials.Size(); ++i)
            styles.emplace(materials.At(i).At(0).View());
    }
    EXPECT_EQ(facts["perMesh"].size(), facts["meshes"]);
    EXPECT_EQ(vertices, facts["vertices"]);
    EXPECT_EQ(triangles, facts["triangles"]);
    EXPECT_EQ(faceSegments, facts["faceSegments"]);
    EXPECT_EQ(edgeSegments, facts["edgeSegments"]);
    EXPECT_EQ(styles.size(), facts["styles"]) << "one slot for each style of the scene";
    ExpectNear(area, facts["meshArea"], "area");
}

INSTANTIATE_TEST_SUITE_P(Mesh, ExampleMeshes, testing::Values("as1-oc-214", "lcr_follower_arm"),
                         [](testing::TestParamInfo<char const*> const& scene)
                         {
                             std::string name = scene.param;
                             std::replace(name.begin(), name.end(), '-', '_');
                             return name;
                         });

}  // namespace

}  // namespace KVR::Test

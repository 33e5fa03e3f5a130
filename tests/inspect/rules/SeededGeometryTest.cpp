// Mistakes in meshes and units, one at a time all over an example: each is found at the element of its mesh or part,
// and nothing else is.

#include <gtest/gtest.h>

#include <TopoDS_Shape.hxx>
#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <regex>

#include "authoring/KernelStoreWriter.h"
#include "authoring/MeshStoreWriter.h"
#include "authoring/SceneWriter.h"
#include "framework/api/UTF16String.h"
#include "tests/authoring/WrittenScene.h"
#include "tests/inspect/rules/MeshPlaces.h"
#include "tests/inspect/rules/SeededScene.h"
#include "tests/support/SanitizedBuild.h"
#include "tests/support/Shapes.h"

namespace KVR::Test
{

namespace
{

// In how many polygons of a scene a mistake is made; every one of each mesh has its turn where that stands alone.
constexpr std::size_t kPolygons = kIsSanitized ? 4 : 12;
// In how many meshes and units; in all when the environment's KVR_SEED_ALL is set.
constexpr std::size_t kObjects = kIsSanitized ? 3 : 9;

std::size_t StepOf(std::size_t count)
{
    return std::getenv("KVR_SEED_ALL") ? 1 : count / kObjects + 1;
}

class SeededGeometry : public testing::TestWithParam<char const*>
{
protected:
    void ExpectOne(std::string const& store, std::string_view rule, MeshPlaces const& mesh, std::string const& found)
    {
        std::vector<Finding> const findings = m_scene.FindingsWith(m_storeName, store);
        std::size_t const element = m_scene.Document().find("<IPolygonMesh ID=\"" + mesh.id + '"');
        ASSERT_NE(element, std::string::npos);
        ExpectFound(findings, rule, m_scene.PathOf(m_scene.Name()), LineOf(m_scene.Document(), element), {}, found);
        EXPECT_EQ(findings.size(), 1U) << found;
        EXPECT_TRUE(std::any_of(findings.begin(), findings.end(),
                                [&](Finding const& finding) { return finding.found == found; }))
            << found;
    }

    // Calls for every so many-th polygon of all meshes, with a store to spoil, its mesh, and the polygon's number.
    template <class Spoil>
    void ForPolygons(Spoil const& spoil)
    {
        std::size_t total = 0;
        for (MeshPlaces const& mesh : m_meshes)
            total += mesh.polygons.size();
        EXPECT_GT(total, 2000U);
        std::size_t const step = total / kPolygons + 1;
        std::size_t count = 0;
        for (MeshPlaces const& mesh : m_meshes)
            for (std::size_t i = 0; i < mesh.polygons.size(); ++i)
                if (count++ % step == 0)
                    spoil(m_store, mesh, i);
    }

    SeededScene m_scene{GetParam()};
    std::string const m_storeName = std::string(GetParam()) + ".mesh";
    std::string const m_store = m_scene.Content(m_storeName);
    std::vector<MeshPlaces> const m_meshes = MeshPlaces::Of(m_store);
};

std::string PolygonName(std::size_t i)
{
    return "polygon " + std::to_string(i);
}

}  // namespace

TEST_P(SeededGeometry, IndicesOutOfRange)
{
    ForPolygons(
        [&](std::string store, MeshPlaces const& mesh, std::size_t i)
        {
            PolygonPlaces const& polygon = mesh.polygons[i];
            std::string spoilt = store;
            PutWord(spoilt, polygon.vertices[i % polygon.vertices.size()], mesh.vertexCount + i);
            ExpectOne(spoilt, "K-0402", mesh, PolygonName(i));
            if (polygon.normals.empty())
                return;
            PutWord(store, polygon.normals[i % polygon.normals.size()], mesh.normalCount);
            ExpectOne(store, "K-0402", mesh, PolygonName(i));
        });
}

TEST_P(SeededGeometry, PolygonsWithoutArea)
{
    ForPolygons(
        [&](std::string store, MeshPlaces const& mesh, std::size_t i)
        {
            PolygonPlaces const& polygon = mesh.polygons[i];
            for (std::size_t const place : polygon.vertices)
                PutWord(store, place, WordAt(store, polygon.vertices.front()));
            ExpectOne(store, "K-0401", mesh, PolygonName(i));
        });
}

TEST_P(SeededGeometry, PolygonsThatRunBackwards)
{
    ForPolygons(
        [&](std::string store, MeshPlaces const& mesh, std::size_t i)
        {
            PolygonPlaces const& polygon = mesh.polygons[i];
            ASSERT_FALSE(polygon.normals.empty());
            std::size_t const first = WordAt(store, polygon.vertices[0]);
            PutWord(store, polygon.vertices[0], WordAt(store, polygon.vertices[1]));
            PutWord(store, polygon.vertices[1], first);
            ExpectOne(store, "K-0404", mesh, PolygonName(i));
        });
}

TEST_P(SeededGeometry, NormalsWithoutLengthAndVerticesThatAreNoNumbers)
{
    std::size_t const step = StepOf(m_meshes.size());
    for (std::size_t i = 0; i < m_meshes.size(); i += step)
    {
        MeshPlaces const& mesh = m_meshes[i];
        PolygonPlaces const& polygon = mesh.polygons[mesh.polygons.size() / 2];
        std::size_t const normal = WordAt(m_store, polygon.normals.front());
        std::string store = m_store;
        for (std::size_t axis = 0; axis < 3; ++axis)
            PutNumber(store, mesh.normals + 24 * normal + 8 * axis, 0.0);
        std::vector<Finding> const findings = m_scene.FindingsWith(m_storeName, store);
        ASSERT_EQ(findings.size(), 1U) << mesh.id;
        EXPECT_EQ(findings[0].rule->id, "K-0403");
        EXPECT_EQ(findings[0].objectId, mesh.id);
        for (double const number : {std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()})
        {
            store = m_store;
            std::size_t const vertex = WordAt(store, polygon.vertices.front());
            PutNumber(store, mesh.vertices + 24 * vertex + 8, number);
            ExpectOne(store, "K-0408", mesh, "vertex " + std::to_string(vertex));
        }
    }
}

TEST_P(SeededGeometry, APartInAnotherUnitThanItsAssembly)
{
    std::regex const unit("<I(?:Part|Assembly) ID=\"(\\w+)\"[^>]*>\\s*<Unit LengthUnit=\"(kUnitType_Millimeter)\"");
    std::string const& text = m_scene.Document();
    auto const units = std::distance(std::sregex_iterator(text.begin(), text.end(), unit), std::sregex_iterator());
    ASSERT_GE(units, 9);
    auto const total = static_cast<std::size_t>(units);
    std::size_t const step = StepOf(total);
    std::size_t count = 0;
    for (std::sregex_iterator at(text.begin(), text.end(), unit), end; at != end; ++at)
    {
        if (count++ % step != 0)
            continue;
        auto const place = static_cast<std::size_t>(at->position(2));
        std::vector<Finding> const findings =
            m_scene.FindingsWith(m_scene.Name(), m_scene.Changed(place, 20, "kUnitType_Inch"));
        // Told at each component that its assembly does not fit: its own, or those that it places.
        ASSERT_FALSE(findings.empty()) << (*at)[1];
        for (Finding const& finding : findings)
        {
            EXPECT_EQ(finding.rule->id, "K-0501");
            EXPECT_TRUE(finding.objectId == (*at)[1] || finding.readAs.find((*at)[1]) != std::string::npos)
                << finding.objectId << ' ' << (*at)[1];
        }
    }
}

TEST_P(SeededGeometry, MillimetresThatAreCalledMetres)
{
    for (std::string const unit : {"Meter", "Kilometer"})
    {
        std::string const text = std::regex_replace(m_scene.Document(), std::regex("LengthUnit=\"kUnitType_Millimeter"),
                                                    "LengthUnit=\"kUnitType_" + unit);
        std::vector<Finding> const findings = m_scene.FindingsWith(m_scene.Name(), text);
        ASSERT_EQ(findings.size(), 1U) << unit;
        EXPECT_EQ(findings[0].rule->id, "K-0502");
        EXPECT_EQ(findings[0].meant, "kUnitType_Millimeter");
    }
}

INSTANTIATE_TEST_SUITE_P(Examples, SeededGeometry, testing::Values("as1-oc-214", "lcr_follower_arm"),
                         [](auto const& scene)
                         { return std::regex_replace(std::string(scene.param), std::regex("-"), "_"); });

namespace
{

// A box as a body and as its mesh, in two triangles for each face, of another size and in another place.
std::vector<Finding> BoxFindings(double size, double x, std::size_t triangles = 12, char const* unit = nullptr)
{
    WrittenScene written;
    Authoring::SceneWriter scene(written.Path());
    BeginPart(scene);
    scene.Body(Named<Authoring::BodyRecord>("b"));
    scene.Kernel().Body("b", BoxShape(10, 10, 10));
    auto mesh = Named<Authoring::MeshRecord>("m");
    if (unit)
        mesh.unit.length = kUnitType_Inch;
    scene.Mesh(mesh);
    Authoring::MeshHead head;
    head.vertexCount = 8;
    head.polygonCount = triangles;
    scene.Meshes().BeginMesh("m", head);
    std::vector<double> vertices;
    for (unsigned corner = 0; corner < 8; ++corner)
        for (unsigned axis = 0; axis < 3; ++axis)
            vertices.push_back((corner >> axis & 1U) * size + (axis == 0 ? x : 0.0));
    scene.Meshes().Vertices(vertices);
    std::uint64_t const faces[6][4] = {{0, 2, 3, 1}, {4, 5, 7, 6}, {0, 1, 5, 4},
                                       {2, 6, 7, 3}, {0, 4, 6, 2}, {1, 3, 7, 5}};
    for (std::size_t i = 0; i < triangles; ++i)
    {
        auto const& face = faces[i / 2];
        std::uint64_t const corners[] = {face[0], face[i % 2 == 0 ? 1 : 2], face[i % 2 == 0 ? 2 : 3]};
        Authoring::PolygonRecord polygon;
        polygon.vertices = corners;
        scene.Meshes().Polygon(polygon);
    }
    scene.Meshes().EndMesh();
    scene.EndPart();
    scene.Finish();
    return CheckScene(written.NarrowPath()).findings;
}

}  // namespace

TEST(MeshOfABody, OfItsSizeAndClosedIsAsItShouldBe)
{
    EXPECT_TRUE(BoxFindings(10, 0).empty());
    // As coarse as a mesh may be.
    EXPECT_TRUE(BoxFindings(6, 2).empty());
}

TEST(MeshOfABody, EachTriangleThatIsMissingLeavesItOpen)
{
    for (std::size_t triangles = 6; triangles < 12; ++triangles)
    {
        std::vector<Finding> const findings = BoxFindings(10, 0, triangles);
        ASSERT_EQ(findings.size(), 1U) << triangles;
        EXPECT_EQ(findings[0].rule->id, "K-0405");
    }
}

TEST(MeshOfABody, AUnitThatIsMistakenIsFoundAndNamed)
{
    struct Mistake
    {
        double size;
        char const* meant;
    };
    for (Mistake const& mistake : {Mistake{10 / 25.4, "kUnitType_Inch"}, Mistake{1, "kUnitType_Centimeter"},
                                   Mistake{0.01, "kUnitType_Meter"}, Mistake{10000, "kUnitType_Micrometer"}})
    {
        std::vector<Finding> const findings = BoxFindings(mistake.size, 0);
        ASSERT_EQ(findings.size(), 1U) << mistake.size;
        EXPECT_EQ(findings[0].rule->id, "K-0406");
        EXPECT_EQ(findings[0].meant, mistake.meant);
    }
    EXPECT_EQ(BoxFindings(10, 0, 12, "inch").size(), 1U);
}

TEST(MeshOfABody, OneInAnotherPlaceIsFar)
{
    std::vector<Finding> const findings = BoxFindings(10, 100);
    ASSERT_EQ(findings.size(), 1U);
    EXPECT_EQ(findings[0].rule->id, "K-0406");
}

}  // namespace KVR::Test

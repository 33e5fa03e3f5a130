// Mistakes in the meshes of the examples, one at a time in every place where they can stand, each mesh by itself: the
// rule finds it at the element of the mesh, names the place, and nothing else is found.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <limits>
#include <memory>
#include <regex>

#include "tests/inspect/rules/LoneMesh.h"
#include "tests/inspect/rules/SeededScene.h"
#include "tests/support/SanitizedBuild.h"

namespace KVR::Test
{

namespace
{

using Mistakes = std::vector<MeshMistake>;

// Of so many places one is tried; all are when the environment's KVR_SEED_ALL is set, which takes a quarter of an hour.
constexpr std::size_t kStep = kIsSanitized ? 19'997 : 2'999;

class SeededMesh : public testing::TestWithParam<char const*>
{
protected:
    // Plants what is made of each mesh.
    void Plant(Mistakes (*mistakesOf)(LoneMesh const&))
    {
        std::size_t const step = std::getenv("KVR_SEED_ALL") ? 1 : kStep;
        std::size_t places = 0;
        std::size_t planted = 0;
        std::size_t found = 0;
        for (MeshPlaces const& mesh : MeshPlaces::Of(m_store))
        {
            auto const segments =
                std::find_if(m_places.begin(), m_places.end(), [&](auto const& one) { return one.id == mesh.id; });
            ASSERT_NE(segments, m_places.end()) << mesh.id;
            LoneMesh const lone(m_store, mesh, m_segments, &*segments);
            for (MeshMistake const& mistake : mistakesOf(lone))
            {
                if (places++ % step != 0)
                    continue;
                ++planted;
                std::string const fault = lone.FaultWith(mistake);
                found += fault.empty() ? 1U : 0U;
                EXPECT_EQ(fault, "") << mesh.id << ": " << mistake.rule << " " << mistake.found;
            }
        }
        EXPECT_GT(places, 2000U);
        std::cout << places << " places, " << planted << " planted, " << found << " found there and nothing else\n";
    }

private:
    SeededScene m_scene{GetParam()};
    std::string const m_store = m_scene.Content(std::string(GetParam()) + ".mesh");
    std::string const m_segments = m_scene.Content(std::string(GetParam()) + ".seg");
    std::vector<SegmentPlaces> const m_places = SegmentPlaces::Of(m_segments);
};

std::string PolygonName(std::size_t i)
{
    return "polygon " + std::to_string(i);
}

// In each of the lists an index of what is not there.
void AddBeyond(Mistakes& mistakes, std::vector<std::size_t> const& places, std::size_t count, std::string const& name,
               bool isInSegments = false)
{
    for (std::size_t const place : places)
        mistakes.push_back({"K-0402", name, {WordChange(place, count)}, isInSegments});
}

}  // namespace

TEST_P(SeededMesh, IndicesOfVerticesThatAreNotThere)
{
    Plant(
        [](LoneMesh const& lone)
        {
            Mistakes mistakes;
            for (std::size_t i = 0; i < lone.Mesh().polygons.size(); ++i)
                AddBeyond(mistakes, lone.Mesh().polygons[i].vertices, lone.Mesh().vertexCount, PolygonName(i));
            return mistakes;
        });
}

TEST_P(SeededMesh, IndicesOfNormalsThatAreNotThere)
{
    Plant(
        [](LoneMesh const& lone)
        {
            Mistakes mistakes;
            for (std::size_t i = 0; i < lone.Mesh().polygons.size(); ++i)
                AddBeyond(mistakes, lone.Mesh().polygons[i].normals, lone.Mesh().normalCount, PolygonName(i));
            return mistakes;
        });
}

TEST_P(SeededMesh, SegmentsOfWhatIsNotThere)
{
    Plant(
        [](LoneMesh const& lone)
        {
            Mistakes mistakes;
            SegmentPlaces const& segments = lone.Segments();
            for (std::size_t i = 0; i < segments.faces.size(); ++i)
                AddBeyond(mistakes, segments.faces[i], lone.Mesh().polygons.size(), "face segment " + std::to_string(i),
                          true);
            for (std::size_t i = 0; i < segments.edges.size(); ++i)
                AddBeyond(mistakes, segments.edges[i], lone.Mesh().vertexCount, "edge segment " + std::to_string(i),
                          true);
            return mistakes;
        });
}

TEST_P(SeededMesh, PolygonsWithoutArea)
{
    Plant(
        [](LoneMesh const& lone)
        {
            Mistakes mistakes;
            for (std::size_t i = 0; i < lone.Mesh().polygons.size(); ++i)
            {
                std::vector<std::size_t> const& corners = lone.Mesh().polygons[i].vertices;
                mistakes.push_back({"K-0401", PolygonName(i), {}});
                for (std::size_t const corner : corners)
                    mistakes.back().changes.push_back(WordChange(corner, WordAt(lone.Store(), corners.front())));
            }
            return mistakes;
        });
}

TEST_P(SeededMesh, PolygonsThatRunBackwards)
{
    Plant(
        [](LoneMesh const& lone)
        {
            Mistakes mistakes;
            for (std::size_t i = 0; i < lone.Mesh().polygons.size(); ++i)
            {
                std::vector<std::size_t> const& corners = lone.Mesh().polygons[i].vertices;
                mistakes.push_back({"K-0404",
                                    PolygonName(i),
                                    {WordChange(corners[0], WordAt(lone.Store(), corners[1])),
                                     WordChange(corners[1], WordAt(lone.Store(), corners[0]))}});
            }
            return mistakes;
        });
}

TEST_P(SeededMesh, PolygonsOfTwoCorners)
{
    Plant(
        [](LoneMesh const& lone)
        {
            Mistakes mistakes;
            for (std::size_t i = 0; i < lone.Mesh().polygons.size(); ++i)
            {
                PolygonPlaces const& polygon = lone.Mesh().polygons[i];
                std::size_t const word = sizeof(std::uint64_t);
                std::size_t const first = polygon.vertices.front();
                mistakes.push_back(
                    {"K-0409",
                     PolygonName(i),
                     {WordChange(first - word, 2),
                      {first, first + word * (polygon.vertices.size() - 2), {}},
                      {polygon.normals.front(), polygon.normals.front() + word * (polygon.normals.size() - 2), {}}}});
            }
            return mistakes;
        });
}

TEST_P(SeededMesh, NormalsWithoutLength)
{
    Plant(
        [](LoneMesh const& lone)
        {
            Mistakes mistakes;
            std::vector<bool> isMet(lone.Mesh().normalCount);
            for (std::size_t i = 0; i < lone.Mesh().polygons.size(); ++i)
                for (std::size_t const place : lone.Mesh().polygons[i].normals)
                {
                    std::size_t const normal = WordAt(lone.Store(), place);
                    std::size_t const at = lone.Mesh().normals + 24 * normal;
                    if (!isMet[normal])
                        mistakes.push_back({"K-0403", PolygonName(i), {{at, at + 24, std::string(24, '\0')}}});
                    isMet[normal] = true;
                }
            return mistakes;
        });
}

TEST_P(SeededMesh, VerticesThatAreNoNumbers)
{
    Plant(
        [](LoneMesh const& lone)
        {
            Mistakes mistakes;
            for (std::size_t i = 0; i < 3 * lone.Mesh().vertexCount; ++i)
                for (double const number :
                     {std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()})
                    mistakes.push_back({"K-0408",
                                        "vertex " + std::to_string(i / 3),
                                        {NumberChange(lone.Mesh().vertices + 8 * i, number)}});
            return mistakes;
        });
}

INSTANTIATE_TEST_SUITE_P(Examples, SeededMesh, testing::Values("as1-oc-214", "lcr_follower_arm"),
                         [](auto const& scene)
                         { return std::regex_replace(std::string(scene.param), std::regex("-"), "_"); });

}  // namespace KVR::Test

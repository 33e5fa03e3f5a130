// Mistakes in the meshes of the examples, one at a time in every place where they can stand, each mesh by itself: the
// rule finds it at the element of the mesh, names the place, and nothing else is found.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <limits>
#include <regex>
#include <xercesc/util/PlatformUtils.hpp>

#include "tests/inspect/rules/LoneMesh.h"
#include "tests/inspect/rules/SeededScene.h"
#include "tests/support/SanitizedBuild.h"

namespace KVR::Test
{

namespace
{

using Mistakes = std::vector<MeshMistake>;

// Of so many places one is tried; all are when the environment's KVR_SEED_ALL is set, which takes ten minutes.
constexpr std::size_t kStep = kIsSanitized ? 19'997 : 2'999;

class SeededMesh : public testing::TestWithParam<char const*>
{
protected:
    // Held for all of the test, since each check would set it up anew, which takes longer than the check.
    SeededMesh() { xercesc::XMLPlatformUtils::Initialize(); }
    ~SeededMesh() override { xercesc::XMLPlatformUtils::Terminate(); }

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

// An index of what is not there, of a polygon at one of its corners.
MeshMistake Beyond(std::size_t i, std::vector<std::size_t> const& places, std::size_t count)
{
    return {"K-0402", PolygonName(i), {WordChange(places[i % places.size()], count)}};
}

// The same in each segment, at each of its places.
void AddBeyond(Mistakes& mistakes, std::vector<std::vector<std::size_t>> const& segments, std::size_t count,
               std::string const& name)
{
    for (std::size_t i = 0; i < segments.size(); ++i)
        for (std::size_t const place : segments[i])
            mistakes.push_back({"K-0402", name + std::to_string(i), {WordChange(place, count)}, true});
}

}  // namespace

TEST_P(SeededMesh, IndicesOfVerticesThatAreNotThere)
{
    Plant(
        [](LoneMesh const& lone)
        {
            Mistakes mistakes;
            for (std::size_t i = 0; i < lone.Mesh().polygons.size(); ++i)
                mistakes.push_back(Beyond(i, lone.Mesh().polygons[i].vertices, lone.Mesh().vertexCount + i));
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
                mistakes.push_back(Beyond(i, lone.Mesh().polygons[i].normals, lone.Mesh().normalCount + i));
            return mistakes;
        });
}

TEST_P(SeededMesh, SegmentsOfWhatIsNotThere)
{
    Plant(
        [](LoneMesh const& lone)
        {
            Mistakes mistakes;
            AddBeyond(mistakes, lone.Segments().faces, lone.Mesh().polygons.size(), "face segment ");
            AddBeyond(mistakes, lone.Segments().edges, lone.Mesh().vertexCount, "edge segment ");
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
            double const numbers[] = {std::numeric_limits<double>::infinity(),
                                      std::numeric_limits<double>::quiet_NaN()};
            // Along each axis in turn.
            for (std::size_t i = 0; i < lone.Mesh().vertexCount; ++i)
                mistakes.push_back({"K-0408",
                                    "vertex " + std::to_string(i),
                                    {NumberChange(lone.Mesh().vertices + 24 * i + 8 * (i % 3), numbers[i / 3 % 2])}});
            return mistakes;
        });
}

INSTANTIATE_TEST_SUITE_P(Examples, SeededMesh, testing::Values("as1-oc-214", "lcr_follower_arm"),
                         [](auto const& scene)
                         { return std::regex_replace(std::string(scene.param), std::regex("-"), "_"); });

}  // namespace KVR::Test

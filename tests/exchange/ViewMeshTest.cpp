#include "exchange/view/ViewMesh.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "exchange/view/ViewThinning.h"

namespace KVR::Test
{

using testing::ElementsAre;

TEST(ViewMesh, TrianglesAreSortedByFaceAndKeepTheirStyles)
{
    SceneMesh mesh;
    mesh.runs = {{"red", false, false, 0, 4, 0, 3}, {"", false, false, 4, 3, 3, 1}};
    mesh.positions = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 5, 5, 5, 6, 5, 5, 5, 6, 5};
    mesh.indices = {0, 1, 2, 0, 2, 3, 1, 2, 3, 4, 5, 6};
    mesh.faceOfTriangle = {1, 0, 1, SceneMesh::kNoFace};
    mesh.faces.resize(2);
    mesh.edgePoints = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 0, 0, 0, 1, 0};
    mesh.edges = {{0, 3, {}, {}}, {3, 2, {}, {}}};
    ViewMesh const made = ViewMesh::Of(mesh, [](std::string_view id) { return id == "red" ? 4 : -1; });
    ASSERT_EQ(made.primitives.size(), 3U);
    EXPECT_EQ(made.primitives[0].style, 4);
    EXPECT_THAT(made.primitives[0].indices, ElementsAre(0, 2, 3, 0, 1, 2, 1, 2, 3));
    EXPECT_THAT(made.primitives[0].ranges, ElementsAre(0, 1));
    EXPECT_THAT(made.primitives[0].numbers, ElementsAre(0, 1));
    EXPECT_EQ(made.primitives[1].style, -1);
    EXPECT_THAT(made.primitives[1].indices, ElementsAre(0, 1, 2));
    EXPECT_THAT(made.primitives[1].numbers, ElementsAre(SceneMesh::kNoFace));
    EXPECT_THAT(made.primitives[2].indices, ElementsAre(0, 1, 1, 2, 3, 4));
    EXPECT_THAT(made.primitives[2].ranges, ElementsAre(0, 2));
    EXPECT_EQ(made.TriangleCount(), 4U);
}

TEST(ViewMesh, WhatIsFarOutKeepsItsDetail)
{
    SceneLines lines;
    lines.Add(std::vector<double>{1e9, 2e9, 0.0, 1e9 + 0.125, 2e9, 0.0});
    ViewMesh const made = ViewMesh::Of(lines);
    EXPECT_THAT(made.origin, ElementsAre(1e9, 2e9, 0.0));
    EXPECT_THAT(made.primitives.at(0).positions, ElementsAre(0.0F, 0.0F, 0.0F, 0.125F, 0.0F, 0.0F));
}

TEST(ViewMesh, ThinTrianglesKeepTheirFaces)
{
    // A strip of two faces, 64 squares long.
    ViewMesh mesh;
    ViewPrimitive& strip = mesh.primitives.emplace_back();
    for (std::uint32_t i = 0; i <= 64; ++i)
    {
        for (float const y : {0.0F, 40.0F})
            strip.positions.insert(strip.positions.end(), {static_cast<float>(i), y, 0.0F});
        if (i < 64)
            strip.indices.insert(strip.indices.end(), {2 * i, 2 * i + 2, 2 * i + 1, 2 * i + 1, 2 * i + 2, 2 * i + 3});
    }
    strip.ranges = {0, 64};
    strip.numbers = {7, 9};
    mesh.box = SceneBox{{0, 0, 0}, {64, 40, 0}};
    std::vector<ViewMesh> meshes{mesh};
    Thinned const thinned = ThinMeshes(meshes, {3}, 3 * 20);
    EXPECT_EQ(thinned.from, 3U * 128U);
    EXPECT_LE(thinned.to, 60U);
    EXPECT_GT(thinned.to, 12U);
    ViewPrimitive const& thin = meshes[0].primitives[0];
    EXPECT_THAT(thin.numbers, ElementsAre(7, 9));
    ASSERT_EQ(thin.ranges.size(), 2U);
    for (std::size_t i = 0; i < thin.indices.size(); ++i)
        EXPECT_TRUE(i / 3 < thin.ranges[1] ? thin.positions[3 * thin.indices[i]] <= 32.0F + 16.0F
                                           : thin.positions[3 * thin.indices[i]] >= 16.0F)
            << i;
}

}  // namespace KVR::Test

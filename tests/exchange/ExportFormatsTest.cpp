#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <assimp/material.h>
#include <assimp/mesh.h>
#include <assimp/scene.h>
#include <assimp/Importer.hpp>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/exchange/ExportScene.h"

// STL, OBJ and PLY, as another reader sees them.
namespace KVR::Test
{

namespace
{

using testing::DoubleNear;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

using Point = std::array<double, 3>;
using namespace std::string_literals;

std::string const kStyles = R"(<StyleSet><IRenderStyle ID="o range" Label="Orange">
<DiffuseColor FractionRed="1" FractionGreen="0.5" FractionBlue="0" FractionAlpha="0.25"/></IRenderStyle></StyleSet>)";

// In metres, with a part that is placed as it is, and mirrored in millimetres; and one curve.
std::string SceneText()
{
    return R"(<IFile ID="f" Label="file" IsRoot="1"><Unit LengthUnit="kUnitType_Meter"/><AttributeSet>)" + kStyles +
           R"(</AttributeSet><ChildSet><Child ID="top" Type="IAssembly"/></ChildSet></IFile>
<IAssembly ID="top" Label="Top"><Unit LengthUnit="kUnitType_Meter"/><ChildSet>)" +
           Instance("i1", "p", "1 0 0 10 0 1 0 0 0 0 1 0 0 0 0 1", R"(<Styles><StyleRef ID="o range"/></Styles>)") +
           Instance("i2", "p", "-1 0 0 0 0 1 0 0 0 0 1 5 0 0 0 1") +
           R"(</ChildSet></IAssembly><IPart ID="p" Label="Part"><UnitAndTolerance LengthUnit="kUnitType_Millimeter"/>
<ChildSet><IPolygonMesh ID="m" Label="Mesh" Visibility="1"/><ICurve ID="c" Label="Curve" Visibility="1"/></ChildSet></IPart>)";
}

struct FormatsRun : ExportScene
{
    explicit FormatsRun(std::string const& name)
    {
        // Its normal is along z.
        Mesh("m", {0, 0, 0, 1000, 0, 0, 0, 1000, 0}, {{0, 1, 2}});
        Authoring::PolylineRecord line;
        line.points = {{0, 0, 0}, {1000, 0, 0}, {1000, 2000, 0}};
        Store().Curve("c", {line});
        run = Export(SceneText(), name);
        if (run.status == 0)
            scene = importer.ReadFile(PathOf(name), 0);
    }
    ToolRun run;
    Assimp::Importer importer;
    aiScene const* scene = nullptr;
};

// The corners of each triangle in the order in which they stand in the file.
std::vector<std::array<Point, 3>> TrianglesOf(aiScene const& scene)
{
    std::vector<std::array<Point, 3>> triangles;
    for (unsigned i = 0; i < scene.mNumMeshes; ++i)
    {
        aiMesh const& mesh = *scene.mMeshes[i];
        for (unsigned face = 0; face < mesh.mNumFaces; ++face)
        {
            if (mesh.mFaces[face].mNumIndices != 3)
                continue;
            std::array<Point, 3>& triangle = triangles.emplace_back();
            for (unsigned corner = 0; corner < 3; ++corner)
            {
                aiVector3D const& v = mesh.mVertices[mesh.mFaces[face].mIndices[corner]];
                triangle[corner] = {static_cast<double>(v.x), static_cast<double>(v.y), static_cast<double>(v.z)};
            }
        }
    }
    return triangles;
}

// Placed in metres; the mirrored one turns its corners round, so that its front stays in front.
void ExpectBothTriangles(aiScene const& scene)
{
    EXPECT_THAT(TrianglesOf(scene),
                ElementsAre(ElementsAre(ElementsAre(10, 0, 0), ElementsAre(11, 0, 0), ElementsAre(10, 1, 0)),
                            ElementsAre(ElementsAre(0, 0, 5), ElementsAre(0, 1, 5), ElementsAre(-1, 0, 5))));
}

}  // namespace

TEST(ExportFormatsTest, StlHasTheTrianglesOfAllOccurrences)
{
    FormatsRun const stl("out.stl");
    ASSERT_EQ(stl.run.status, 0) << stl.run.error;
    ASSERT_TRUE(stl.scene) << stl.importer.GetErrorString();
    ExpectBothTriangles(*stl.scene);
    for (unsigned i = 0; i < 6; ++i)
        EXPECT_EQ(stl.scene->mMeshes[0]->mNormals[i].z, 1.0F);
    EXPECT_EQ(std::filesystem::file_size(stl.PathOf("out.stl")), 84U + 2 * 50U);
    EXPECT_THAT(stl.run.error, HasSubstr("2 objects of the kind ICurve"));
}

TEST(ExportFormatsTest, APointIsRoundedOnceInTheCoordinatesOfTheScene)
{
    ExportScene scene;
    // As floats the first and the third one would be 16777216.
    scene.Mesh("m", {16777217, 0, 0, 16777218, 0, 0, 16777217, 3, 0}, {{0, 1, 2}});
    ToolRun const run = scene.Export(
        R"(<IFile ID="f" IsRoot="1"><ChildSet><Child ID="top" Type="IAssembly"/></ChildSet></IFile>
<IAssembly ID="top"><ChildSet>)" +
            Instance("i", "p", "1 0 0 -16777216 0 1 0 0 0 0 1 0 0 0 0 1") +
            R"(</ChildSet></IAssembly><IPart ID="p"><ChildSet><IPolygonMesh ID="m" Visibility="1"/></ChildSet></IPart>)",
        "out.stl");
    ASSERT_EQ(run.status, 0) << run.error;
    Assimp::Importer importer;
    aiScene const* const found = importer.ReadFile(scene.PathOf("out.stl"), 0);
    ASSERT_TRUE(found) << importer.GetErrorString();
    EXPECT_THAT(TrianglesOf(*found),
                ElementsAre(ElementsAre(ElementsAre(1, 0, 0), ElementsAre(2, 0, 0), ElementsAre(1, 3, 0))));
}

// More of them than are written at a time.
TEST(ExportFormatsTest, ThousandsOfTrianglesStandOneBehindTheOther)
{
    constexpr std::uint64_t kTriangles = 5000;
    std::vector<double> vertices;
    std::vector<std::vector<std::uint64_t>> polygons;
    for (std::uint64_t i = 0; i < kTriangles; ++i)
    {
        auto const x = static_cast<double>(i);
        vertices.insert(vertices.end(), {x, 0, 0, x + 1, 0, 0, x, 1, 0});
        polygons.push_back({3 * i, 3 * i + 1, 3 * i + 2});
    }
    for (std::string const name : {"out.stl", "out.ply"})
    {
        ExportScene scene;
        scene.Mesh("m", vertices, polygons);
        ToolRun const run = scene.Export(UnderTop(Instance("i", "p")) + PartOfMesh(), name);
        ASSERT_EQ(run.status, 0) << run.error;
        Assimp::Importer importer;
        aiScene const* const found = importer.ReadFile(scene.PathOf(name), 0);
        ASSERT_TRUE(found) << importer.GetErrorString();
        std::vector<std::array<Point, 3>> const triangles = TrianglesOf(*found);
        ASSERT_EQ(triangles.size(), kTriangles);
        for (std::size_t i = 0; i < kTriangles; ++i)
            ASSERT_EQ(triangles[i][1][0], static_cast<double>(i + 1));
    }
}

TEST(ExportFormatsTest, PlyHasTrianglesWithTheirColours)
{
    FormatsRun const ply("out.ply");
    ASSERT_EQ(ply.run.status, 0) << ply.run.error;
    ASSERT_TRUE(ply.scene) << ply.importer.GetErrorString();
    ExpectBothTriangles(*ply.scene);
    std::ifstream file(ply.PathOf("out.ply"), std::ios::binary);
    std::string const bytes{std::istreambuf_iterator<char>(file), {}};
    // Behind three corners of 12 bytes each for both, a face has a count, its indices and its colour.
    std::string const body = bytes.substr(bytes.find("end_header\n") + 11);
    ASSERT_EQ(body.size(), 2 * (36U + 17U));
    EXPECT_EQ(body.substr(72 + 13, 4), "\xff\x80\x00\x40"s);
    EXPECT_EQ(body.substr(72 + 17 + 13, 4), "\xb3\xb3\xb3\xff"s);
    EXPECT_THAT(ply.run.error, HasSubstr("2 objects of the kind ICurve"));
}

TEST(ExportFormatsTest, ObjHasObjectsMaterialsAndCurves)
{
    FormatsRun const obj("out.obj");
    ASSERT_EQ(obj.run.status, 0) << obj.run.error;
    EXPECT_THAT(obj.run.error, IsEmpty());
    ASSERT_TRUE(obj.scene) << obj.importer.GetErrorString();
    ExpectBothTriangles(*obj.scene);
    unsigned lines = 0;
    std::vector<Point> colors;
    for (unsigned i = 0; i < obj.scene->mNumMeshes; ++i)
    {
        aiMesh const& mesh = *obj.scene->mMeshes[i];
        for (unsigned face = 0; face < mesh.mNumFaces; ++face)
            lines += mesh.mFaces[face].mNumIndices == 2 ? 1 : 0;
        aiColor3D color;
        obj.scene->mMaterials[mesh.mMaterialIndex]->Get(AI_MATKEY_COLOR_DIFFUSE, color);
        colors.push_back({static_cast<double>(color.r), static_cast<double>(color.g), static_cast<double>(color.b)});
    }
    EXPECT_EQ(lines, 4U);
    EXPECT_THAT(colors, testing::Contains(ElementsAre(1.0, 0.5, 0.0)));
    EXPECT_THAT(colors, testing::Contains(ElementsAre(0.0, 0.0, 0.0)));
    EXPECT_THAT(colors, testing::Contains(testing::Each(DoubleNear(0.7, 1e-6))));
    std::ifstream materials(obj.PathOf("out.mtl"));
    std::string const text{std::istreambuf_iterator<char>(materials), {}};
    EXPECT_THAT(text, HasSubstr("d 0.25\n"));
}

TEST(ExportFormatsTest, ObjNamesEachOccurrenceOnceAndNoTwoAlike)
{
    ExportScene scene;
    scene.Triangle("m").Triangle("n");
    std::string const text =
        UnderTop(R"(<IInstance ID="i1" Label="a b" Visibility="1"><Child ID="p"/></IInstance>
<IInstance ID="i2" Label="a_b" Visibility="1"><Child ID="p"/></IInstance>
<IInstance ID="i3" Label="a_b.2" Visibility="1"><Child ID="p"/></IInstance>
<IInstance ID="i4" Label="a b" Visibility="1"><Child ID="p"/></IInstance>
<IInstance ID="i5" Visibility="1"><Child ID="q"/></IInstance>)") +
        R"(<IPart ID="p" Label="Part"><ChildSet><IPolygonMesh ID="m" Visibility="1"/><IPolygonMesh ID="n" Visibility="1"/>
</ChildSet></IPart><IPart ID="q"><ChildSet><IPolygonMesh ID="m" Visibility="1"/></ChildSet></IPart>)";
    ToolRun const run = scene.Export(text, "out.obj");
    ASSERT_EQ(run.status, 0) << run.error;
    std::ifstream file(scene.PathOf("out.obj"));
    std::vector<std::string> names;
    for (std::string line; std::getline(file, line);)
        if (line.starts_with("o "))
            names.push_back(line.substr(2));
    EXPECT_THAT(names, ElementsAre("a_b", "a_b.2", "a_b.2.2", "a_b.3", "i5"));
}

TEST(ExportFormatsTest, TheUnitIsTheOneAskedForAndSaid)
{
    for (std::string const name : {"out.stl", "out.obj", "out.ply"})
    {
        ExportScene scene;
        scene.Mesh("m", {0, 0, 0, 1000, 0, 0, 0, 1000, 0}, {{0, 1, 2}});
        ToolRun const run = scene.Export(SceneText(), name, {"--unit", "inch"});
        ASSERT_EQ(run.status, 0) << run.error;
        EXPECT_THAT(run.error, HasSubstr(name + ": its unit of length: inch\n"));
        Assimp::Importer importer;
        aiScene const* const found = importer.ReadFile(scene.PathOf(name), 0);
        ASSERT_TRUE(found) << importer.GetErrorString();
        EXPECT_NEAR(TrianglesOf(*found).at(0).at(0).at(0), 10 / 0.0254, 1e-4);
        std::ifstream file(scene.PathOf(name), std::ios::binary);
        std::string const head = std::string(std::istreambuf_iterator<char>(file), {}).substr(0, 120);
        EXPECT_THAT(head, HasSubstr("unit of length: inch"));
    }
}

}  // namespace KVR::Test

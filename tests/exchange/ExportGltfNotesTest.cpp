#include <gmock/gmock.h>
#include <gtest/gtest.h>

#ifdef KVR_HAS_MESHOPTIMIZER
#include <meshoptimizer.h>
#endif

#include <TopoDS_Shape.hxx>
#include <algorithm>
#include <cstring>
#include <fstream>
#include <iterator>

#include "authoring/KernelStoreWriter.h"
#include "exchange/export/StrokeFont.h"
#include "tests/exchange/ExportScene.h"
#include "tests/exchange/GltfFile.h"
#include "tests/support/Shapes.h"

// Annotation, views, faces and hidden things in glTF, and its compressed form.
namespace KVR::Test
{

namespace
{

using nlohmann::json;
using testing::DoubleNear;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

auto Near(double x, double y, double z)
{
    return ElementsAre(DoubleNear(x, 1e-6), DoubleNear(y, 1e-6), DoubleNear(z, 1e-6));
}

// A part with a triangle; a callout that a line of two pieces draws, in inches; and two of text alone in one plane.
std::string PartWithNotes()
{
    return R"(<IPart ID="p" Label="Part"><Unit LengthUnit="kUnitType_Millimeter"/><ChildSet>
<IPolygonMesh ID="m" Label="Mesh" Visibility="1"/>
<IWorkPlane ID="plane"><Origin X="0" Y="0" Z="5"/><Normal X="0" Y="0" Z="1"/><Reference X="0" Y="1" Z="0"/></IWorkPlane>
<IAnnotationCallout ID="drawn" Label="Drawn" Visibility="1"><IText><ITextLine><ITextFragment Value="Deburr"/></ITextLine></IText>
<AnnotationPlane><Child ID="plane"/></AnnotationPlane><ChildSet><IAnnotationCalloutElement ID="leader"><ChildSet>
<ICurve ID="c"><Unit LengthUnit="kUnitType_Inch"/></ICurve></ChildSet></IAnnotationCalloutElement></ChildSet>
<ExtensionData TypeId="kvr.annotation.kind" Content="datum"/></IAnnotationCallout>
<IAnnotationCallout ID="said" Label="" Visibility="1"><IText><ITextLine><ITextFragment Value="L" Height="21"/></ITextLine></IText>
<AnnotationPlane><Child ID="plane"/></AnnotationPlane></IAnnotationCallout>
<IAnnotationCallout ID="next" Label="Next" Visibility="1"><IText><ITextLine><ITextFragment Value="L" Height="21"/></ITextLine></IText>
<AnnotationPlane><Child ID="plane"/></AnnotationPlane></IAnnotationCallout>
<IAnnotationCallout ID="away" Label="Away" Visibility="0"/></ChildSet></IPart>)";
}

struct NoteScene : ExportScene
{
    explicit NoteScene(std::vector<std::string> const& options = {})
    {
        Triangle("m");
        Authoring::PolylineRecord line;
        line.points = {{0, 0, 0}, {1, 0, 0}, {1, 2, 0}};
        Store().Curve("c", {line});
        run = Export(
            UnderTop(Instance("i", "p", "1 0 0 100 0 1 0 0 0 0 1 0 0 0 0 1") + Instance("j", "p")) + PartWithNotes(),
            "out.glb", options);
    }
    ToolRun run;
};

json NodeOf(json const& document, std::string const& name)
{
    for (json const& node : document["nodes"])
        if (node.value("name", "") == name)
            return node;
    return {};
}

}  // namespace

TEST(ExportGltfNotesTest, ACalloutIsAGroupsNodeInEachOccurrenceWithItsLinesAndItsText)
{
    NoteScene const scene;
    ASSERT_EQ(scene.run.status, 0) << scene.run.error;
    EXPECT_THAT(scene.run.error, HasSubstr("2 hidden pieces of geometry"));
    EXPECT_THAT(scene.run.error, Not(HasSubstr("IAnnotationCallout")));
    GltfFile const file(scene.PathOf("out.glb"));
    std::vector<GltfFile::Shown const*> drawn;
    for (GltfFile::Shown const& shown : file.shown)
        if (shown.path == "/Notes/Drawn")
            drawn.push_back(&shown);
    ASSERT_EQ(drawn.size(), 2U);
    EXPECT_EQ(drawn[0]->node["mesh"], drawn[1]->node["mesh"]);
    // In metres with y up.
    EXPECT_THAT(drawn[0]->points, ElementsAre(Near(0.1, 0, 0), Near(0.1254, 0, 0), Near(0.1254, 0, -0.0508)));
    EXPECT_THAT(drawn[0]->indices, ElementsAre(0, 1, 1, 2));
    EXPECT_EQ(drawn[0]->primitive["mode"], 1);
    json const extras = drawn[0]->node["extras"];
    EXPECT_EQ(extras["id"], "drawn");
    EXPECT_EQ(extras["text"], "Deburr");
    EXPECT_EQ(extras["annotation"], "datum");
    EXPECT_EQ(extras["plane"]["origin"], json({0.0, 0.0, 5.0}));
    EXPECT_EQ(extras["plane"]["reference"], json({0.0, 1.0, 0.0}));
}

TEST(ExportGltfNotesTest, ATextWithoutADrawingIsStrokesInItsPlaneAndTheNextOneBelow)
{
    NoteScene const scene;
    GltfFile const file(scene.PathOf("out.glb"));
    // An L of the font is a stroke down, 21 units high, and one along the base. It runs along y, its up is -x.
    std::vector<GltfFile::Point> points;
    for (GltfFile::Shown const& shown : file.shown)
        if (shown.path == "/Notes/L")
            points = shown.points;
    ASSERT_EQ(points.size(), 4U);
    EXPECT_NEAR(points[1][0] - points[0][0], 0.021, 1e-6);
    EXPECT_NEAR(points[0][1], 0.005, 1e-6);
    EXPECT_LT(points[3][2], points[2][2]);
    GltfFile::Shown const& next = file.At("/Notes/Next");
    EXPECT_GT(next.points[0][0] - points[0][0], 0.025);
}

TEST(ExportGltfNotesTest, WhatIsHiddenIsThereWhenAskedFor)
{
    NoteScene const scene({"--hidden-nodes"});
    ASSERT_EQ(scene.run.status, 0) << scene.run.error;
    EXPECT_THAT(scene.run.error, Not(HasSubstr("hidden")));
    GltfFile const file(scene.PathOf("out.glb"));
    json const away = NodeOf(file.document, "Away");
    EXPECT_EQ(away["extensions"]["KHR_node_visibility"]["visible"], false);
    EXPECT_EQ(away["extras"]["visible"], false);
    EXPECT_FALSE(NodeOf(file.document, "Drawn").contains("extensions"));
    EXPECT_THAT(file.document["extensionsUsed"], testing::Contains("KHR_node_visibility"));
}

TEST(ExportGltfNotesTest, AHiddenOccurrenceIsHiddenWithAllBelowIt)
{
    ExportScene scene;
    scene.Triangle("m");
    std::string const text =
        UnderTop(Instance("i", "p") +
                 R"(<IInstance ID="gone" Label="gone" Visibility="0"><Child ID="p"/></IInstance>)") +
        PartOfMesh();
    ToolRun const run = scene.Export(text, "out.glb", {"--hidden-nodes"});
    ASSERT_EQ(run.status, 0) << run.error;
    GltfFile const file(scene.PathOf("out.glb"));
    EXPECT_EQ(NodeOf(file.document, "gone")["extensions"]["KHR_node_visibility"]["visible"], false);
    EXPECT_TRUE(file.Has("gone/Mesh"));
    EXPECT_FALSE(file.At("/i/Mesh").node.contains("extensions"));
}

TEST(ExportGltfNotesTest, EachViewHasItsCameraUnderItsName)
{
    ExportScene scene;
    scene.Triangle("m");
    std::string const declared = R"(<CameraSet><ICamera ID="eye" Type="kCameraType_Parallel"/>
<ICamera ID="own" Label="Own" Type="kCameraType_Parallel"/></CameraSet><ViewSet>
<IView ID="v1" Label="Front"><CameraSet><CameraRef ID="eye"/></CameraSet></IView>
<IView ID="v2"><CameraSet><CameraRef ID="eye"/></CameraSet></IView></ViewSet>)";
    ToolRun const run = scene.Export(UnderTop(Instance("i", "p"), "", declared) + PartOfMesh(), "out.glb");
    ASSERT_EQ(run.status, 0) << run.error;
    GltfFile const file(scene.PathOf("out.glb"));
    json const front = NodeOf(file.document, "Front");
    EXPECT_EQ(front["camera"], 0);
    EXPECT_EQ(front["extras"], json({{"id", "eye"}, {"view", "v1"}}));
    EXPECT_EQ(NodeOf(file.document, "v2")["camera"], 0);
    EXPECT_EQ(NodeOf(file.document, "Own")["camera"], 1);
    EXPECT_EQ(file.document["cameras"].size(), 2U);
    json const views = file.document["scenes"][0]["extras"]["views"];
    EXPECT_EQ(file.document["nodes"][views[1]["cameraNodes"][0].get<std::size_t>()]["name"], "v2");
}

TEST(ExportGltfNotesTest, EveryVertexHasTheNumberOfItsFaceAndTheMeshTheirIds)
{
    // A box and its mesh, whose faces share their corners; one triangle more is of no face.
    TempFolder folder;
    Authoring::KernelStoreWriter bodies(folder.PathOf("s.sat"), Authoring::KernelStoreForm::kText);
    bodies.Body("b", BoxShape(1, 1, 1), {{0, "first"}, {5, "last"}}, {});
    bodies.Finish();
    Authoring::MeshStoreWriter meshes(folder.PathOf("s.mesh"), Authoring::MeshStoreLayout::kMeshInfo);
    Authoring::MeshHead head;
    head.vertexCount = 8;
    head.polygonCount = 7;
    meshes.BeginMesh(UTF8String("m"), head);
    meshes.Vertices(std::vector<double>{0, 0, 0, 1, 0, 0, 0, 1, 0, 1, 1, 0, 0, 0, 1, 1, 0, 1, 0, 1, 1, 1, 1, 1});
    std::vector<std::uint64_t> const sides[] = {{0, 4, 6, 2}, {1, 3, 7, 5}, {0, 1, 5, 4}, {2, 6, 7, 3},
                                                {0, 2, 3, 1}, {4, 5, 7, 6}, {0, 1, 7}};
    for (std::vector<std::uint64_t> const& side : sides)
    {
        Authoring::PolygonRecord polygon;
        polygon.vertices = side;
        meshes.Polygon(polygon);
    }
    meshes.EndMesh();
    meshes.Finish();
    Authoring::SegmentStoreWriter segments(folder.PathOf("s.seg"));
    segments.Mesh(UTF8String("m"), std::vector<std::vector<std::uint64_t>>{{0}, {1}, {2}, {3}, {4}, {5}}, {},
                  std::vector<bool>(6, true));
    segments.Finish();
    folder.Write("scene.xml", R"(<S><SatInfo Path="s.sat"/><MeshInfo GenerateMesh="True" Path="s.mesh"/>
<MeshSegmentInfo GenerateMeshSegment="True" Path="s.seg"/>)" +
                                  UnderTop(Instance("i", "p")) + R"(<IPart ID="p" Label="Part"><ChildSet>
<IBrep ID="b" Visibility="1"/><IPolygonMesh ID="m" Label="Mesh" Visibility="1">
<ExtensionData TypeId="kvr.body" Content="b"/></IPolygonMesh></ChildSet></IPart></S>)");
    ToolRun const run = RunTool({"export", folder.NarrowPathOf("scene.xml"), folder.NarrowPathOf("out.glb")});
    ASSERT_EQ(run.status, 0) << run.error;
    GltfFile const file(folder.NarrowPathOf("out.glb"));
    GltfFile::Shown const& shown = file.At("/Mesh");
    json const feature = shown.primitive["extensions"]["EXT_mesh_features"]["featureIds"][0];
    EXPECT_EQ(feature["attribute"], 0);
    EXPECT_EQ(feature["featureCount"], 6);
    EXPECT_EQ(feature["nullFeatureId"], 6);
    auto const numbers = file.Numbers(shown.primitive["attributes"]["_FEATURE_ID_0"]);
    // Four for each side, and three.
    ASSERT_EQ(shown.points.size(), 27U);
    ASSERT_EQ(numbers.size(), 27U);
    ASSERT_EQ(shown.indices.size(), 39U);
    for (std::size_t i = 0; i < shown.indices.size(); ++i)
        EXPECT_EQ(numbers[shown.indices[i]][0], static_cast<double>(i / 6)) << i;
    EXPECT_THAT(shown.points[shown.indices[38]], Near(0.001, 0.001, -0.001));
    EXPECT_EQ(file.document["meshes"][0]["extras"]["faces"], json({"first", "", "", "", "", "last"}));
}

#ifdef KVR_HAS_MESHOPTIMIZER

namespace
{

// The numbers of an accessor of a compressed file.
std::vector<char> Unpacked(json const& document, std::string const& bytes, json const& accessor)
{
    json const& view =
        document["bufferViews"][document["accessors"][accessor.get<std::size_t>()]["bufferView"].get<std::size_t>()];
    json const& packed = view.at("extensions").at("EXT_meshopt_compression");
    auto const count = packed.at("count").get<std::size_t>();
    auto const stride = packed.at("byteStride").get<std::size_t>();
    std::vector<char> numbers(count * stride);
    auto const* const source = reinterpret_cast<unsigned char const*>(bytes.data()) +
                               bytes.find(std::string("BIN\0", 4)) + 4 + packed.at("byteOffset").get<std::size_t>();
    auto const size = packed.at("byteLength").get<std::size_t>();
    EXPECT_EQ(packed["mode"] == "ATTRIBUTES" ? meshopt_decodeVertexBuffer(numbers.data(), count, stride, source, size)
                                             : meshopt_decodeIndexBuffer(numbers.data(), count, stride, source, size),
              0);
    return numbers;
}

std::string FileBytes(std::string const& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace

TEST(ExportGltfNotesTest, ACompressedFileHasTheSameNumbers)
{
    ExportScene scene;
    std::vector<double> grid;
    std::vector<std::vector<std::uint64_t>> quads;
    constexpr std::uint64_t kSide = 40;
    for (std::uint64_t y = 0; y < kSide; ++y)
        for (std::uint64_t x = 0; x < kSide; ++x)
        {
            grid.insert(grid.end(), {static_cast<double>(x), static_cast<double>(y), static_cast<double>(x * y) / 7.0});
            if (x > 0 && y > 0)
                quads.push_back({(y - 1) * kSide + x - 1, (y - 1) * kSide + x, y * kSide + x, y * kSide + x - 1});
        }
    scene.Mesh("m", grid, quads);
    std::string const text = UnderTop(Instance("i", "p")) + PartOfMesh();
    ASSERT_EQ(scene.Export(text, "plain.glb").status, 0);
    for (std::string const name : {"small.glb", "small.gltf"})
        ASSERT_EQ(scene.Export(text, name, {"--compress"}).status, 0);
    GltfFile const plain(scene.PathOf("plain.glb"));
    std::string const bytes = FileBytes(scene.PathOf("small.glb"));
    EXPECT_LT(2 * bytes.size(), FileBytes(scene.PathOf("plain.glb")).size());
    json const packed = json::parse(FileBytes(scene.PathOf("small.gltf")));
    EXPECT_EQ(packed["extensionsRequired"], json({"EXT_meshopt_compression"}));
    EXPECT_EQ(packed["buffers"][1]["extensions"]["EXT_meshopt_compression"]["fallback"], true);
    json const& primitive = plain.shown[0].primitive;
    std::vector<char> const points = Unpacked(packed, bytes, primitive["attributes"]["POSITION"]);
    std::vector<float> floats(points.size() / sizeof(float));
    std::memcpy(floats.data(), points.data(), points.size());
    std::vector<double> expected;
    for (std::vector<double> const& point : plain.Numbers(primitive["attributes"]["POSITION"]))
        expected.insert(expected.end(), point.begin(), point.end());
    EXPECT_TRUE(std::equal(floats.begin(), floats.end(), expected.begin(), expected.end(),
                           [](float a, double b) { return static_cast<double>(a) == b; }));
    std::vector<char> const corners = Unpacked(packed, bytes, primitive["indices"]);
    std::vector<std::uint16_t> indices(corners.size() / 2);
    std::memcpy(indices.data(), corners.data(), corners.size());
    ASSERT_EQ(indices.size(), plain.shown[0].indices.size());
    // A triangle may begin with another of its corners.
    for (std::size_t i = 0; i < indices.size(); i += 3)
    {
        std::vector<std::size_t> triangle(indices.begin() + static_cast<std::ptrdiff_t>(i),
                                          indices.begin() + static_cast<std::ptrdiff_t>(i + 3));
        auto const first = std::find(triangle.begin(), triangle.end(), plain.shown[0].indices[i]);
        std::rotate(triangle.begin(), first, triangle.end());
        ASSERT_EQ(triangle,
                  std::vector<std::size_t>(plain.shown[0].indices.begin() + static_cast<std::ptrdiff_t>(i),
                                           plain.shown[0].indices.begin() + static_cast<std::ptrdiff_t>(i + 3)));
    }
}

#endif

TEST(StrokeFontTest, AFileThatIsNoneIsNoFont)
{
    EXPECT_FALSE(StrokeFont::Of(""));
    EXPECT_FALSE(StrokeFont::Of("12345  1"));
    std::string many;
    for (int i = 0; i < 95; ++i)
        many += "12345  5JZRFR[\n";
    ASSERT_TRUE(StrokeFont::Of(many));
    SceneLines const lines = StrokeFont::Of(many)->Strokes("a\n\xC2\xB1\x01\xFF", 21.0);
    // One for the letter, three for the sign, one for each that has none.
    ASSERT_EQ(lines.Count(), 6U);
    EXPECT_THAT(lines.At(0), ElementsAre(8, 21, 0, 8, 0, 0));
    EXPECT_THAT(lines.At(1), ElementsAre(8, testing::DoubleNear(21 - 1.7 * 21, 1e-9), 0, 8, -1.7 * 21, 0));
}

}  // namespace KVR::Test

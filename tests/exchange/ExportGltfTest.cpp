#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "tests/exchange/ExportScene.h"
#include "tests/exchange/GltfFile.h"

namespace KVR::Test
{

namespace
{

using nlohmann::json;
using testing::DoubleNear;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr char kStyles[] = R"(<StyleSet>
  <IRenderStyle ID="grey" Label="Grey"><DiffuseColor FractionRed="0.5" FractionGreen="0.5" FractionBlue="1"/>
    <EmissionColor FractionRed="0" FractionGreen="0" FractionBlue="0.5"/></IRenderStyle>
  <IRenderStyle ID="glass" Label="Glass"><DiffuseColor FractionRed="0" FractionGreen="1" FractionBlue="0" FractionAlpha="0.25"/>
    <ExtensionData TypeId="gltf.pbrMetallicRoughness" Content='{"metallicFactor":0.75,"roughnessFactor":0.125}'/></IRenderStyle>
  <IRenderStyle ID="red" Label="Red"><DiffuseColor FractionRed="1" FractionGreen="0" FractionBlue="0"/></IRenderStyle>
</StyleSet>)";

std::string StyleRef(std::string const& id)
{
    return "<Styles><StyleRef ID=\"" + id + "\"/></Styles>";
}

auto Near(double x, double y, double z)
{
    return ElementsAre(DoubleNear(x, 1e-7), DoubleNear(y, 1e-7), DoubleNear(z, 1e-7));
}

// The file that a good export of the scene gives.
GltfFile Exported(ExportScene& scene, std::string const& text, std::vector<std::string> const& options = {})
{
    ToolRun const run = scene.Export(text, "out.glb", options);
    if (run.status != 0)
        throw std::runtime_error(run.error);
    return GltfFile(scene.PathOf("out.glb"));
}

}  // namespace

TEST(ExportGltfTest, APartThatIsPlacedTwiceIsOneMeshUnderTwoNodesInMetresWithYUp)
{
    ExportScene scene;
    scene.Triangle("m");
    GltfFile const file =
        Exported(scene, UnderTop(Instance("i1", "p", "1 0 0 10 0 1 0 20 0 0 1 30 0 0 0 1") + Instance("i2", "p")) +
                            PartOfMesh());
    EXPECT_EQ(file.document["meshes"].size(), 1U);
    EXPECT_EQ(file.document["accessors"].size(), 2U);
    ASSERT_EQ(file.shown.size(), 2U);
    EXPECT_THAT(file.At("/Top/i1/Mesh").points,
                ElementsAre(Near(0.010, 0.030, -0.020), Near(0.011, 0.030, -0.020), Near(0.010, 0.030, -0.021)));
    EXPECT_THAT(file.At("/Top/i2/Mesh").points, ElementsAre(Near(0, 0, 0), Near(0.001, 0, 0), Near(0, 0, -0.001)));
    EXPECT_THAT(file.At("/i1/Mesh").indices, ElementsAre(0, 1, 2));
}

TEST(ExportGltfTest, APartInInchesIsItsSizeInAnAssemblyInMillimetres)
{
    ExportScene scene;
    scene.Triangle("m");
    GltfFile const file =
        Exported(scene, UnderTop(Instance("i", "p", "1 0 0 10 0 1 0 0 0 0 1 0 0 0 0 1")) +
                            R"(<IPart ID="p" Label="Part"><UnitAndTolerance LengthUnit="kUnitType_Inch"/><ChildSet>
<IPolygonMesh ID="m" Label="Mesh" Visibility="1"/></ChildSet></IPart>)");
    EXPECT_THAT(file.At("/Mesh").points, ElementsAre(Near(0.010, 0, 0), Near(0.0354, 0, 0), Near(0.010, 0, -0.0254)));
}

TEST(ExportGltfTest, AMeshInAUnitOfItsOwnHasItsSizeInItsPart)
{
    ExportScene scene;
    scene.Triangle("m");
    GltfFile const file = Exported(
        scene, UnderTop(Instance("i", "p")) +
                   R"(<IPart ID="p" Label="Part"><UnitAndTolerance LengthUnit="kUnitType_Millimeter"/><ChildSet>
<IPolygonMesh ID="m" Label="Mesh" Visibility="1"><UnitAndTolerance LengthUnit="kUnitType_Centimeter"/>
<Unit LengthUnit="kUnitType_Centimeter"/></IPolygonMesh></ChildSet></IPart>)");
    EXPECT_THAT(file.At("/Mesh").points, ElementsAre(Near(0, 0, 0), Near(0.01, 0, 0), Near(0, 0, -0.01)));
}

TEST(ExportGltfTest, TheUniverseSaysWhatIsUp)
{
    ExportScene scene;
    scene.Triangle("m");
    GltfFile const file = Exported(scene, "<IUniverse><ViewData><UpVector>0,1,0</UpVector></ViewData></IUniverse>" +
                                              UnderTop(Instance("i", "p")) + PartOfMesh());
    EXPECT_THAT(file.At("/Mesh").points, ElementsAre(Near(0, 0, 0), Near(0.001, 0, 0), Near(0, 0.001, 0)));
}

TEST(ExportGltfTest, ColoursBecomeLinearAndTransparentOnesBlend)
{
    ExportScene scene;
    scene.Triangle("m");
    GltfFile const file = Exported(
        scene, UnderTop(Instance("i1", "p", "1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1", StyleRef("glass")) + Instance("i2", "p"),
                        "", kStyles) +
                   PartOfMesh(StyleRef("grey")));
    EXPECT_EQ(file.document["meshes"].size(), 2U);
    EXPECT_EQ(file.document["accessors"].size(), 2U) << "two styles of one mesh share its numbers";
    json const grey = file.At("/i2/Mesh").material;
    EXPECT_EQ(grey["name"], "Grey");
    EXPECT_EQ(grey["extras"]["id"], "grey");
    EXPECT_THAT(grey["pbrMetallicRoughness"]["baseColorFactor"].get<std::vector<double>>(),
                ElementsAre(DoubleNear(0.2140411, 1e-6), DoubleNear(0.2140411, 1e-6), 1.0, 1.0));
    EXPECT_THAT(grey["emissiveFactor"].get<std::vector<double>>(), ElementsAre(0.0, 0.0, DoubleNear(0.2140411, 1e-6)));
    EXPECT_EQ(grey["pbrMetallicRoughness"]["metallicFactor"], 0.0);
    EXPECT_FALSE(grey.contains("alphaMode"));
    json const glass = file.At("/i1/Mesh").material;
    EXPECT_EQ(glass["alphaMode"], "BLEND");
    EXPECT_EQ(glass["doubleSided"], true);
    EXPECT_EQ(glass["pbrMetallicRoughness"]["baseColorFactor"], json({0.0, 1.0, 0.0, 0.25}));
    EXPECT_EQ(glass["pbrMetallicRoughness"]["metallicFactor"], 0.75);
    EXPECT_EQ(glass["pbrMetallicRoughness"]["roughnessFactor"], 0.125);
}

TEST(ExportGltfTest, SurfacesWithoutStyleAreGreyAndCurvesHaveTheColourOfTheUniverse)
{
    ExportScene scene;
    scene.Triangle("m");
    Authoring::PolylineRecord line;
    line.points = {{0, 0, 0}, {1, 0, 0}, {1, 2, 0}};
    scene.Store().Curve("c", {line});
    GltfFile const file = Exported(
        scene, R"(<IUniverse><DefaultCurveColor FractionRed="1" FractionGreen="0" FractionBlue="1"/></IUniverse>)" +
                   UnderTop(Instance("i", "p")) +
                   R"(<IPart ID="p" Label="Part"><ChildSet><IPolygonMesh ID="m" Label="Mesh" Visibility="1"/>
<ICurve ID="c" Label="Curve" Visibility="1"/><IPoint ID="d" Label="Dot" Visibility="1"><Point X="1" Y="2" Z="3"/></IPoint>
</ChildSet></IPart>)");
    EXPECT_THAT(
        file.At("/Mesh").material["pbrMetallicRoughness"]["baseColorFactor"].get<std::vector<double>>(),
        ElementsAre(DoubleNear(0.4479884, 1e-6), DoubleNear(0.4479884, 1e-6), DoubleNear(0.4479884, 1e-6), 1.0));
    GltfFile::Shown const curve = file.At("/Curve");
    EXPECT_EQ(curve.primitive["mode"], 3);
    EXPECT_THAT(curve.points, ElementsAre(Near(0, 0, 0), Near(0.001, 0, 0), Near(0.001, 0, -0.002)));
    EXPECT_EQ(curve.material["pbrMetallicRoughness"]["baseColorFactor"], json({1.0, 0.0, 1.0, 1.0}));
    EXPECT_EQ(file.At("/Dot").primitive["mode"], 0);
    EXPECT_THAT(file.At("/Dot").points, ElementsAre(Near(0.001, 0.003, -0.002)));
}

TEST(ExportGltfTest, TheOutermostAssemblyThatNamesAnOccurrenceDecides)
{
    ExportScene scene;
    scene.Triangle("m");
    std::string const inner =
        R"(<IAssembly ID="inner" Label="Inner"><Unit LengthUnit="kUnitType_Millimeter"/><CrossLevelAttributes>
<Styles><EntityStyles Path="[i]">)" +
        StyleRef("grey") + R"(</EntityStyles></Styles><Transformations>
<EntityTransformation Path="[i]" Transformation="1 0 0 5 0 1 0 0 0 0 1 0 0 0 0 1"/></Transformations>
</CrossLevelAttributes><ChildSet>)" +
        Instance("i", "p", "1 0 0 7 0 1 0 0 0 0 1 0 0 0 0 1") + "</ChildSet></IAssembly>";
    std::string const overrides = R"(<Styles><EntityStyles Path="[a1][i]">)" + StyleRef("red") +
                                  R"(</EntityStyles></Styles><Transformations>
<EntityTransformation Path="[a1][i]" Transformation="1 0 0 9 0 1 0 0 0 0 1 0 0 0 0 1"/></Transformations>
<Visibilities><EntityVisibility Path="[a3][i]" Visibility="0"/></Visibilities>)";
    GltfFile const file = Exported(
        scene,
        UnderTop(Instance("a1", "inner") + Instance("a2", "inner") + Instance("a3", "inner"), overrides, kStyles) +
            inner + PartOfMesh());
    EXPECT_EQ(file.At("/a1/i/Mesh").material["name"], "Red");
    EXPECT_THAT(file.At("/a1/i/Mesh").points.front(), Near(0.009, 0, 0));
    EXPECT_EQ(file.At("/a2/i/Mesh").material["name"], "Grey");
    EXPECT_THAT(file.At("/a2/i/Mesh").points.front(), Near(0.005, 0, 0));
    EXPECT_FALSE(file.Has("/a3/i/Mesh"));
}

TEST(ExportGltfTest, WhatAnAssemblySaysOfABodyHoldsForItsMesh)
{
    ExportScene scene;
    scene.Triangle("m");
    std::string const overrides = R"(<Styles><EntityStyles Path="[i1][body]">)" + StyleRef("red") +
                                  R"(</EntityStyles></Styles>
<Visibilities><EntityVisibility Path="[i2][body]" Visibility="0"/></Visibilities>)";
    GltfFile const file =
        Exported(scene, UnderTop(Instance("i1", "p") + Instance("i2", "p") + Instance("i3", "p"), overrides, kStyles) +
                            R"(<IPart ID="p" Label="Part"><ChildSet><IBrep ID="body" Label="Body" Visibility="1"/>
<IPolygonMesh ID="m" Label="Mesh" Visibility="1"><ExtensionData TypeId="kvr.body" Content="body"/></IPolygonMesh>
</ChildSet></IPart>)");
    ASSERT_EQ(file.shown.size(), 2U);
    EXPECT_EQ(file.At("/i1/Mesh").material["name"], "Red");
    EXPECT_EQ(file.At("/i1/Mesh").node["extras"]["body"], "body");
    EXPECT_NE(file.At("/i3/Mesh").material["name"], "Red");
    EXPECT_FALSE(file.Has("/i2/Mesh"));
}

TEST(ExportGltfTest, AMirroredPlaceIsAMatrixThatMirrors)
{
    ExportScene scene;
    scene.Triangle("m");
    GltfFile const file =
        Exported(scene, UnderTop(Instance("i", "p", "-1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1")) + PartOfMesh());
    EXPECT_THAT(file.At("/Mesh").points, ElementsAre(Near(0, 0, 0), Near(-0.001, 0, 0), Near(0, 0, -0.001)));
    EXPECT_THAT(file.At("/Mesh").indices, ElementsAre(0, 1, 2)) << "who reads a mirroring matrix turns triangles over";
}

TEST(ExportGltfTest, ASlantedPlaceIsWhereItIsAlthoughNoNodeCanSlant)
{
    ExportScene scene;
    scene.Triangle("m");
    GltfFile const file =
        Exported(scene, UnderTop(Instance("i", "p", "1 0.5 0 3 0 1 0 0 0 0 1 0 0 0 0 1")) + PartOfMesh());
    ASSERT_EQ(file.shown.size(), 1U);
    EXPECT_THAT(file.shown[0].points, ElementsAre(Near(0.003, 0, 0), Near(0.004, 0, 0), Near(0.0035, 0, -0.001)));
    for (json const& node : file.document["nodes"])
    {
        if (!node.contains("matrix"))
            continue;
        auto const m = node["matrix"].get<std::vector<double>>();
        EXPECT_NEAR(m[0] * m[4] + m[1] * m[5] + m[2] * m[6], 0.0, 1e-9) << node;
    }
}

TEST(ExportGltfTest, WhatATransformFlattensIsLeftOutAndBrokenOnesAreNone)
{
    ExportScene scene;
    scene.Triangle("m");
    ToolRun const run = scene.Export(UnderTop(Instance("flat", "p", "1 0 0 0 0 0 0 0 0 0 1 0 0 0 0 1") +
                                              Instance("broken", "p", "1 0 0 nan 0 1 0 0 0 0 1 0 0 0 0 1") +
                                              Instance("huge", "p", "1e300 0 0 1e300 0 1 0 0 0 0 1 0 0 0 0 1")) +
                                         PartOfMesh(),
                                     "out.glb");
    ASSERT_EQ(run.status, 0) << run.error;
    EXPECT_THAT(run.error, HasSubstr("1 occurrences of which their transform leaves nothing"));
    GltfFile const file(scene.PathOf("out.glb"));
    EXPECT_FALSE(file.Has("/flat/Mesh"));
    EXPECT_THAT(file.At("/broken/Mesh").points.front(), Near(0, 0, 0));
    EXPECT_THAT(file.At("/huge/Mesh").points.front(), Near(0, 0, 0));
}

TEST(ExportGltfTest, OnlyAndHideTakeIdsLabelsAndLayers)
{
    std::string const layers = R"(<LayerSet><ILayer ID="layer" Label="Bolts"><LayerInfo ID="7" Visibility="True"/>
<GeometryItems Items="p2"/></ILayer></LayerSet>)";
    std::string const text =
        UnderTop(Instance("i1", "p") + Instance("i2", "p2") + Instance("i3", "p"), "", layers) + PartOfMesh() +
        R"(<IPart ID="p2" Label="Bolt"><ChildSet><IPolygonMesh ID="m2" Label="Mesh2" Visibility="1"/></ChildSet></IPart>)";
    auto const shown = [&](std::vector<std::string> const& options)
    {
        ExportScene scene;
        scene.Triangle("m").Triangle("m2");
        std::vector<std::string> paths;
        for (GltfFile::Shown const& entry : Exported(scene, text, options).shown)
            paths.push_back(entry.path);
        return paths;
    };
    std::string const one = "/file/Top/i1/Mesh";
    std::string const two = "/file/Top/i2/Mesh2";
    std::string const three = "/file/Top/i3/Mesh";
    EXPECT_THAT(shown({}), ElementsAre(one, two, three));
    EXPECT_THAT(shown({"--hide", "i1"}), ElementsAre(two, three));
    EXPECT_THAT(shown({"--hide", "Part"}), ElementsAre(two));
    EXPECT_THAT(shown({"--hide", "Bolts"}), ElementsAre(one, three));
    EXPECT_THAT(shown({"--hide", "7", "--hide", "i3"}), ElementsAre(one));
    EXPECT_THAT(shown({"--only", "i3"}), ElementsAre(three));
    EXPECT_THAT(shown({"--only", "Bolts"}), ElementsAre(two));
    EXPECT_THAT(shown({"--only", "m2", "--only", "i1"}), ElementsAre(one, two));
    EXPECT_THAT(shown({"--only", "p", "--hide", "i1"}), ElementsAre(three));
    EXPECT_THAT(shown({"--only", "?2"}), ElementsAre(two));
    EXPECT_THAT(shown({"--hide", "Bol*"}), ElementsAre(one, three));
    EXPECT_THAT(shown({"--hide", "file"}), ElementsAre());
}

TEST(ExportGltfTest, TheTextFormHasItsNumbersInAFileBesideIt)
{
    ExportScene scene;
    scene.Triangle("m");
    ToolRun const run = scene.Export(UnderTop(Instance("i", "p")) + PartOfMesh(), "out.gltf");
    ASSERT_EQ(run.status, 0) << run.error;
    GltfFile const file(scene.PathOf("out.gltf"));
    EXPECT_EQ(file.document["buffers"][0]["uri"], "out.bin");
    EXPECT_THAT(file.At("/Mesh").points, ElementsAre(Near(0, 0, 0), Near(0.001, 0, 0), Near(0, 0, -0.001)));
}

TEST(ExportGltfTest, IdsPropertiesLayersAndViewsAreInTheExtras)
{
    ExportScene scene;
    scene.Triangle("m");
    std::string const declared = R"(<LayerSet><ILayer ID="layer" Label="Bolts"><LayerInfo ID="7" Visibility="True"/>
<GeometryItems Items="m"/></ILayer></LayerSet>
<CameraSet><ICamera ID="eye" Label="Eye" Type="kCameraType_Perspective" ViewAngle="0.5" AspectRatio="2">
<Unit LengthUnit="kUnitType_Millimeter"/><CameraPosition X="0" Y="-1000" Z="0"/><CameraDirection X="0" Y="1" Z="0"/>
<CameraUpDirection X="0" Y="0" Z="1"/>
<NearPlane><PlaneData><Origin X="0" Y="-900" Z="0"/><Normal X="0" Y="1" Z="0"/></PlaneData></NearPlane></ICamera></CameraSet>
<ViewSet><IView ID="view" Label="Front" Visibility="1" IsActive="1"><ViewMember><ViewMemberChild>
<OccurrencePath Path="[i]"/><EntityVisibility Visibility="0"/></ViewMemberChild></ViewMember>
<CameraSet><CameraRef ID="eye"/></CameraSet></IView></ViewSet>)";
    std::string const properties = R"(<FileProperties><CustomProperties>
<CustomProperty Key="Mass" Type="kDouble" Value="1.5"/><CustomProperty Key="Maker" Type="kString" Value="Wärk"/>
</CustomProperties></FileProperties>)";
    GltfFile const file = Exported(scene, UnderTop(Instance("i", "p"), "", declared) + PartOfMesh("", properties));
    json const mesh = file.At("/Mesh").node;
    EXPECT_EQ(mesh["extras"]["id"], "m");
    EXPECT_EQ(mesh["extras"]["layers"], json({"Bolts"}));
    json node;
    json camera;
    for (json const& entry : file.document["nodes"])
    {
        if (entry.value("name", "") == "i")
            node = entry;
        if (entry.contains("camera"))
            camera = entry;
    }
    EXPECT_EQ(node["extras"]["id"], "i");
    EXPECT_EQ(node["extras"]["component"], "p");
    EXPECT_EQ(node["extras"]["componentProperties"], json({{"Mass", 1.5}, {"Maker", "Wärk"}}));
    json const perspective = file.document["cameras"][0]["perspective"];
    EXPECT_EQ(perspective["yfov"], 0.5);
    EXPECT_EQ(perspective["aspectRatio"], 2.0);
    EXPECT_NEAR(perspective["znear"].get<double>(), 0.1, 1e-12);
    EXPECT_EQ(camera["extras"]["id"], "eye");
    // It looks along its own negative z, here along glTF's.
    auto const place = camera["matrix"].get<std::vector<double>>();
    EXPECT_THAT((std::vector<double>(place.begin() + 8, place.begin() + 11)), Near(0, 0, 1));
    EXPECT_THAT((std::vector<double>(place.begin() + 12, place.begin() + 15)), Near(0, 0, 1));
    json const view = file.document["scenes"][0]["extras"]["views"][0];
    EXPECT_EQ(view["id"], "view");
    EXPECT_EQ(view["active"], true);
    EXPECT_EQ(view["members"][0]["path"], json({"i"}));
    EXPECT_EQ(view["members"][0]["visible"], false);
    json const layer = file.document["scenes"][0]["extras"]["layers"][0];
    EXPECT_EQ(layer["number"], 7);
    EXPECT_EQ(layer["items"], json({"m"}));
}

}  // namespace KVR::Test

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/exchange/ExportScene.h"

// What is written passes the Khronos validator, which scripts/setup puts into build/tools.
namespace KVR::Test
{

namespace
{

using testing::HasSubstr;

void ExpectValid(std::string const& path)
{
    ToolRun const run = RunProgram({KVR_NODE, KVR_GLTF_SCRIPT, KVR_GLTF_VALIDATOR, path});
    EXPECT_EQ(run.status, 0) << run.out << run.error;
    EXPECT_THAT(run.out, HasSubstr(": 0 errors, 0 warnings"));
}

void ExpectExampleIsValid(std::string const& name)
{
    TempFolder folder;
    for (std::string const extension : {".glb", ".gltf"})
    {
        std::string const path = folder.NarrowPathOf(name + " of 1" + extension);
        ToolRun const run = RunTool({"export", std::string(KVR_EXAMPLES_DIR) + '/' + name + '/' + name + ".xml", path});
        ASSERT_EQ(run.status, 0) << run.error;
        ExpectValid(path);
    }
}

}  // namespace

TEST(GltfValidatorTest, ABrokenFileIsToldFromAGoodOne)
{
    TempFolder folder;
    folder.Write("bad.gltf", R"({"asset":{"version":"2.0"},"nodes":[{"mesh":3}]})");
    ToolRun const run = RunProgram({KVR_NODE, KVR_GLTF_SCRIPT, KVR_GLTF_VALIDATOR, folder.NarrowPathOf("bad.gltf")});
    EXPECT_EQ(run.status, 1) << run.error;
    EXPECT_THAT(run.out, HasSubstr("UNRESOLVED_REFERENCE"));
}

TEST(GltfValidatorTest, TheNestedExampleIsValid)
{
    ExpectExampleIsValid("as1-oc-214");
}

TEST(GltfValidatorTest, TheLargeExampleIsValid)
{
    ExpectExampleIsValid("lcr_follower_arm");
}

TEST(GltfValidatorTest, TheExampleOfEverythingIsValid)
{
    ExpectExampleIsValid("complete");
}

TEST(GltfValidatorTest, UnusualPlacesNumbersAndKindsAreValid)
{
    ExportScene scene;
    Authoring::MeshHead head;
    head.vertexCount = 3;
    head.normalCount = 2;
    head.polygonCount = 2;
    head.textureSetCount = 1;
    scene.Store().BeginMesh(UTF8String("m"), head);
    scene.Store().Vertices(std::vector<double>{0, 0, 0, 1, 0, 0, 0, 1, 0});
    scene.Store().Normals(std::vector<double>{0, 0, 0, 0, 3, 4});
    scene.Store().TextureSet(2, std::vector<double>{0, 0, 1, 1e300});
    std::vector<std::uint64_t> const corners{0, 1, 2};
    std::vector<std::uint64_t> const normals{0, 1, 1};
    std::vector<Authoring::TextureReference> const texture{{0, 0}, {0, 1}, {0, 0}};
    for (bool const hasAll : {true, false})
    {
        Authoring::PolygonRecord polygon;
        polygon.vertices = corners;
        if (hasAll)
        {
            polygon.normals = normals;
            polygon.textures = texture;
        }
        scene.Store().Polygon(polygon);
    }
    scene.Store().EndMesh();
    Authoring::PolylineRecord line;
    line.points = {{0, 0, 0}, {1, 0, 0}, {1, 2, 0}};
    scene.Store().Curve("c", {line});
    std::string const declared = R"(<CameraSet>
<ICamera ID="c1" Type="kCameraType_Perspective" ViewAngle="9"><CameraPosition X="1e308" Y="0" Z="0"/></ICamera>
<ICamera ID="c2" Type="kCameraType_Parallel"><CameraDirection X="0" Y="0" Z="1"/><CameraUpDirection X="0" Y="0" Z="1"/></ICamera>
</CameraSet>)";
    ToolRun const run = scene.Export(
        UnderTop(Instance("slanted", "p", "1 0.5 0 3 0 1 0 0 0.25 0 1 0 0 0 0 1") +
                     Instance("mirrored", "p", "-2 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1") +
                     Instance("flat", "p", "0 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1") +
                     Instance("thin", "p", "1 0 0 0 0 1e-7 0 0 0 0 1e5 0 0 0 0 1") +
                     Instance("almost", "p", "1 1 0 0 0 1e-7 0 0 0 0 1 0 0 0 0 1") +
                     Instance("nowhere", "p", "1 0 0 nan 0 1 0 inf 0 0 1 0 0 0 0 1"),
                 "", declared) +
            R"(<IPart ID="p" Label="Part"><ChildSet><IPolygonMesh ID="m" Label="Mesh &quot;1&quot; &#228;" Visibility="1"/>
<ICurve ID="c" Visibility="1"/><IPoint ID="d" Visibility="1"><Point X="1" Y="2" Z="3"/></IPoint></ChildSet></IPart>)",
        "out.glb");
    ASSERT_EQ(run.status, 0) << run.error;
    ExpectValid(scene.PathOf("out.glb"));
}

}  // namespace KVR::Test

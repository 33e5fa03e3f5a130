#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <TopExp.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopoDS_Shape.hxx>

#include "tests/exchange/ExportScene.h"
#include "tests/exchange/StepRead.h"
#include "tests/support/Shapes.h"

namespace KVR::Test
{

namespace
{

constexpr char kText[] =
    "<IFile ID='f' Label='f' IsRoot='1'><ChildSet><Child ID='p'/></ChildSet></IFile>"
    "<IPart ID='p' Label='p'><ChildSet><IPolygonMesh ID='m' Label='m' Visibility='1'/>"
    "</ChildSet></IPart>";

}  // namespace

TEST(ExportMeshFacesTest, AMeshWithoutABodyIsCountedUnlessItsFacesAreAskedFor)
{
    ExportScene scene;
    scene.Mesh("m", {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 0, 0, 1}, {{0, 1, 2, 3}, {0, 1, 4}, {0, 0, 1}});
    ToolRun const run = scene.Export(kText, "out.step", {"--mesh-faces"});
    ASSERT_EQ(run.status, 0) << run.error;
    StepRead const read(scene.PathOf("out.step"));
    TopTools_IndexedMapOfShape faces;
    TopExp::MapShapes(read.Whole(), TopAbs_FACE, faces);
    EXPECT_EQ(faces.Extent(), 3);
    EXPECT_NEAR(FactsOf(read.Whole()).area, 1.5, 1e-9);
}

TEST(ExportMeshFacesTest, WithoutTheOptionTheMeshIsNamedAsLeftOut)
{
    ExportScene scene;
    scene.Triangle("m");
    ToolRun const run = scene.Export(kText, "out.step");
    ASSERT_EQ(run.status, 0) << run.error;
    EXPECT_THAT(run.error, testing::HasSubstr("1 meshes without a body"));
}

}  // namespace KVR::Test

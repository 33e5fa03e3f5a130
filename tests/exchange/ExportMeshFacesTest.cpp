#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <BRepTools.hxx>
#include <BRep_Builder.hxx>
#include <TopoDS_Shape.hxx>
#include <algorithm>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <sstream>

#include "tests/exchange/ExportScene.h"
#include "tests/exchange/StepRead.h"
#include "tests/support/Shapes.h"

namespace KVR::Test
{

namespace
{

using testing::HasSubstr;
using testing::Not;

// A mesh of two triangles and one of none, in inches, placed as it is and mirrored.
constexpr char kText[] =
    "<IFile ID='f' Label='f' IsRoot='1'><AttributeSet><StyleSet><IRenderStyle ID='red'><DiffuseColor FractionRed='1' "
    "FractionGreen='0.5' FractionBlue='0' FractionAlpha='0.25'/></IRenderStyle></StyleSet></AttributeSet>"
    "<ChildSet><Child ID='a'/></ChildSet></IFile><IAssembly ID='a' Label='a'><ChildSet>"
    "<IInstance ID='i' Label='i' Visibility='1'><Child ID='p'/></IInstance>"
    "<IInstance ID='j' Label='j' Visibility='1'><Child ID='p' Transformation='-1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1'/>"
    "</IInstance></ChildSet></IAssembly>"
    "<IPart ID='p' Label='p'><ChildSet><IPolygonMesh ID='m' Label='it&apos;s' Visibility='0'>"
    "<Unit LengthUnit='kUnitType_Inch'/><Styles><StyleRef ID='red'/></Styles></IPolygonMesh>"
    "</ChildSet></IPart>";

ExportScene& Quad(ExportScene& scene)
{
    return scene.Mesh("m", {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 0, 0, 1}, {{0, 1, 2, 3}, {0, 1, 4}});
}

std::string ContentOf(std::string const& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::size_t CountOf(std::string const& text, std::string const& word)
{
    std::size_t count = 0;
    for (std::size_t place = text.find(word); place != std::string::npos; place = text.find(word, place + 1))
        ++count;
    return count;
}

}  // namespace

TEST(ExportMeshFacesTest, AMeshIsTessellatedGeometryInStepWithItsColourAndItsPlace)
{
    ExportScene scene;
    ToolRun const run = Quad(scene).Export(kText, "out.step", {"--mesh-faces"});
    ASSERT_EQ(run.status, 0) << run.error;
    EXPECT_THAT(run.error, testing::IsEmpty());
    std::string text = ContentOf(scene.PathOf("out.step"));
    std::regex const defined("\\n(#[0-9]+)=");
    std::set<std::string> numbers;
    for (std::sregex_iterator it(text.begin(), text.end(), defined); it != std::sregex_iterator(); ++it)
        EXPECT_TRUE(numbers.insert((*it)[1]).second) << (*it)[1];
    // Each number of an entity is there once, and each that is named is there.
    std::regex const named("#[0-9]+");
    for (std::sregex_iterator it(text.begin(), text.end(), named); it != std::sregex_iterator(); ++it)
        EXPECT_EQ(numbers.count(it->str()), 1U) << it->str();
    std::erase(text, '\n');
    text.erase(0, text.find("COORDINATES_LIST"));
    EXPECT_THAT(text,
                HasSubstr("COORDINATES_LIST('',5,((0.,25.4,0.),(0.,0.,0.),(25.4,0.,0.),(25.4,25.4,0.),(0.,0.,25.4))"));
    EXPECT_THAT(text, HasSubstr("5,(),$,(),((1,2,3),(3,4,1),(2,3,5))"));
    // The mirrored copy turns its triangles over.
    EXPECT_THAT(text, HasSubstr("5,(),$,(),((1,3,2),(3,1,4),(2,5,3))"));
    EXPECT_THAT(text, HasSubstr("TESSELLATED_SHELL('it''s',(#"));
    EXPECT_THAT(text, HasSubstr("COLOUR_RGB('',1.,0.5,0.)"));
    EXPECT_THAT(text, HasSubstr("SURFACE_STYLE_TRANSPARENT(0.75)"));
    EXPECT_EQ(CountOf(text, "INVISIBILITY("), 2U);
    EXPECT_EQ(CountOf(text, "TESSELLATED_SHAPE_REPRESENTATION("), 2U);
    // A reader that does not know it reads the rest.
    EXPECT_EQ(StepRead(scene.PathOf("out.step")).ComponentsOf("a").size(), 2U);
}

TEST(ExportMeshFacesTest, ALargeMeshIsManyFacesOfOneShell)
{
    ExportScene scene;
    std::vector<std::vector<std::uint64_t>> triangles(4001, {0, 1, 2});
    ToolRun const run =
        scene.Mesh("m", {0, 0, 0, 1, 0, 0, 0, 1e-7, 0}, triangles).Export(kText, "out.step", {"--mesh-faces"});
    ASSERT_EQ(run.status, 0) << run.error;
    std::string const text = ContentOf(scene.PathOf("out.step"));
    EXPECT_EQ(CountOf(text, "TRIANGULATED_FACE("), 6U);
    EXPECT_EQ(CountOf(text, "TESSELLATED_SHELL("), 2U);
    EXPECT_THAT(text, HasSubstr("2.54E-06"));
    std::size_t longest = 0;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
        longest = std::max(longest, line.size());
    EXPECT_LT(longest, 200U);
}

TEST(ExportMeshFacesTest, BrepHasAFaceForEachTriangleUpToALimit)
{
    ExportScene scene;
    ToolRun const run = Quad(scene).Export(kText, "out.brep", {"--mesh-faces"});
    ASSERT_EQ(run.status, 0) << run.error;
    TopoDS_Shape shape;
    ASSERT_TRUE(BRepTools::Read(shape, scene.PathOf("out.brep").c_str(), BRep_Builder()));
    EXPECT_NEAR(FactsOf(shape).area, 2 * 1.5 * 25.4 * 25.4, 1e-6);
    ExportScene large;
    std::vector<std::vector<std::uint64_t>> triangles(250'001, {0, 1, 2});
    ToolRun const refused =
        large.Mesh("m", {0, 0, 0, 1, 0, 0, 0, 1, 0}, triangles).Export(kText, "out.brep", {"--mesh-faces"});
    EXPECT_THAT(refused.error, HasSubstr("meshes beyond 250,000 flat faces"));
}

TEST(ExportMeshFacesTest, WithoutTheOptionASceneOfMeshesSaysWhatItWouldDo)
{
    ExportScene scene;
    scene.Triangle("m");
    ToolRun const run = scene.Export(kText, "out.step");
    ASSERT_EQ(run.status, 0) << run.error;
    EXPECT_THAT(run.error, HasSubstr("1 meshes without a body"));
    EXPECT_THAT(run.error, HasSubstr("--mesh-faces writes them as tessellated geometry"));
    EXPECT_THAT(ContentOf(scene.PathOf("out.step")), Not(HasSubstr("TESSELLATED")));
}

}  // namespace KVR::Test

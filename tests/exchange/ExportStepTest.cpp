#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <BRepBuilderAPI_MakeEdge.hxx>
#include <BRepBuilderAPI_MakeWire.hxx>
#include <BRepGProp.hxx>
#include <BRepPrimAPI_MakeCylinder.hxx>
#include <BRepTools.hxx>
#include <BRep_Builder.hxx>
#include <GProp_GProps.hxx>
#include <TCollection_HAsciiString.hxx>
#include <TDF_LabelSequence.hxx>
#include <TopExp.hxx>
#include <TopExp_Explorer.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopoDS_Shape.hxx>
#include <XCAFDimTolObjects_DimensionObject.hxx>
#include <XCAFDoc_Area.hxx>
#include <XCAFDoc_Centroid.hxx>
#include <XCAFDoc_DimTolTool.hxx>
#include <XCAFDoc_Dimension.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_MaterialTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <XCAFDoc_View.hxx>
#include <XCAFDoc_ViewTool.hxx>
#include <XCAFDoc_Volume.hxx>
#include <XCAFView_Object.hxx>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <regex>
#include <sstream>

#include "tests/exchange/StepRead.h"
#include "tests/exchange/StepScene.h"
#include "tests/host/ResourceLimit.h"
#include "tests/support/Shapes.h"

namespace KVR::Test
{

namespace
{

using testing::DoubleNear;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::Optional;
using testing::Pointwise;

constexpr char kIdentityText[] = "1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1";

std::string Brep(std::string const& id, std::string const& inside = "", std::string const& visible = "1")
{
    return "<IBrep ID='" + id + "' Label='" + id + "' Visibility='" + visible + "' NetVisibility='1'>" + inside +
           "</IBrep>";
}

std::string Styled(std::string const& style)
{
    return "<Styles><StyleRef ID='" + style + "'/></Styles>";
}

std::string Part(std::string const& id, std::string const& children, std::string const& inside = "",
                 std::string const& unit = "kUnitType_Millimeter")
{
    return "<IPart ID='" + id + "' Label='" + id + "'><Unit LengthUnit='" + unit + "'/>" + inside + "<ChildSet>" +
           children + "</ChildSet></IPart>";
}

std::string Instance(std::string const& id, std::string const& target, std::string const& transform = kIdentityText,
                     std::string const& inside = "", std::string const& visible = "1")
{
    return "<IInstance ID='" + id + "' Label='" + id + "' Visibility='" + visible + "' NetVisibility='1'><Child ID='" +
           target + "' Transformation='" + transform + "'/>" + inside + "</IInstance>";
}

std::string Assembly(std::string const& id, std::string const& children, std::string const& inside = "",
                     std::string const& unit = "kUnitType_Millimeter")
{
    return "<IAssembly ID='" + id + "' Label='" + id + "'><Unit LengthUnit='" + unit + "'/>" + inside + "<ChildSet>" +
           children + "</ChildSet></IAssembly>";
}

std::string RootFile(std::string const& child, std::string const& sets = "")
{
    return "<IFile ID='file' Label='file' IsRoot='1'><AttributeSet>" + sets + "</AttributeSet><ChildSet><Child ID='" +
           child + "'/></ChildSet></IFile>";
}

std::string Style(std::string const& id, double red, double green, double blue, std::string const& more = "")
{
    std::ostringstream text;
    text << "<IRenderStyle ID='" << id << "'><DiffuseColor FractionRed='" << red << "' FractionGreen='" << green
         << "' FractionBlue='" << blue << "' " << more << "/></IRenderStyle>";
    return text.str();
}

std::string Styles(std::string const& styles)
{
    return "<StyleSet>" + styles + "</StyleSet>";
}

std::string Move(double x, double y = 0.0, double z = 0.0)
{
    std::ostringstream text;
    text << "1 0 0 " << x << " 0 1 0 " << y << " 0 0 1 " << z << " 0 0 0 1";
    return text.str();
}

auto IsColor(double red, double green, double blue, double opacity = 1.0)
{
    return Optional(Pointwise(DoubleNear(1e-6), StepRead::Rgba{red, green, blue, opacity}));
}

auto IsBox(std::array<double, 6> const& corners)
{
    return Pointwise(DoubleNear(1e-6), corners);
}

std::string ContentOf(std::string const& path)
{
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

int CountOf(TopoDS_Shape const& shape, TopAbs_ShapeEnum kind)
{
    TopTools_IndexedMapOfShape parts;
    TopExp::MapShapes(shape, kind, parts);
    return parts.Extent();
}

StepRead ReadBack(StepScene const& scene, std::vector<std::string> const& options = {})
{
    ToolRun const run = scene.Export("out.step", options);
    EXPECT_EQ(run.status, 0) << run.error;
    return StepRead(scene.PathOf("out.step"));
}

}  // namespace

TEST(ExportStepTest, AssembliesPartsAndComponentsKeepTheirNamesInAnyScript)
{
    StepScene scene;
    scene.Body("body", BoxShape(1, 2, 3))
        .Write(RootFile("top") +
               "<IAssembly ID='top' Label='Gerät &#x65E5;&#x672C; &#x1F527; O&#39;Neill \\X2\\'>"
               "<ChildSet>" +
               Instance("first", "plate") + Instance("second", "plate", Move(5)) + Instance("third", "inner") +
               "</ChildSet></IAssembly>" + Assembly("inner", Instance("fourth", "plate")) +
               Part("plate", Brep("body")));
    StepRead const read = ReadBack(scene);
    std::string const name = "Gerät 日本 🔧 O'Neill \\X2\\";
    EXPECT_THAT(read.Roots(), ElementsAre(name));
    EXPECT_THAT(read.ComponentsOf(name), ElementsAre("first", "second", "third"));
    EXPECT_EQ(read.TargetOf(read.Component(name, "second")), "plate");
    EXPECT_EQ(read.TargetOf(read.Component(name, "third")), "inner");
    EXPECT_THAT(read.ComponentsOf("inner"), ElementsAre("fourth"));
    EXPECT_EQ(CountOf(read.Whole(), TopAbs_SOLID), 3);
}

TEST(ExportStepTest, TheFileIsAsciiOfAp242WithTheAuthorAndThisSystem)
{
    StepScene scene;
    scene.Body("body", BoxShape(1, 1, 1))
        .Write(RootFile("part") +
               "<IPart ID='part' Label='Bügel'><FileProperties><Author>Ä. Autor</Author>"
               "<Organization>Werk</Organization></FileProperties><ChildSet>" +
               Brep("body") + "</ChildSet></IPart>");
    ReadBack(scene);
    std::string const text = ContentOf(scene.PathOf("out.step"));
    EXPECT_THAT(text, HasSubstr("AP242_MANAGED_MODEL_BASED_3D_ENGINEERING"));
    EXPECT_THAT(text, HasSubstr("\\X2\\00C4\\X0\\. Autor"));
    EXPECT_THAT(text, HasSubstr("'Werk'"));
    EXPECT_THAT(text, HasSubstr("'kvr_xml_producer'"));
    EXPECT_TRUE(std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; }));
}

TEST(ExportStepTest, BodiesOfAPartKeepTheirNamesAndAddUp)
{
    StepScene scene;
    scene.Body("block", BoxShape(1, 2, 3))
        .Body("cube", BoxShape(2, 2, 2))
        .Write(RootFile("part") +
               Part("part", Brep("block") + Brep("cube", "<Transform>" + Move(10) + "</Transform>")));
    StepRead const read = ReadBack(scene);
    EXPECT_TRUE(read.HasItem("block"));
    EXPECT_TRUE(read.HasItem("cube"));
    EXPECT_NEAR(VolumeOf(read.Whole()), 14.0, 1e-9);
    EXPECT_THAT(BoxOf(read.Whole()), IsBox({0, 0, 0, 12, 2, 3}));
}

TEST(ExportStepTest, InstancesStandWhereTheSceneHasThem)
{
    StepScene scene;
    scene.Body("body", BoxShape(1, 2, 3))
        .Write(RootFile("top") + Assembly("top", Instance("turned", "part", "0 -1 0 10 1 0 0 20 0 0 1 30 0 0 0 1")) +
               Part("part", Brep("body")));
    StepRead const read = ReadBack(scene);
    EXPECT_THAT(BoxOf(read.Whole()), IsBox({8, 20, 30, 10, 21, 33}));
}

TEST(ExportStepTest, AMirroredInstanceIsAMirroredCopyWithAPositiveVolume)
{
    StepScene scene;
    scene.Body("body", BoxShape(1, 2, 3))
        .Write(RootFile("top", Styles(Style("red", 1, 0, 0))) +
               Assembly("top",
                        Instance("plain", "part") + Instance("mirrored", "part", "-1 0 0 -5 0 1 0 0 0 0 1 0 0 0 0 1")) +
               Part("part", Brep("body"), Styled("red")));
    StepRead const read = ReadBack(scene);
    TDF_Label const mirrored = read.Component("top", "mirrored");
    EXPECT_THAT(BoxOf(read.ShapeOf(mirrored)), IsBox({-6, 0, 0, -5, 2, 3}));
    EXPECT_NEAR(VolumeOf(read.ShapeOf(mirrored)), 6.0, 1e-9);
    EXPECT_THAT(BoxOf(read.ShapeOf(read.Component("top", "plain"))), IsBox({0, 0, 0, 1, 2, 3}));
    EXPECT_EQ(read.TargetOf(mirrored), "part");
}

TEST(ExportStepTest, ScaledAndShearedInstancesAreCopies)
{
    StepScene scene;
    scene.Body("body", BoxShape(1, 2, 3))
        .Write(RootFile("top") +
               Assembly("top", Instance("double", "inner", "2 0 0 1 0 2 0 0 0 0 2 0 0 0 0 1") +
                                   Instance("sheared", "inner", "1 1 0 0 0 1 0 0 0 0 1 0 0 0 0 1")) +
               Assembly("inner", Instance("inside", "part", Move(10))) + Part("part", Brep("body")));
    StepRead const read = ReadBack(scene);
    EXPECT_THAT(BoxOf(read.ShapeOf(read.Component("top", "double"))), IsBox({21, 0, 0, 23, 4, 6}));
    EXPECT_NEAR(VolumeOf(read.ShapeOf(read.Component("top", "double"))), 48.0, 1e-6);
    EXPECT_THAT(BoxOf(read.ShapeOf(read.Component("top", "sheared"))), IsBox({10, 0, 0, 13, 2, 3}));
    EXPECT_NEAR(VolumeOf(read.ShapeOf(read.Component("top", "sheared"))), 6.0, 1e-6);
}

TEST(ExportStepTest, AnOverrideOfAPlaceMovesThatOccurrenceAlone)
{
    StepScene scene;
    scene.Body("body", BoxShape(1, 1, 1))
        .Write(RootFile("top") +
               Assembly("top", Instance("left", "inner") + Instance("right", "inner", Move(100)),
                        "<CrossLevelAttributes><Transformations><EntityTransformation Path='[right][inside]' "
                        "Transformation='" +
                            Move(7) + "'/></Transformations></CrossLevelAttributes>") +
               Assembly("inner", Instance("inside", "part", Move(3))) + Part("part", Brep("body")));
    StepRead const read = ReadBack(scene);
    EXPECT_THAT(BoxOf(read.ShapeOf(read.Component("top", "left"))), IsBox({3, 0, 0, 4, 1, 1}));
    EXPECT_THAT(BoxOf(read.ShapeOf(read.Component("top", "right"))), IsBox({107, 0, 0, 108, 1, 1}));
}

TEST(ExportStepTest, ColoursOfPartsBodiesFacesAndEdgesAreThoseOfTheScene)
{
    StepScene scene;
    scene.Body("whole", BoxShape(1, 2, 3), {{0, "face"}}, {{0, "edge"}})
        .Body("one", BoxShape(1, 1, 1))
        .Body("other", BoxShape(2, 2, 2))
        .Write(RootFile("top", Styles(Style("orange", 1, 0.5, 0) + Style("green", 0, 0.75, 0.25) +
                                      Style("blue", 0, 0, 1) + Style("glass", 0.2, 0.4, 0.6, "Transparency='0.75'"))) +
               Assembly("top", Instance("a", "single") + Instance("b", "several")) +
               Part("single",
                    Brep("whole",
                         "<Face ID='face'>" + Styled("green") + "</Face><Edge ID='edge'>" + Styled("blue") + "</Edge>"),
                    Styled("orange")) +
               Part("several", Brep("one", Styled("glass")) + Brep("other")));
    StepRead const read = ReadBack(scene);
    TDF_Label const single = read.Product("single");
    EXPECT_THAT(read.SurfaceColor(single), IsColor(1, 0.5, 0));
    ASSERT_EQ(read.SubShapesOf(single).size(), 2U);
    for (TDF_Label const& part : read.SubShapesOf(single))
    {
        if (read.ShapeOf(part).ShapeType() == TopAbs_FACE)
            EXPECT_THAT(read.SurfaceColor(part), IsColor(0, 0.75, 0.25));
        else
            EXPECT_THAT(read.CurveColor(part), IsColor(0, 0, 1));
    }
    TDF_Label const several = read.Product("several");
    EXPECT_EQ(read.SurfaceColor(several), std::nullopt);
    ASSERT_EQ(read.SubShapesOf(several).size(), 1U);
    EXPECT_THAT(read.SurfaceColor(read.SubShapesOf(several).front()), IsColor(0.2, 0.4, 0.6, 0.25));
    EXPECT_NEAR(VolumeOf(read.ShapeOf(read.SubShapesOf(several).front())), 1.0, 1e-9);
}

TEST(ExportStepTest, FacesOfAMovedAndOfAMirroredBodyKeepTheirColours)
{
    StepScene scene;
    scene.Body("moved", BoxShape(1, 2, 3), {{0, "face"}})
        .Write(RootFile("top", Styles(Style("green", 0, 1, 0))) +
               Assembly("top",
                        Instance("plain", "part") + Instance("mirrored", "part", "-1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1")) +
               Part("part", Brep("moved", "<Transform>" + Move(10) + "</Transform><Face ID='face'>" + Styled("green") +
                                              "</Face>")));
    StepRead const read = ReadBack(scene);
    for (char const* const name : {"plain", "mirrored"})
    {
        TDF_Label target;
        XCAFDoc_ShapeTool::GetReferredShape(read.Component("top", name), target);
        ASSERT_EQ(read.SubShapesOf(target).size(), 1U) << name;
        EXPECT_THAT(read.SurfaceColor(read.SubShapesOf(target).front()), IsColor(0, 1, 0)) << name;
    }
}

TEST(ExportStepTest, AnInstanceHasItsOwnColourAlsoWhereAnotherStandsInTheSamePlace)
{
    StepScene scene;
    scene.Body("body", BoxShape(1, 1, 1))
        .Write(RootFile("top", Styles(Style("red", 1, 0, 0) + Style("glass", 0, 0, 1, "Transparency='0.5'"))) +
               Assembly("top", Instance("plain", "part") + Instance("coloured", "part", kIdentityText, Styled("red")) +
                                   Instance("inner", "inner")) +
               Assembly("inner", Instance("clear", "part", kIdentityText, Styled("glass")) + Instance("bare", "part")) +
               Part("part", Brep("body")));
    StepRead const read = ReadBack(scene);
    EXPECT_THAT(read.SurfaceColor(read.Component("top", "coloured")), IsColor(1, 0, 0));
    EXPECT_EQ(read.SurfaceColor(read.Component("top", "plain")), std::nullopt);
    EXPECT_THAT(read.SurfaceColor(read.Component("inner", "clear")), IsColor(0, 0, 1, 0.5));
    EXPECT_EQ(read.SurfaceColor(read.Component("inner", "bare")), std::nullopt);
}

TEST(ExportStepTest, OverridesColourAndHideOccurrencesAlongTheirPaths)
{
    StepScene scene;
    scene.Body("body", BoxShape(1, 1, 1))
        .Write(RootFile("top", Styles(Style("red", 1, 0, 0) + Style("glass", 0, 0, 1, "Transparency='0.75'"))) +
               Assembly("top", Instance("a", "middle") + Instance("b", "middle", Move(10)),
                        "<CrossLevelAttributes><Styles><EntityStyles Path='[a][m][x]'>" + Styled("glass") +
                            "</EntityStyles></Styles><Visibilities><EntityVisibility Path='[b][m][x]' Visibility='0'/>"
                            "</Visibilities></CrossLevelAttributes>") +
               Assembly("middle", Instance("m", "inner"),
                        "<CrossLevelAttributes><Styles><EntityStyles Path='[m][y]'>" + Styled("red") +
                            "</EntityStyles></Styles></CrossLevelAttributes>") +
               Assembly("inner", Instance("x", "part") + Instance("y", "part", Move(3))) + Part("part", Brep("body")));
    StepRead const read = ReadBack(scene);
    TDF_Label const a = read.Component("top", "a");
    TDF_Label const b = read.Component("top", "b");
    TDF_Label const m = read.Component("middle", "m");
    TDF_Label const x = read.Component("inner", "x");
    TDF_Label const y = read.Component("inner", "y");
    ASSERT_FALSE(read.Usage({a, m, x}).IsNull());
    EXPECT_THAT(read.SurfaceColor(read.Usage({a, m, x})), IsColor(0, 0, 1, 0.25));
    ASSERT_FALSE(read.Usage({b, m, x}).IsNull());
    EXPECT_FALSE(read.IsVisible(read.Usage({b, m, x})));
    ASSERT_FALSE(read.Usage({m, y}).IsNull());
    EXPECT_THAT(read.SurfaceColor(read.Usage({m, y})), IsColor(1, 0, 0));
    EXPECT_TRUE(read.IsVisible(read.Usage({m, y})));
    EXPECT_TRUE(read.IsVisible(x));
    EXPECT_EQ(read.SurfaceColor(x), std::nullopt);
}

TEST(ExportStepTest, HiddenInstancesAndBodiesAreHidden)
{
    StepScene scene;
    scene.Body("one", BoxShape(1, 1, 1))
        .Body("two", BoxShape(2, 2, 2))
        .Body("three", BoxShape(3, 3, 3))
        .Write(RootFile("top", Styles(Style("red", 1, 0, 0))) +
               Assembly("top", Instance("shown", "single") + Instance("hidden", "single", Move(9), "", "0") +
                                   Instance("assembly", "inner", kIdentityText, "", "0") +
                                   Instance("more", "several")) +
               Assembly("inner", Instance("inside", "single")) + Part("single", Brep("one")) +
               Part("several", Brep("two", Styled("red"), "0") + Brep("three", "", "0")));
    StepRead const read = ReadBack(scene);
    EXPECT_TRUE(read.IsVisible(read.Component("top", "shown")));
    EXPECT_FALSE(read.IsVisible(read.Component("top", "hidden")));
    // An assembly has no look in STEP: the parts in it are hidden by their paths.
    TDF_Label const usage = read.Usage({read.Component("top", "assembly"), read.Component("inner", "inside")});
    ASSERT_FALSE(usage.IsNull());
    EXPECT_FALSE(read.IsVisible(usage));
    EXPECT_TRUE(read.IsVisible(read.Component("inner", "inside")));
    std::vector<double> hidden;
    for (TDF_Label const& body : read.SubShapesOf(read.Product("several")))
    {
        if (!read.IsVisible(body))
            hidden.push_back(VolumeOf(read.ShapeOf(body)));
    }
    EXPECT_THAT(hidden, testing::UnorderedElementsAre(DoubleNear(8.0, 1e-9), DoubleNear(27.0, 1e-9)));
}

TEST(ExportStepTest, LayersHoldPartsBodiesFacesAndPoints)
{
    auto const layer = [](std::string const& id, std::string const& items, std::string const& visible)
    {
        return "<ILayer ID='" + id + "' Label='" + id + "'><LayerInfo ID='7' Visibility='" + visible +
               "'/><GeometryItems Items='" + items + "'/></ILayer>";
    };
    StepScene scene;
    scene.Body("whole", BoxShape(1, 1, 1), {{0, "face"}})
        .Body("one", BoxShape(2, 2, 2))
        .Write(RootFile("top", "<LayerSet>" + layer("Teile", "single,nobody", "True") +
                                   layer("Körper", "one,point", "False") + layer("faces", "face", "True") +
                                   "</LayerSet>") +
               Assembly("top", Instance("a", "single") + Instance("b", "several")) + Part("single", Brep("whole")) +
               Part("several", Brep("one") + "<IPoint ID='point' Label='Hole'><Point X='1' Y='2' Z='9'/></IPoint>"));
    ToolRun const run = scene.Export("out.step");
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.error, HasSubstr("1 members of layers that are no parts, bodies or faces"));
    StepRead const read(scene.PathOf("out.step"));
    EXPECT_THAT(read.LayersOf(read.Product("single")), ElementsAre("Teile"));
    EXPECT_TRUE(read.IsLayerVisible("Teile"));
    EXPECT_FALSE(read.IsLayerVisible("Körper"));
    ASSERT_EQ(read.SubShapesOf(read.Product("single")).size(), 1U);
    EXPECT_THAT(read.LayersOf(read.SubShapesOf(read.Product("single")).front()), ElementsAre("faces"));
    std::vector<TDF_Label> const members = read.SubShapesOf(read.Product("several"));
    ASSERT_EQ(members.size(), 2U);
    for (TDF_Label const& member : members)
        EXPECT_THAT(read.LayersOf(member), ElementsAre("Körper"));
    EXPECT_TRUE(read.HasItem("Hole"));
}

TEST(ExportStepTest, EveryUnitKeepsTheSizeOfTheProduct)
{
    struct Case
    {
        char const* unit;
        double millimetres;
        char const* inFile;
    };
    for (Case const& each :
         {Case{"kUnitType_Micrometer", 1e-3, ".MICRO.,.METRE."}, Case{"kUnitType_Millimeter", 1.0, ".MILLI.,.METRE."},
          Case{"kUnitType_Centimeter", 10.0, ".CENTI.,.METRE."}, Case{"kUnitType_Decimeter", 100.0, ".MILLI.,.METRE."},
          Case{"kUnitType_Meter", 1e3, "$,.METRE."}, Case{"kUnitType_Kilometer", 1e6, ".KILO.,.METRE."},
          Case{"kUnitType_Mil", 0.0254, "'MIL'"}, Case{"kUnitType_Inch", 25.4, "'INCH'"},
          Case{"kUnitType_Foot", 304.8, "'FOOT'"}, Case{"kUnitType_Yard", 914.4, ".MILLI.,.METRE."},
          Case{"kUnitType_Mile", 1609344.0, "'MILE'"}})
    {
        StepScene scene;
        scene.Body("body", BoxShape(1, 2, 3))
            .Write(RootFile("top") + Assembly("top", Instance("moved", "part", Move(4)), "", each.unit) +
                   Part("part", Brep("body"), "", each.unit));
        StepRead const read = ReadBack(scene);
        std::array<double, 6> const box = BoxOf(read.Whole());
        double const far[] = {4, 0, 0, 5, 2, 3};
        for (std::size_t i = 0; i < box.size(); ++i)
            EXPECT_NEAR(box[i], far[i] * each.millimetres, 1e-6 * each.millimetres) << each.unit;
        EXPECT_THAT(ContentOf(scene.PathOf("out.step")), HasSubstr(each.inFile)) << each.unit;
    }
}

TEST(ExportStepTest, PartsInOtherUnitsAreScaledOnce)
{
    StepScene scene;
    scene.Body("metric", BoxShape(1, 1, 1))
        .Body("imperial", BoxShape(1, 1, 1))
        .Write(RootFile("top") +
               Assembly("top", Instance("a", "millimetres", Move(1)) + Instance("b", "metres", Move(2)), "",
                        "kUnitType_Inch") +
               Part("millimetres", Brep("metric")) +
               Part("metres", Brep("imperial", "<Transform>" + Move(3) + "</Transform>"), "", "kUnitType_Meter"));
    StepRead const read = ReadBack(scene);
    EXPECT_THAT(BoxOf(read.ShapeOf(read.Component("top", "a"))), IsBox({25.4, 0, 0, 26.4, 1, 1}));
    EXPECT_THAT(BoxOf(read.ShapeOf(read.Component("top", "b"))), IsBox({3050.8, 0, 0, 4050.8, 1000, 1000}));
}

TEST(ExportStepTest, SheetsWiresCurvesAndPointsAreCarried)
{
    TopoDS_Shape const sheet = TopExp_Explorer(BoxShape(4, 4, 4), TopAbs_FACE).Current();
    TopoDS_Shape const wire = BRepBuilderAPI_MakeWire(BRepBuilderAPI_MakeEdge(gp_Pnt(0, 5, 0), gp_Pnt(10, 5, 0)),
                                                      BRepBuilderAPI_MakeEdge(gp_Pnt(10, 5, 0), gp_Pnt(10, 9, 0)))
                                  .Shape();
    StepScene scene;
    scene.Body("sheet", sheet)
        .Body("wire", wire)
        .Edge("arc", ArcEdge())
        .Write(RootFile("part", Styles(Style("red", 1, 0, 0))) +
               Part("part", Brep("sheet") + Brep("wire", Styled("red")) +
                                "<ICurve ID='curve' Label='curve'><GMKEntity EntityId='arc'/></ICurve>"
                                "<IPoint ID='point' Label='point' Visibility='0'><Point X='1' Y='2' Z='30'/></IPoint>"
                                "<IPoint ID='next' Label='next'><Point X='1' Y='2' Z='40'/></IPoint>"));
    EXPECT_THAT(scene.Export("out.step").error, Not(HasSubstr("pieces of curves")));
    StepRead const read(scene.PathOf("out.step"));
    TopoDS_Shape const whole = read.Whole();
    EXPECT_EQ(CountOf(whole, TopAbs_FACE), 1);
    EXPECT_NEAR(FactsOf(whole).area, 16.0, 1e-9);
    // The sheet's edges, the wire's, and a quarter of a circle.
    EXPECT_NEAR(FactsOf(whole).length, 16.0 + 14.0 + 3.14159265358979, 1e-6);
    EXPECT_THAT(BoxOf(whole), IsBox({0, 0, 0, 10, 9, 40}));
    for (char const* const name : {"sheet", "wire", "curve", "point", "next"})
        EXPECT_TRUE(read.HasItem(name)) << name;
    int hidden = 0;
    int red = 0;
    for (TDF_Label const& item : read.SubShapesOf(read.Product("part")))
    {
        hidden += read.IsVisible(item) ? 0 : 1;
        red += read.CurveColor(item) ? 1 : 0;
    }
    EXPECT_EQ(hidden, 1);
    EXPECT_EQ(red, 1);
}

TEST(ExportStepTest, APartOfOnePointAndAnEmptyOneKeepTheirNames)
{
    StepScene scene;
    scene.Write(RootFile("top") + Assembly("top", Instance("a", "pointed") + Instance("b", "empty")) +
                Part("pointed", "<IPoint ID='p' Label='p'><Point X='1' Y='2' Z='3'/></IPoint>") + Part("empty", ""));
    StepRead const read = ReadBack(scene);
    EXPECT_THAT(read.ComponentsOf("top"), ElementsAre("a", "b"));
    EXPECT_EQ(read.TargetOf(read.Component("top", "a")), "pointed");
    EXPECT_EQ(read.TargetOf(read.Component("top", "b")), "empty");
    EXPECT_EQ(CountOf(read.Whole(), TopAbs_VERTEX), 1);
}

TEST(ExportStepTest, ValidationPropertiesAndMaterialsAreThoseOfTheCustomProperties)
{
    StepScene scene;
    scene.Body("body", BoxShape(1, 2, 3))
        .Write(RootFile("part") +
               Part("part", Brep("body"),
                    "<FileProperties><CustomProperties>"
                    "<CustomProperty Key='geometric validation property: volume' Type='kDouble' Value='6'/>"
                    "<CustomProperty Key='geometric validation property: area' Type='kDouble' Value='22'/>"
                    "<CustomProperty Key='geometric validation property: centroid' Type='kString' Value='0.5 1 1.5'/>"
                    "<CustomProperty Key='material' Type='kString' Value='Steel'/>"
                    "<CustomProperty Key='material description' Type='kString' Value='S235'/>"
                    "<CustomProperty Key='other' Type='kInt' Value='1'/>"
                    "<CustomProperty Key='is it so' Type='kBool' Value='True'/>"
                    "</CustomProperties></FileProperties>"));
    ToolRun const run = scene.Export("out.step");
    EXPECT_THAT(run.error, HasSubstr("1 custom properties"));
    StepRead const read(scene.PathOf("out.step"));
    TDF_Label const part = read.Product("part");
    Standard_Real value = 0.0;
    EXPECT_TRUE(XCAFDoc_Volume::Get(part, value));
    EXPECT_DOUBLE_EQ(value, 6.0);
    EXPECT_TRUE(XCAFDoc_Area::Get(part, value));
    EXPECT_DOUBLE_EQ(value, 22.0);
    gp_Pnt centroid;
    EXPECT_TRUE(XCAFDoc_Centroid::Get(part, centroid));
    EXPECT_TRUE(centroid.IsEqual(gp_Pnt(0.5, 1, 1.5), 1e-9));
    TDF_LabelSequence materials;
    XCAFDoc_DocumentTool::MaterialTool(read.Document()->Main())->GetMaterialLabels(materials);
    ASSERT_EQ(materials.Length(), 1);
    opencascade::handle<TCollection_HAsciiString> name;
    opencascade::handle<TCollection_HAsciiString> ignored;
    Standard_Real density = 0.0;
    XCAFDoc_DocumentTool::MaterialTool(read.Document()->Main())
        ->GetMaterial(materials.First(), name, ignored, density, ignored, ignored);
    EXPECT_STREQ(name->ToCString(), "Steel");
}

TEST(ExportStepTest, EachSolidOfSeveralSaysWhatItMeasuresAndIsCheckedByIt)
{
    StepScene scene;
    scene.Body("body", BoxShape(1, 2, 3))
        .Body("other", BoxShape(1, 1, 1))
        .Write(RootFile("part", "<Unit LengthUnit='kUnitType_Inch'/>") +
               Part("part", Brep("body") + Brep("other", "<Transform>" + Move(10) + "</Transform>"), ""));
    ASSERT_EQ(scene.Export("out.step").status, 0);
    std::ifstream file(scene.PathOf("out.step"));
    std::string text{std::istreambuf_iterator<char>(file), {}};
    text = std::regex_replace(text, std::regex("\n *"), "");
    for (char const* const measure : {"('volume measure',VOLUME_MEASURE(6.)", "('volume measure',VOLUME_MEASURE(1.)",
                                      "('surface area measure',AREA_MEASURE(22.)", "('centre point',(10.5,0.5,0.5))"})
        EXPECT_THAT(text, HasSubstr(measure));
    std::vector<std::string> const import{"import", "--no-mesh", scene.PathOf("out.step"), scene.PathOf("back.xml")};
    ToolRun const same = RunTool(import);
    EXPECT_EQ(same.status, 0);
    EXPECT_THAT(same.error, testing::Not(HasSubstr("differ"))) << same.error;
    // No more than those of the part stand in the scene.
    std::ifstream sceneFile(scene.PathOf("back.xml"));
    std::string const back{std::istreambuf_iterator<char>(sceneFile), {}};
    EXPECT_EQ(back.find("volume measure"), std::string::npos);
    text.replace(text.find("VOLUME_MEASURE(1.)"), 18, "VOLUME_MEASURE(2.)");
    text.replace(text.find("('centre point',(0.5"), 20, "('centre point',(1.5");
    std::ofstream(scene.PathOf("out.step")) << text;
    ToolRun const other = RunTool(import);
    EXPECT_EQ(other.status, 0);
    EXPECT_THAT(other.error, HasSubstr(": 2 solids differ from what the file says that they measure: "));
    EXPECT_THAT(other.error, HasSubstr("volume 1 instead of 2"));
    EXPECT_THAT(other.error, HasSubstr("centre beside it by 1"));
}

TEST(ExportStepTest, SolidsHaveTheirMeasuresUnlessTheSceneHasThem)
{
    StepScene scene;
    scene.Body("body", BoxShape(1, 2, 3))
        .Body("other", BoxShape(1, 1, 1))
        .Write(RootFile("top") +
               Assembly("top", Instance("one", "several") +
                                   Instance("mirrored", "several", "-1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1")) +
               Part("several", Brep("body") + Brep("other", "<Transform>" + Move(10) + "</Transform>"),
                    "<FileProperties><CustomProperties>"
                    "<CustomProperty Key='geometric validation property: volume' Type='kDouble' Value='6.5'/>"
                    "</CustomProperties></FileProperties>"));
    StepRead const read = ReadBack(scene);
    for (char const* const name : {"one", "mirrored"})
    {
        bool const isMirrored = std::string_view(name) == "mirrored";
        TDF_Label part;
        XCAFDoc_ShapeTool::GetReferredShape(read.Component("top", name), part);
        Standard_Real value = 0.0;
        ASSERT_TRUE(XCAFDoc_Volume::Get(part, value)) << name;
        EXPECT_NEAR(value, isMirrored ? 7.0 : 6.5, 1e-9);
        ASSERT_TRUE(XCAFDoc_Area::Get(part, value));
        EXPECT_NEAR(value, 28.0, 1e-9);
        gp_Pnt centroid;
        ASSERT_TRUE(XCAFDoc_Centroid::Get(part, centroid));
        // In the coordinates of the part, or of its mirrored copy, whose axes are its own.
        gp_Pnt expected((3.0 + 10.5) / 7.0, 6.5 / 7.0, 9.5 / 7.0);
        if (isMirrored)
        {
            GProp_GProps ofCopy;
            BRepGProp::VolumeProperties(read.ShapeOf(part), ofCopy);
            expected = ofCopy.CentreOfMass();
        }
        EXPECT_TRUE(centroid.IsEqual(expected, 1e-9)) << name;
    }
}

TEST(ExportStepTest, AnInstanceOfCurvesOrOfSurfacesWithCurvesHasItsColourOnBoth)
{
    StepScene scene;
    scene.Body("body", BoxShape(1, 1, 1))
        .Body("wire", BRepBuilderAPI_MakeEdge(gp_Pnt(0, 5, 0), gp_Pnt(10, 5, 0)).Shape())
        .Write(RootFile("top", Styles(Style("red", 1, 0, 0))) +
               Assembly("top", Instance("w", "wires", kIdentityText, Styled("red")) +
                                   Instance("b", "both", kIdentityText, Styled("red"))) +
               Part("wires", Brep("wire")) + Part("both", Brep("body") + Brep("wire")));
    StepRead const read = ReadBack(scene);
    EXPECT_THAT(read.CurveColor(read.Component("top", "w")), IsColor(1, 0, 0));
    EXPECT_EQ(read.SurfaceColor(read.Component("top", "w")), std::nullopt);
    EXPECT_THAT(read.CurveColor(read.Component("top", "b")), IsColor(1, 0, 0));
    EXPECT_THAT(read.SurfaceColor(read.Component("top", "b")), IsColor(1, 0, 0));
}

TEST(ExportStepTest, CurvesInParametersAreThereWhenAskedFor)
{
    StepScene scene;
    scene.Body("body", BRepPrimAPI_MakeCylinder(1, 2).Shape()).Write(RootFile("part") + Part("part", Brep("body")));
    EXPECT_NEAR(VolumeOf(ReadBack(scene).Whole()), 2 * 3.14159265358979, 1e-6);
    EXPECT_THAT(ContentOf(scene.PathOf("out.step")), Not(HasSubstr("PCURVE")));
    EXPECT_NEAR(VolumeOf(ReadBack(scene, {"--pcurves"}).Whole()), 2 * 3.14159265358979, 1e-6);
    EXPECT_THAT(ContentOf(scene.PathOf("out.step")), HasSubstr("PCURVE"));
}

TEST(ExportStepTest, TheSameSceneIsTheSameFile)
{
    StepScene scene;
    std::string parts;
    std::string instances;
    for (int i = 0; i < 12; ++i)
    {
        std::string const number = std::to_string(i);
        scene.Body(("body" + number).c_str(), BoxShape(1, 1, 1 + i));
        parts += Part("part" + number, Brep("body" + number), Styled(i % 2 == 0 ? "red" : "blue"));
        instances += Instance("i" + number, "part" + number);
    }
    scene.Write(RootFile("top", Styles(Style("red", 1, 0, 0) + Style("blue", 0, 0, 1))) + Assembly("top", instances) +
                parts);
    std::string first;
    for (int i = 0; i < 4; ++i)
    {
        ASSERT_EQ(scene.Export("out.step").status, 0);
        std::string const content = ContentOf(scene.PathOf("out.step"));
        first = first.empty() ? content : first;
        EXPECT_EQ(content, first);
    }
    EXPECT_THAT(first, HasSubstr("'1970-01-01T00:00:00'"));
}

TEST(ExportStepTest, ViewsKeepTheirCamerasAndCuts)
{
    StepScene scene;
    scene.Body("body", BoxShape(1, 2, 3))
        .Write(RootFile("part",
                        "<CameraSet><ICamera ID='camera' Label='camera' Type='kCameraType_Parallel' "
                        "DistanceToViewPlane='20' AspectRatio='2' ViewWindowHeightForParallelCamera='8'>"
                        "<Unit LengthUnit='kUnitType_Millimeter'/><CameraPosition X='1' Y='-20' Z='3'/>"
                        "<CameraDirection X='0' Y='1' Z='0'/><CameraUpDirection X='0' Y='0' Z='1'/>"
                        "<ISectionCamera><PlaneData><Origin X='0' Y='0' Z='5'/><Normal X='0' Y='0' Z='1'/>"
                        "</PlaneData></ISectionCamera></ICamera></CameraSet>"
                        "<ViewSet><IView ID='view' Label='Schnitt Ä' Visibility='1'><CameraSet>"
                        "<CameraRef ID='camera'/></CameraSet></IView></ViewSet>") +
               Part("part", Brep("body")));
    StepRead const read = ReadBack(scene);
    auto const tool = XCAFDoc_DocumentTool::ViewTool(read.Document()->Main());
    TDF_LabelSequence labels;
    tool->GetViewLabels(labels);
    ASSERT_EQ(labels.Length(), 1);
    opencascade::handle<XCAFDoc_View> view;
    ASSERT_TRUE(labels.First().FindAttribute(XCAFDoc_View::GetID(), view));
    opencascade::handle<XCAFView_Object> const object = view->GetObject();
    EXPECT_STREQ(object->Name()->ToCString(), "Schnitt Ä");
    EXPECT_EQ(object->Type(), XCAFView_ProjectionType_Parallel);
    // A view's axis points from the product to the eye.
    EXPECT_TRUE(object->ViewDirection().IsEqual(gp_Dir(0, -1, 0), 1e-9));
    EXPECT_TRUE(object->UpDirection().IsEqual(gp_Dir(0, 0, 1), 1e-9));
    EXPECT_DOUBLE_EQ(object->WindowHorizontalSize(), 16.0);
    EXPECT_DOUBLE_EQ(object->WindowVerticalSize(), 8.0);
    EXPECT_DOUBLE_EQ(object->ZoomFactor(), 20.0);
    TDF_LabelSequence cuts;
    tool->GetRefClippingPlaneLabel(labels.First(), cuts);
    EXPECT_EQ(cuts.Length(), 1);
}

TEST(ExportStepTest, TheFileSaysWhoMadeTheScene)
{
    StepScene scene;
    scene.Body("body", BoxShape(1, 2, 3))
        .Write(
            "<IFile ID='file'><FileProperties><Author>Ann</Author><Organization>Works</Organization>"
            "<Authorisation>yes</Authorisation></FileProperties><ChildSet><Child ID='part'/></ChildSet></IFile>" +
            Part("part", Brep("body")));
    ASSERT_EQ(scene.Export("out.step").status, 0);
    EXPECT_THAT(ContentOf(scene.PathOf("out.step")), HasSubstr("('Ann'),('Works')"));
    EXPECT_THAT(ContentOf(scene.PathOf("out.step")), HasSubstr("'kvr_xml_producer','yes');"));
}

TEST(ExportStepTest, LayersStayInTheirOrderAndMayHoldEdges)
{
    auto const layer = [](char const* name, char const* items, char const* visible)
    {
        return std::string("<ILayer ID='layer ") + name + "' Label='" + name + "'><LayerInfo ID='1' Visibility='" +
               visible + "'/><GeometryItems Items='" + items + "'/></ILayer>";
    };
    StepScene scene;
    scene.Body("body", BoxShape(1, 2, 3), {}, {{4, "edge"}})
        .Write(RootFile("part", "<LayerSet>" + layer("points", "point", "False") + layer("edges", "edge", "True") +
                                    layer("bodies", "body", "False") + "</LayerSet>") +
               Part("part", Brep("body") + "<IPoint ID='point' Label='' Visibility='1' NetVisibility='1'><Point X='1' "
                                           "Y='2' Z='3'/></IPoint>"));
    ASSERT_EQ(scene.Export("out.step").error, "");
    ASSERT_EQ(RunTool({"import", scene.PathOf("out.step"), scene.PathOf("back.xml")}).status, 0);
    auto const objects =
        nlohmann::json::parse(RunTool({"dump", "--summary", scene.PathOf("back.xml")}).out).at("Objects");
    auto const expect = [&](char const* id, char const* name, char const* item, bool isVisible)
    {
        EXPECT_EQ(objects.at(id).at("Label"), name);
        EXPECT_EQ(objects.at(id).at("GeometryItems"), nlohmann::json({item})) << name;
        EXPECT_EQ(objects.at(id).at("IsVisible"), isVisible) << name;
    };
    expect("layer1", "points", "point1", false);
    expect("layer2", "edges", "body1.e5", true);
    expect("layer3", "bodies", "body1", false);
}

TEST(ExportStepTest, CalloutsKeepTheirCurvesPlanesAndTexts)
{
    StepScene scene;
    scene.Body("body", BoxShape(1, 2, 3))
        .Edge("arc", ArcEdge())
        .Write(RootFile("part") +
               Part("part", Brep("body") +
                                "<IWorkPlane ID='plane'><Origin X='0' Y='0' Z='5'/><Normal X='0' Y='0' Z='1'/>"
                                "<Reference X='1' Y='0' Z='0'/></IWorkPlane>"
                                "<IAnnotationCallout ID='note' Label='Note 1' Visibility='1'><IText><ITextLine>"
                                "<ITextFragment Value='Deburr'/></ITextLine></IText>"
                                "<AnnotationPlane><Child ID='plane'/></AnnotationPlane><ChildSet>"
                                "<IAnnotationCalloutElement ID='leader' Label='leader'><ChildSet>"
                                "<ICurve ID='line'><GMKEntity EntityId='arc'/></ICurve></ChildSet>"
                                "</IAnnotationCalloutElement></ChildSet></IAnnotationCallout>"));
    StepRead const read = ReadBack(scene);
    TDF_LabelSequence labels;
    XCAFDoc_DocumentTool::DimTolTool(read.Document()->Main())->GetDimensionLabels(labels);
    ASSERT_EQ(labels.Length(), 1);
    opencascade::handle<XCAFDoc_Dimension> dimension;
    ASSERT_TRUE(labels.First().FindAttribute(XCAFDoc_Dimension::GetID(), dimension));
    auto const object = dimension->GetObject();
    EXPECT_STREQ(object->GetPresentationName()->ToCString(), "Note 1");
    ASSERT_TRUE(object->HasPlane());
    EXPECT_TRUE(object->GetPlane().Location().IsEqual(gp_Pnt(0, 0, 5), 1e-9));
    EXPECT_NEAR(FactsOf(object->GetPresentation()).length, 3.14159265358979, 1e-6);
    EXPECT_THAT(ContentOf(scene.PathOf("out.step")), HasSubstr("'Deburr'"));
}

TEST(ExportStepTest, WhatIsLeftOutIsCountedByKindUnlessTheToolIsQuiet)
{
    StepScene scene;
    scene.Body("body", BoxShape(1, 1, 1))
        .Write(RootFile("part") +
               Part("part", Brep("body") +
                                "<IPointCloud ID='cloud'><PointCloud PointCloudCoordinates='0 0 0'/>"
                                "</IPointCloud><IWorkPoint ID='a'><WorkPoint X='1' Y='2' Z='3'/></IWorkPoint>"
                                "<IWorkPoint ID='b'><WorkPoint X='1' Y='2' Z='3'/></IWorkPoint>"));
    ToolRun const run = scene.Export("out.step");
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.error, HasSubstr("1 point clouds"));
    EXPECT_THAT(run.error, HasSubstr("2 work features"));
    EXPECT_THAT(scene.Export("out.step", {"--quiet"}).error, IsEmpty());
}

TEST(ExportStepTest, OnlyAndHideChooseWhatIsWritten)
{
    StepScene scene;
    scene.Body("one", BoxShape(1, 1, 1))
        .Body("two", BoxShape(2, 2, 2))
        .Write(RootFile("top") + Assembly("top", Instance("a", "first") + Instance("b", "second")) +
               Part("first", Brep("one")) + Part("second", Brep("two")));
    EXPECT_NEAR(VolumeOf(ReadBack(scene, {"--only", "a"}).Whole()), 1.0, 1e-9);
    EXPECT_NEAR(VolumeOf(ReadBack(scene, {"--hide", "first"}).Whole()), 8.0, 1e-9);
}

TEST(ExportStepTest, AfterOneRoundImportAndExportChangeNothing)
{
    StepScene scene;
    scene.Body("whole", BoxShape(1, 2, 3), {{0, "face"}})
        .Body("one", BoxShape(2, 2, 2))
        .Body("two", BoxShape(1, 1, 1))
        .Write(RootFile("top", Styles(Style("red", 1, 0, 0) + Style("glass", 0, 0.5, 1, "Transparency='0.5'"))) +
               Assembly("top",
                        Instance("a", "single") + Instance("b", "single", Move(9), Styled("glass")) +
                            Instance("c", "several", Move(0, 9)),
                        "", "kUnitType_Inch") +
               Part("single", Brep("whole", "<Face ID='face'>" + Styled("red") + "</Face>"), "", "kUnitType_Inch") +
               Part("several", Brep("one", Styled("red")) + Brep("two", "", "0"), "", "kUnitType_Inch"));
    // The entities without their numbers, in an order of their own.
    auto const entitiesOf = [&](std::string const& name)
    {
        std::string const text = ContentOf(scene.PathOf(name));
        std::vector<std::string> entities(1);
        for (std::size_t i = text.find("DATA;"); i < text.size(); ++i)
        {
            if (text[i] == ';')
                entities.emplace_back();
            else if (text[i] == '#')
                i = text.find_first_not_of("0123456789", i + 1) - 1;
            else if (text[i] != ' ' && text[i] != '\n')
                entities.back() += text[i];
        }
        std::sort(entities.begin(), entities.end());
        return entities;
    };
    ASSERT_EQ(scene.Export("0.step", {"--quiet"}).status, 0);
    for (int round = 1; round <= 3; ++round)
    {
        std::string const number = std::to_string(round);
        std::string const model = scene.PathOf(std::to_string(round - 1) + ".step");
        ToolRun const imported = RunTool({"import", model, scene.PathOf(number + ".xml"), "--quiet"});
        ASSERT_EQ(imported.status, 0) << imported.error;
        ToolRun const exported =
            RunTool({"export", scene.PathOf(number + ".xml"), scene.PathOf(number + ".step"), "--quiet"});
        ASSERT_EQ(exported.status, 0) << exported.error;
    }
    auto const onlyIn = [&](std::string const& one, std::string const& other)
    {
        std::vector<std::string> const left = entitiesOf(one);
        std::vector<std::string> const right = entitiesOf(other);
        std::vector<std::string> differing;
        std::set_difference(left.begin(), left.end(), right.begin(), right.end(), std::back_inserter(differing));
        return differing;
    };
    for (auto const& [one, other] : {std::pair{"2.step", "3.step"}, {"1.step", "2.step"}})
    {
        EXPECT_THAT(onlyIn(one, other), testing::IsEmpty());
        EXPECT_THAT(onlyIn(other, one), testing::IsEmpty());
    }
    StepRead const first(scene.PathOf("0.step"));
    StepRead const last(scene.PathOf("3.step"));
    EXPECT_EQ(last.Roots(), first.Roots());
    EXPECT_EQ(last.ComponentsOf("top"), first.ComponentsOf("top"));
    EXPECT_NEAR(VolumeOf(last.Whole()) / VolumeOf(first.Whole()), 1.0, 1e-9);
    EXPECT_THAT(BoxOf(last.Whole()), IsBox(BoxOf(first.Whole())));
    EXPECT_THAT(last.SurfaceColor(last.Component("top", "b")), IsColor(0, 0.5, 1, 0.5));
    EXPECT_THAT(ContentOf(scene.PathOf("3.step")), HasSubstr("'INCH'"));
}

namespace
{

std::vector<std::string> NamesIn(std::string const& folder)
{
    std::vector<std::string> names;
    for (auto const& entry : std::filesystem::directory_iterator(folder))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

StepScene& WriteTwoBlocks(StepScene& scene)
{
    return scene.Body("body", BoxShape(1, 2, 3))
        .Write(RootFile("top") +
               Assembly("top", Instance("a", "part") + Instance("b", "part", Move(10)) +
                                   Instance("mirrored", "part", "-1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1")) +
               Part("part", Brep("body")));
}

}  // namespace

TEST(ExportBrepTest, TheWholeIsOneCompoundThatSharesWhatIsPlacedTwice)
{
    StepScene scene;
    WriteTwoBlocks(scene);
    ToolRun const run = scene.Export("out.brep");
    ASSERT_EQ(run.status, 0) << run.error;
    TopoDS_Shape shape;
    BRep_Builder builder;
    ASSERT_TRUE(BRepTools::Read(shape, scene.PathOf("out.brep").c_str(), builder));
    EXPECT_EQ(shape.ShapeType(), TopAbs_COMPOUND);
    EXPECT_NEAR(VolumeOf(shape), 18.0, 1e-9);
    EXPECT_THAT(BoxOf(shape), IsBox({-1, 0, 0, 11, 2, 3}));
    TopTools_IndexedMapOfShape solids;
    TopExp::MapShapes(shape, TopAbs_SOLID, solids);
    ASSERT_EQ(solids.Extent(), 3);
    EXPECT_TRUE(solids(1).IsPartner(solids(2)));
    EXPECT_FALSE(solids(1).IsPartner(solids(3)));
}

TEST(ExportFailureTest, AFileThatGrowsTooLargeLeavesOneSentenceAndNoFile)
{
    for (char const* const name : {"out.step", "out.stp", "out.brep"})
    {
        StepScene scene;
        WriteTwoBlocks(scene);
        std::vector<std::string> const before = NamesIn(scene.Folder().Path());
        ToolRun run;
        {
            ResourceLimit const limit(RLIMIT_FSIZE, 1000);
            run = scene.Export(name);
        }
        EXPECT_EQ(run.status, 1) << name;
        EXPECT_THAT(run.error, HasSubstr(std::string(name) + ": it cannot be written")) << name;
        EXPECT_EQ(std::count(run.error.begin(), run.error.end(), '\n'), 1) << run.error;
        EXPECT_EQ(NamesIn(scene.Folder().Path()), before) << name;
    }
}

TEST(ExportFailureTest, ATargetInNoFolderLeavesOneSentence)
{
    StepScene scene;
    WriteTwoBlocks(scene);
    ToolRun const run = scene.Export("nowhere/out.step");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(std::count(run.error.begin(), run.error.end(), '\n'), 1) << run.error;
}

TEST(ExportFailureTest, AFormerFileStaysWhenTheExportFails)
{
    StepScene scene;
    WriteTwoBlocks(scene);
    scene.Folder().Write("out.step", "former");
    {
        ResourceLimit const limit(RLIMIT_FSIZE, 1000);
        EXPECT_EQ(scene.Export("out.step").status, 1);
    }
    EXPECT_EQ(ContentOf(scene.PathOf("out.step")), "former");
}

TEST(ExportFailureTest, MoreOccurrencesThanAWriterCanGoThroughAreRefused)
{
    StepScene scene;
    std::string text = RootFile("a0");
    for (int level = 0; level < 30; ++level)
    {
        std::string const number = std::to_string(level);
        std::string const below = level == 29 ? "part" : "a" + std::to_string(level + 1);
        text += Assembly("a" + number, Instance("l" + number, below) + Instance("r" + number, below, Move(5)));
    }
    scene.Body("body", BoxShape(1, 1, 1)).Write(text + Part("part", Brep("body")));
    ToolRun const run = scene.Export("out.step");
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.error, HasSubstr("1,000,000 occurrences"));
}

}  // namespace KVR::Test

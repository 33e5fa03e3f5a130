// What a boundary representation answers before and after its setters.

#include "framework/gmk_interface/GMKBrep.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <BRepBuilderAPI_MakeEdge.hxx>
#include <BRepBuilderAPI_MakeFace.hxx>
#include <BRepBuilderAPI_MakeWire.hxx>
#include <BRep_Builder.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Compound.hxx>
#include <TopoDS_Face.hxx>
#include <gp_Pln.hxx>
#include <optional>

#include "framework/kernel/global_data.h"
#include "framework/kernel/history_stream.h"
#include "tests/framework/gmk_interface/PlainBrep.h"
#include "tests/support/Shapes.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;

std::optional<UnitTypeEnum> UnitOf(IBrep const& brep, IsValueSpecifiedEnum (IUnit::*getter)(UnitTypeEnum&) const)
{
    UnitTypeEnum unit = kUnitType_Day;
    bool const isSpecified = (brep.*getter)(unit) == kIsValueSpecified_Yes;
    EXPECT_TRUE(isSpecified || unit == kUnitType_Day) << "the output is left alone";
    return isSpecified ? std::optional(unit) : std::nullopt;
}

IdSet SetOf(std::initializer_list<char const*> ids)
{
    IdSet set;
    for (char const* const id : ids)
        set.AddWithUniquenessCheck(id);
    return set;
}

Matrix3d Moved(double x)
{
    Matrix3d matrix;
    matrix.SetElement(0, 3, x);
    return matrix;
}

TEST(GMKBrep, IsHiddenAndSaysNothingAtFirst)
{
    PlainBrep const brep;
    EXPECT_EQ(brep.Body(), nullptr);
    EXPECT_EQ(brep.BodyDI(), nullptr);
    EXPECT_EQ(brep.BrepType_ex(), IBrep::kBrepType_Unknown);
    EXPECT_EQ(brep.SrcGeomType(), IBrep::kProducerGeometryType_BrepSolid);
    EXPECT_FALSE(brep.IsVisible());
    EXPECT_FALSE(brep.IsNetVisible());
    EXPECT_EQ(brep.AngularTolerance(), -1.0);
    EXPECT_EQ(brep.LinearTolerance(), -1.0);
    EXPECT_EQ(brep.ParamTolerance(), -1.0);
    EXPECT_EQ(UnitOf(brep, &IUnit::LengthUnit), std::nullopt);
    EXPECT_EQ(UnitOf(brep, &IUnit::DisplayAngleUnit), std::nullopt);
    EXPECT_EQ(UnitOf(brep, &IUnit::DisplayLengthUnit), std::nullopt);
    EXPECT_TRUE(brep.Styles().IsEmpty());
    EXPECT_TRUE(brep.NetStyles().IsEmpty());
    EXPECT_EQ(brep.Transform(), nullptr);
    EXPECT_EQ(brep.StylesMap()->Size(), 0U);
    EXPECT_EQ(brep.PersistentIDsMap()->Size(), 0U);
    EXPECT_TRUE(brep.VersionPersistentIdText().IsEmpty());
}

TEST(GMKBrep, AnswersWhatEachSetterWasGiven)
{
    PlainBrep brep;
    brep.SetSrcGeomType(IBrep::kProducerGeometryType_Curve);
    brep.SetAngularTolerance(0.1);
    brep.SetLinearTolerance(0.2);
    brep.SetParamTolerance(0.3);
    brep.SetVersionPersistentId("v");
    EXPECT_EQ(brep.SrcGeomType(), IBrep::kProducerGeometryType_Curve);
    EXPECT_EQ(brep.AngularTolerance(), 0.1);
    EXPECT_EQ(brep.LinearTolerance(), 0.2);
    EXPECT_EQ(brep.ParamTolerance(), 0.3);
    EXPECT_EQ(Text(brep.VersionPersistentIdText()), "v");
    brep.SetVisible(true);
    EXPECT_TRUE(brep.IsVisible());
    EXPECT_FALSE(brep.IsNetVisible());
    brep.SetNetVisibility(true);
    brep.SetVisible(false);
    EXPECT_FALSE(brep.IsVisible());
    EXPECT_TRUE(brep.IsNetVisible());
}

TEST(GMKBrep, EachUnitIsSpecifiedByItself)
{
    PlainBrep brep;
    brep.SetLengthUnit(kUnitType_Inch);
    EXPECT_EQ(UnitOf(brep, &IUnit::LengthUnit), kUnitType_Inch);
    EXPECT_EQ(UnitOf(brep, &IUnit::DisplayAngleUnit), std::nullopt);
    brep.SetDisplayAngleUnit(kUnitType_Degree);
    EXPECT_EQ(UnitOf(brep, &IUnit::DisplayAngleUnit), kUnitType_Degree);
    EXPECT_EQ(UnitOf(brep, &IUnit::DisplayLengthUnit), std::nullopt);
    brep.SetDisplayLengthUnit(kUnitType_Unknown);
    EXPECT_EQ(UnitOf(brep, &IUnit::DisplayLengthUnit), kUnitType_Unknown) << "said, if unknown";
}

TEST(GMKBrep, StylesAreCopiedOrMoved)
{
    PlainBrep brep;
    IdSet const copied = SetOf({"a", "b"});
    brep.SetStyles(copied);
    brep.SetNetStyles(SetOf({"n"}));
    EXPECT_THAT(Ids(brep.Styles()), ElementsAre("a", "b"));
    EXPECT_THAT(Ids(brep.NetStyles()), ElementsAre("n"));
    brep.SetStyles(SetOf({"c"}));
    brep.SetNetStyles(copied);
    EXPECT_THAT(Ids(brep.Styles()), ElementsAre("c")) << "they replace those before";
    EXPECT_THAT(Ids(brep.NetStyles()), ElementsAre("a", "b"));
}

TEST(GMKBrep, TheIdentityIsNoTransform)
{
    PlainBrep brep;
    Matrix3d const matrix = Moved(5);
    brep.SetTransform(matrix);
    ASSERT_NE(brep.Transform(), nullptr);
    EXPECT_NE(brep.Transform(), &matrix) << "a copy";
    EXPECT_EQ(brep.Transform()->Element(0, 3), 5.0);
    brep.SetTransform(Moved(6));
    ASSERT_NE(brep.Transform(), nullptr);
    EXPECT_EQ(brep.Transform()->Element(0, 3), 6.0);
    brep.SetTransform(Matrix3d());
    EXPECT_EQ(brep.Transform(), nullptr);
}

TEST(GMKBrep, StylesOfSubEntitiesReplaceAndAreRemoved)
{
    PlainBrep brep;
    SubEntityToStylesMap first;
    first.SetStyles("f", SetOf({"a"}));
    first.SetStyles("g", SetOf({"b"}));
    brep.AppendStylesToMap(first);
    SubEntityToStylesMap second;
    second.SetStyles("f", SetOf({"c"}));
    second.SetStyles("h", SetOf({}));
    brep.AppendStylesToMap(second);
    SubEntityToStylesMap const& map = *brep.StylesMap();
    IdSet styles;
    ASSERT_EQ(map.Size(), 3U);
    ASSERT_EQ(map.Styles("f", styles), kIsValueSpecified_Yes);
    EXPECT_THAT(Ids(styles), ElementsAre("c"));
    ASSERT_EQ(map.Styles("g", styles), kIsValueSpecified_Yes);
    EXPECT_THAT(Ids(styles), ElementsAre("b"));
    ASSERT_EQ(map.Styles("h", styles), kIsValueSpecified_Yes);
    EXPECT_TRUE(styles.IsEmpty());
    brep.RemoveSubEntityStyles("g");
    brep.RemoveSubEntityStyles("unknown");
    EXPECT_EQ(map.Size(), 2U);
    EXPECT_EQ(map.Styles("g", styles), kIsValueSpecified_No);
    EXPECT_EQ(map.Styles("f", styles), kIsValueSpecified_Yes);
    brep.RemoveAllSubEntityStyles();
    EXPECT_EQ(map.Size(), 0U);
}

TEST(GMKBrep, PersistentIdsOfSubEntitiesStayAndAreRemoved)
{
    PlainBrep brep;
    EditableDataIdToPersistentIdMap first;
    first.Add("f", "1");
    first.Add("g", "2");
    brep.AppendPersistentIDsToMap(first);
    EditableDataIdToPersistentIdMap second;
    second.Add("f", "other");
    second.Add("h", "3");
    brep.AppendPersistentIDsToMap(second);
    DataIdToPersistentIdMap const& map = *brep.PersistentIDsMap();
    UTF8String id;
    ASSERT_EQ(map.Size(), 3U);
    ASSERT_EQ(map.PersistentId("f", id), kIsValueSpecified_Yes);
    EXPECT_EQ(Text(id), "1") << "the first stays";
    ASSERT_EQ(map.PersistentId("h", id), kIsValueSpecified_Yes);
    EXPECT_EQ(Text(id), "3");
    brep.RemoveSubEntityPersistentIDs("f");
    brep.RemoveSubEntityPersistentIDs("unknown");
    EXPECT_EQ(map.Size(), 2U);
    EXPECT_EQ(map.PersistentId("f", id), kIsValueSpecified_No);
    EXPECT_EQ(map.PersistentId("g", id), kIsValueSpecified_Yes);
    brep.RemoveAllSubEntityPersistentIDs();
    EXPECT_EQ(map.Size(), 0U);
}

TEST(GMKBrep, StylesAndPersistentIdsAreRemovedEachByThemselves)
{
    PlainBrep brep;
    SubEntityToStylesMap styles;
    styles.SetStyles("f", SetOf({"a"}));
    EditableDataIdToPersistentIdMap ids;
    ids.Add("f", "1");
    brep.AppendStylesToMap(styles);
    brep.AppendPersistentIDsToMap(ids);
    brep.RemoveSubEntityStyles("f");
    EXPECT_EQ(brep.PersistentIDsMap()->Size(), 1U);
    brep.AppendStylesToMap(styles);
    brep.RemoveAllSubEntityPersistentIDs();
    EXPECT_EQ(brep.StylesMap()->Size(), 1U);
}

IBrep::BrepTypeEnum TypeOf(TopoDS_Shape const& shape)
{
    return PlainBrep(new BODY(shape)).BrepType_ex();
}

TEST(GMKBrep, TheTypeIsToldByTheShapes)
{
    TopoDS_Shape const box = BoxShape(1, 2, 3);
    TopoDS_Face const face = BRepBuilderAPI_MakeFace(gp_Pln(), 0, 1, 0, 1).Face();
    BRep_Builder builder;
    TopoDS_Compound empty;
    builder.MakeCompound(empty);
    TopoDS_Compound mixed;
    builder.MakeCompound(mixed);
    builder.Add(mixed, box);
    builder.Add(mixed, face);
    EXPECT_EQ(TypeOf(box), IBrep::kBrepType_Solid);
    EXPECT_EQ(TypeOf(face), IBrep::kBrepType_Sheet);
    EXPECT_EQ(TypeOf(BRepBuilderAPI_MakeWire(TopoDS::Edge(ArcEdge())).Wire()), IBrep::kBrepType_Wire);
    EXPECT_EQ(TypeOf(mixed), IBrep::kBrepType_Mixed);
    EXPECT_EQ(TypeOf(empty), IBrep::kBrepType_Unknown);
}

TEST(GMKBrep, EndsItsBodyAndLeavesTheActiveStreamAlone)
{
    HISTORY_STREAM stream;
    ActiveStreamScope const active(&stream);
    {
        auto* const body = new BODY(BoxShape(1, 2, 3));
        stream.Add(body);
        PlainBrep const brep(body);
        EXPECT_EQ(brep.Body(), body);
        EXPECT_EQ(stream.EntityCount(), 1U);
    }
    EXPECT_EQ(stream.EntityCount(), 0U) << "it took itself out of its stream";
    EXPECT_EQ(gki_global_data().activeStream, &stream);
}

}  // namespace

}  // namespace KVR::Test

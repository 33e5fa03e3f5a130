#include "geometry/BrepReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <TopoDS_Shape.hxx>
#include <optional>

#include "framework/gmk_interface/DetachableGMKBrep.h"
#include "framework/kernel/entity.h"
#include "geometry/XMLCurve.h"
#include "geometry/XMLPoint.h"
#include "mesh/XMLPolygonMesh.h"
#include "producer/ElementReaders.h"
#include "readers/RegisterObject.h"
#include "tests/support/KernelBytes.h"
#include "tests/support/ReadElement.h"
#include "tests/support/Shapes.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

std::string BoxStore(char const* dataId = "b")
{
    std::vector<std::unique_ptr<ENTITY>> entities;
    entities.push_back(std::make_unique<BODY>(BoxShape(1, 2, 3)));
    entities.back()->AddDataId(dataId);
    return StoreBytes(entities, false);
}

// An "IBrep" of the id "b", with the body of a store.
struct BrepElement
{
    explicit BrepElement(std::string const& attributes, std::string const& children = "", char const* storeId = "b",
                         char const* prefix = nullptr)
        : scene("<Scene><SatInfo Path='s.sab'/><IBrep ID='b' " + attributes + ">" + children + "</IBrep></Scene>")
    {
        scene.WithFile("s.sab", BoxStore(storeId));
        if (prefix)
            scene.WithPrefix(prefix);
        scene.Begin();
    }
    IBrep& Brep(char const* id = "b") { return scene.Get<IBrep>(id); }

    TestScene scene;
};

template <class Getter>
std::optional<UnitTypeEnum> UnitOf(IBrep const& brep, Getter getter)
{
    UnitTypeEnum unit = kUnitType_Day;
    if ((brep.*getter)(unit) != kIsValueSpecified_Yes)
        return {};
    return unit;
}

TEST(BrepReader, WithoutVisibilityItIsHidden)
{
    BrepElement test("");
    EXPECT_FALSE(test.Brep().IsVisible());
    EXPECT_FALSE(test.Brep().IsNetVisible());
}

TEST(BrepReader, OnlyTheFigureOneIsVisible)
{
    for (char const* const text : {"true", "True", "01", "", "0", " 1"})
    {
        BrepElement test("Visibility='" + std::string(text) + "' NetVisibility='" + text + "'");
        EXPECT_FALSE(test.Brep().IsVisible()) << text;
        EXPECT_FALSE(test.Brep().IsNetVisible()) << text;
    }
    BrepElement shown("Visibility='1' NetVisibility='1'");
    EXPECT_TRUE(shown.Brep().IsVisible());
    EXPECT_TRUE(shown.Brep().IsNetVisible());
}

TEST(BrepReader, TheTypeIsOneOfSevenTextsAndSolidOtherwise)
{
    char const* const texts[] = {"kProducerGeometryType_Unknown",   "kProducerGeometryType_BrepMixed",
                                 "kProducerGeometryType_BrepSolid", "kProducerGeometryType_BrepSheet",
                                 "kProducerGeometryType_Surface",   "kProducerGeometryType_BrepWire",
                                 "kProducerGeometryType_Curve"};
    for (int i = 0; i < 7; ++i)
        EXPECT_EQ(BrepElement("Type='" + std::string(texts[i]) + "'").Brep().SrcGeomType(), i) << texts[i];
    for (char const* const other : {"", "kproducergeometrytype_curve", "6", "kProducerGeometryType_Curve "})
        EXPECT_EQ(BrepElement("Type='" + std::string(other) + "'").Brep().SrcGeomType(), 2) << other;
    EXPECT_EQ(BrepElement("").Brep().SrcGeomType(), 2);
}

TEST(BrepReader, ATextThatIsNoTypeLeavesTheOutputAlone)
{
    IBrep::ProducerGeometryTypeEnum type = IBrep::kProducerGeometryType_Surface;
    EXPECT_FALSE(ProducerGeometryTypeFromText(u"Surface", type));
    EXPECT_EQ(type, IBrep::kProducerGeometryType_Surface);
    EXPECT_TRUE(ProducerGeometryTypeFromText(u"kProducerGeometryType_Curve", type));
    EXPECT_EQ(type, IBrep::kProducerGeometryType_Curve);
}

TEST(BrepReader, TheBodyIsFoundByTheId)
{
    BrepElement test("Label='Deckel'");
    ASSERT_TRUE(test.Brep().Body());
    EXPECT_EQ(FactsOf(test.Brep().Body()->Shape()).volume, FactsOf(BoxShape(1, 2, 3)).volume);
    EXPECT_EQ(test.Brep().BrepType_ex(), IBrep::kBrepType_Solid);
    EXPECT_EQ(test.Brep().BodyDI(), nullptr);
    EXPECT_EQ(Text(test.Brep().Label()), "Deckel");
}

TEST(BrepReader, AnIdThatNoStoreHoldsGivesAnObjectWithoutBody)
{
    BrepElement test("", "<Face ID='f'><Styles><StyleRef ID='s'/></Styles></Face>", "other");
    EXPECT_EQ(test.Brep().Body(), nullptr);
    EXPECT_EQ(test.Brep().BrepType_ex(), IBrep::kBrepType_Unknown);
    EXPECT_EQ(test.Brep().StylesMap()->Size(), 0U);
}

TEST(BrepReader, StylesOfFacesWithoutABodyAreNotMappedEither)
{
    // The id of the style is met first behind the body's own.
    std::string const face = "<Face ID='f'><Styles><StyleRef ID='s'/></Styles></Face>";
    BrepElement without("", face, "other", "n");
    EXPECT_TRUE(without.scene.Has("n1"));
    BrepElement with("", face, "b", "n");
    IdSet styles;
    ASSERT_TRUE(with.scene.Has("n2"));
    ASSERT_EQ(with.Brep("n2").StylesMap()->Styles("f", styles), kIsValueSpecified_Yes);
    EXPECT_THAT(Ids(styles), ElementsAre("n1"));
}

TEST(BrepReader, UnderAPrefixTheStoreIsAskedForTheWrittenId)
{
    BrepElement test("", "", "b", "new");
    EXPECT_FALSE(test.scene.Has("b"));
    ASSERT_TRUE(test.scene.Has("new1"));
    EXPECT_TRUE(test.Brep("new1").Body());
}

TEST(BrepReader, TheLengthUnitIsNotSaidAndTheOtherTwoAre)
{
    BrepElement test("",
                     "<Unit LengthUnit='kUnitType_Inch' DisplayAngleUnit='kUnitType_Degree' "
                     "DisplayLengthUnit='kUnitType_Foot'/>");
    EXPECT_EQ(UnitOf(test.Brep(), &IUnit::LengthUnit), std::nullopt);
    EXPECT_EQ(UnitOf(test.Brep(), &IUnit::DisplayAngleUnit), kUnitType_Degree);
    EXPECT_EQ(UnitOf(test.Brep(), &IUnit::DisplayLengthUnit), kUnitType_Foot);
}

char const* const kOlder =
    "<UnitAndTolerance LengthUnit='kUnitType_Inch' AngularTolerance='0.1' LinearTolerance='0.2' ParamTolerance='0.3'/>";
char const* const kUnit =
    "<Unit LengthUnit='kUnitType_Meter' DisplayAngleUnit='kUnitType_Degree' DisplayLengthUnit='kUnitType_Foot'/>";

TEST(BrepReader, TheOlderUnitsAloneShowLengthsInTheirUnit)
{
    BrepElement test("", kOlder);
    EXPECT_EQ(UnitOf(test.Brep(), &IUnit::DisplayAngleUnit), kUnitType_Unknown);
    EXPECT_EQ(UnitOf(test.Brep(), &IUnit::DisplayLengthUnit), kUnitType_Inch);
    EXPECT_EQ(test.Brep().AngularTolerance(), 0.1);
    EXPECT_EQ(test.Brep().LinearTolerance(), 0.2);
    EXPECT_EQ(test.Brep().ParamTolerance(), 0.3);
}

TEST(BrepReader, AUnitBeatsTheOlderFormWhereverItStands)
{
    for (std::string const& children : {std::string(kOlder) + kUnit, std::string(kUnit) + kOlder})
    {
        BrepElement test("", children);
        EXPECT_EQ(UnitOf(test.Brep(), &IUnit::DisplayLengthUnit), kUnitType_Foot) << children;
        EXPECT_EQ(test.Brep().AngularTolerance(), -1.0) << children;
    }
}

TEST(BrepReader, UnitAndToleranceInAnotherCaseLeaveTheOlderForm)
{
    for (char const* const children : {"<unit/>", "<tolerance/>", "<UNITANDTOLERANCE/>"})
    {
        BrepElement test("", std::string(children) + kOlder);
        EXPECT_EQ(UnitOf(test.Brep(), &IUnit::DisplayLengthUnit), kUnitType_Inch) << children;
        EXPECT_EQ(test.Brep().ParamTolerance(), 0.3) << children;
    }
}

TEST(BrepReader, AToleranceBeatsTheOlderFormToo)
{
    BrepElement test("", std::string(kOlder) + "<Tolerance AngularTolerance='5' LinearTolerance='6'/>");
    EXPECT_EQ(test.Brep().AngularTolerance(), 5.0);
    EXPECT_EQ(test.Brep().LinearTolerance(), 6.0);
    EXPECT_EQ(test.Brep().ParamTolerance(), -1.0);
    EXPECT_EQ(UnitOf(test.Brep(), &IUnit::DisplayLengthUnit), kUnitType_Unknown);
}

TEST(BrepReader, OfTheOlderFormOnlyTheFirstCounts)
{
    BrepElement test("", std::string(kOlder) + "<UnitAndTolerance LengthUnit='kUnitType_Meter'/>");
    EXPECT_EQ(UnitOf(test.Brep(), &IUnit::DisplayLengthUnit), kUnitType_Inch);
}

TEST(BrepReader, AToleranceThatIsNotAboveZeroIsNone)
{
    for (char const* const text : {"0", "-1", "-0.5", "0.0"})
    {
        for (std::string const& element : {std::string("Tolerance"), std::string("UnitAndTolerance")})
        {
            BrepElement test("", "<" + element + " AngularTolerance='" + text + "' LinearTolerance='" + text +
                                     "' ParamTolerance='" + text + "'/>");
            EXPECT_EQ(test.Brep().AngularTolerance(), -1.0) << element << text;
            EXPECT_EQ(test.Brep().LinearTolerance(), -1.0) << element << text;
            EXPECT_EQ(test.Brep().ParamTolerance(), -1.0) << element << text;
        }
    }
}

TEST(BrepReader, StylesAndNetStylesAddUp)
{
    BrepElement test("",
                     "<Styles><StyleRef ID='a'/></Styles><NetStyles><StyleRef ID='n'/></NetStyles>"
                     "<Styles><StyleRef ID='b'/><StyleRef ID='a'/></Styles><styles><StyleRef ID='x'/></styles>");
    EXPECT_THAT(Ids(test.Brep().Styles()), ElementsAre("a", "b"));
    EXPECT_THAT(Ids(test.Brep().NetStyles()), ElementsAre("n"));
}

TEST(BrepReader, FacesAndEdgesHaveStylesByTheirDataIds)
{
    BrepElement test(
        "",
        "<Face ID='f'><Styles><StyleRef ID='a'/><StyleRef ID=''/><StyleRef/><Other ID='x'/></Styles></Face>"
        "<Edge ID='e'><styles><StyleRef ID='b'/></styles><Styles><StyleRef ID='c'/></Styles></Edge>"
        "<Face ID='none'/><Face ID='empty'><Styles/></Face>");
    SubEntityToStylesMap const& map = *test.Brep().StylesMap();
    IdSet styles;
    EXPECT_EQ(map.Size(), 3U);
    ASSERT_EQ(map.Styles("f", styles), kIsValueSpecified_Yes);
    EXPECT_THAT(Ids(styles), ElementsAre("a"));
    ASSERT_EQ(map.Styles("e", styles), kIsValueSpecified_Yes);
    EXPECT_THAT(Ids(styles), ElementsAre("c"));
    EXPECT_EQ(map.Styles("none", styles), kIsValueSpecified_No);
    ASSERT_EQ(map.Styles("empty", styles), kIsValueSpecified_Yes);
    EXPECT_THAT(Ids(styles), IsEmpty());
}

TEST(BrepReader, OfTwoStylesOfAFaceTheLastCounts)
{
    BrepElement test("",
                     "<Face ID='f'><Styles><StyleRef ID='a'/></Styles><Styles><StyleRef ID='b'/></Styles></Face>"
                     "<Edge ID='f'><Styles><StyleRef ID='c'/></Styles></Edge>");
    IdSet styles;
    EXPECT_EQ(test.Brep().StylesMap()->Size(), 1U);
    ASSERT_EQ(test.Brep().StylesMap()->Styles("f", styles), kIsValueSpecified_Yes);
    EXPECT_THAT(Ids(styles), ElementsAre("c"));
}

TEST(BrepReader, TheTransformIsTheLastAndTheIdentityIsNull)
{
    EXPECT_EQ(BrepElement("").Brep().Transform(), nullptr);
    EXPECT_EQ(BrepElement("", "<Transform/>").Brep().Transform(), nullptr);
    EXPECT_EQ(BrepElement("", "<Transform>1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1</Transform>").Brep().Transform(), nullptr);
    BrepElement test("", "<Transform>1 0 0 5 0 1 0 0 0 0 1 0 0 0 0 1</Transform>");
    ASSERT_TRUE(test.Brep().Transform());
    EXPECT_EQ(test.Brep().Transform()->Elements()[3], 5.0);
    BrepElement two("",
                    "<Transform>1 0 0 5 0 1 0 0 0 0 1 0 0 0 0 1</Transform>"
                    "<Transform>1 0 0 6 0 1 0 7 0 0 1 0 0 0 0 1</Transform>");
    ASSERT_TRUE(two.Brep().Transform());
    EXPECT_EQ(two.Brep().Transform()->Elements()[3], 6.0);
    EXPECT_EQ(two.Brep().Transform()->Elements()[7], 7.0);
    BrepElement undone("",
                       "<Transform>1 0 0 5 0 1 0 0 0 0 1 0 0 0 0 1</Transform>"
                       "<Transform>1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1</Transform>");
    EXPECT_EQ(undone.Brep().Transform(), nullptr);
}

TEST(BrepReader, EveryExtensionDataAndTheLastChangeKeyAreKept)
{
    BrepElement test("VersionPersistentId='v7'",
                     "<ExtensionData TypeId='a' Content='1'/><ExtensionData TypeId='b' Content='2'/>"
                     "<ChangeKey>first</ChangeKey><ChangeKey>last</ChangeKey>");
    ExtensionDataContent content;
    EXPECT_EQ(test.Brep().ExtensionDataByTypeId("a", content), kIsValueSpecified_Yes);
    EXPECT_EQ(test.Brep().ExtensionDataByTypeId("b", content), kIsValueSpecified_Yes);
    UTF8String key;
    ASSERT_EQ(test.Brep().ChangeKey(kSnapshotVersion_Current, key), kIsValueSpecified_Yes);
    EXPECT_EQ(Text(key), "last");
    UTF8String version;
    ASSERT_EQ(test.Brep().VersionPersistentId(version), kIsValueSpecified_Yes);
    EXPECT_EQ(Text(version), "v7");
    EXPECT_EQ(Text(dynamic_cast<GMKBrep&>(test.Brep()).VersionPersistentIdText()), "v7");
}

TEST(BrepReader, TwoElementsOfOneIdGiveOneObjectTheFirst)
{
    TestScene scene(
        "<Scene><SatInfo Path='s.sab'/><IPart ID='p' Label=''><ChildSet><IBrep ID='b' Label='first'/>"
        "<IBrep ID='b' Label='second'/></ChildSet></IPart></Scene>");
    scene.WithFile("s.sab", BoxStore()).Begin();
    EXPECT_EQ(Text(scene.Get<IBrep>("b").Label()), "first");
    EXPECT_THAT(scene.ChildIds("p"), ElementsAre("b", "b"));
}

// The second object would end the body that the first one has.
TEST(BrepReader, ASecondElementThatSaysOtherThingsChangesNothing)
{
    TestScene scene(
        "<Scene><SatInfo Path='s.sab'/><IPart ID='p' Label=''><ChildSet><IBrep ID='b' Label='first' Visibility='1'/>"
        "<IGeometricSet ID='g'><ChildSet><IBrep ID='b' Label='second' Type='kProducerGeometryType_Curve'"
        " NetVisibility='1' VersionPersistentId='v'><ChangeKey>k</ChangeKey><Styles><StyleRef ID='s'/></Styles>"
        "<Transform>1 0 0 5 0 1 0 0 0 0 1 0 0 0 0 1</Transform><Tolerance LinearTolerance='1'/></IBrep></ChildSet>"
        "</IGeometricSet></ChildSet></IPart></Scene>");
    scene.WithFile("s.sab", BoxStore()).Begin();
    IBrep const& brep = scene.Get<IBrep>("b");
    EXPECT_EQ(Text(brep.Label()), "first");
    EXPECT_TRUE(brep.IsVisible());
    EXPECT_FALSE(brep.IsNetVisible());
    EXPECT_EQ(brep.SrcGeomType(), IBrep::kProducerGeometryType_BrepSolid);
    UTF8String text;
    EXPECT_EQ(brep.VersionPersistentId(text), kIsValueSpecified_No);
    EXPECT_EQ(brep.ChangeKey(kSnapshotVersion_Current, text), kIsValueSpecified_No);
    EXPECT_TRUE(brep.Styles().IsEmpty());
    EXPECT_EQ(brep.Transform(), nullptr);
    EXPECT_EQ(brep.LinearTolerance(), -1.0);
    EXPECT_TRUE(brep.Body());
    EXPECT_EQ(scene.Get<IGeometricSet>("g").ChildCount(), 1U) << "both lists have it";
    scene.Producer().Dispose("b");
    EXPECT_FALSE(scene.Has("b"));
}

// An object of another kind has the id; the element has its persistent ids taken out of the table all the same.
TEST(BrepReader, PersistentIdsAreHandedOutAlsoWhereTheIdIsTaken)
{
    ReadElement reading;
    SubObjectPersistentIds& table = reading.Index().subObjectPersistentIds;
    table["b"] = new EditableDataIdToPersistentIdMap;
    table["other"] = new EditableDataIdToPersistentIdMap;
    ASSERT_TRUE(ReadAndRegister<XMLPoint>(&reading.Producer(), reading.Parse("<IPoint ID='b'/>")));
    IObject const* const point = reading.Producer().Load("b");
    UTF8String id;
    EXPECT_TRUE(ReadBrep(&reading.Producer(), reading.Parse("<IBrep ID='b'/>"), reading.Index().bodyEntities, id));
    EXPECT_EQ(Text(id), "b");
    EXPECT_EQ(reading.Producer().Load("b"), point) << "no body was made";
    ASSERT_EQ(table.count("b"), 1U) << "the entry stays, without its ids";
    EXPECT_EQ(table["b"], nullptr);
    EXPECT_NE(table["other"], nullptr);
}

TEST(BrepReader, BodiesAreChildrenOfPartsAssembliesSetsAndOverrides)
{
    TestScene scene(
        "<Scene><IPart ID='p' Label=''><ChildSet><IBrep ID='b1'/><IGeometricSet ID='g'><ChildSet><IBrep ID='b2'/>"
        "</ChildSet></IGeometricSet><IExtensionGeometry ID='x'><ChildSet><IBrep ID='b3'/></ChildSet>"
        "</IExtensionGeometry></ChildSet></IPart><IAssembly ID='a' Label=''><ChildSet><IBrep ID='b4'/>"
        "<IAssemblyFeatureOverride ID='o'><ChildSet><IBrep ID='b5'/></ChildSet></IAssemblyFeatureOverride>"
        "</ChildSet></IAssembly></Scene>");
    scene.Begin();
    for (char const* const id : {"b1", "b2", "b3", "b4", "b5"})
        EXPECT_TRUE(scene.Has(id)) << id;
    EXPECT_THAT(scene.ChildIds("p"), ElementsAre("b1", "g", "x"));
    EXPECT_THAT(scene.ChildIds("a"), ElementsAre("b4", "o"));
}

TEST(BrepReader, AnElementWithoutIdHasTheEmptyOne)
{
    TestScene scene("<Scene><IPart ID='p' Label=''><ChildSet><IBrep Label='x'/></ChildSet></IPart></Scene>");
    scene.Begin();
    EXPECT_EQ(Text(scene.Get<IBrep>("").Label()), "x");
}

TEST(BrepReader, PropertiesReachABody)
{
    TestScene scene("<Scene><IUniverse/><IBrep ID='b'/></Scene>");
    scene.WithFile("scene.kvrproperty", "<P><Property ID='p1' ObjectID='b' Name='n' Value='v'/></P>").Begin();
    EXPECT_THAT(Ids(scene.Get<IBrep>("b").PropertyIds()), ElementsAre("p1"));
}

TEST(BrepReader, ADetachedBodyIsTheHostsAlsoAfterTheEnd)
{
    BrepElement test("");
    auto& brep = dynamic_cast<DetachableGMKBrep&>(test.Brep());
    EXPECT_FALSE(brep.IsBodyDetached());
    std::unique_ptr<BODY> const body(brep.DetachBody());
    ASSERT_TRUE(body);
    EXPECT_TRUE(brep.IsBodyDetached());
    EXPECT_EQ(brep.Body(), nullptr);
    EXPECT_EQ(brep.DetachGMKBody(), nullptr);
    test.scene.Producer().EndProcess();
    EXPECT_EQ(FactsOf(body->Shape()).faces, 6);
}

// The bodies of the first reading may be gone with their objects.
TEST(BrepReader, ASecondReadingRestoresBodiesOfItsOwn)
{
    BrepElement test("");
    test.scene.Producer().Dispose("b");
    test.scene.Begin();
    ASSERT_TRUE(test.Brep().Body());
    EXPECT_EQ(FactsOf(test.Brep().Body()->Shape()).faces, 6);
    test.scene.WithPrefix("second").Begin();
    ASSERT_TRUE(test.Brep("second1").Body());
    EXPECT_NE(test.Brep("second1").Body(), test.Brep().Body());
}

}  // namespace

}  // namespace KVR::Test

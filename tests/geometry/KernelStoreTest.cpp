#include "geometry/KernelStore.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <TopoDS_Shape.hxx>
#include <vector>

#include "framework/kernel/curve.h"
#include "framework/kernel/entity.h"
#include "framework/kernel/global_data.h"
#include "framework/kernel/gmk_array.h"
#include "framework/kernel/history_stream.h"
#include "producer/XMLProducerImpl.h"
#include "tests/support/KernelBytes.h"
#include "tests/support/ResidentMemory.h"
#include "tests/support/SanitizedBuild.h"
#include "tests/support/Shapes.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;
using Entities = std::vector<std::unique_ptr<ENTITY>>;

template <class Entity>
std::unique_ptr<Entity> Named(TopoDS_Shape const& shape, char const* dataId)
{
    auto entity = std::make_unique<Entity>(shape);
    entity->AddDataId(dataId);
    return entity;
}

Entities OneBox(char const* dataId = "b", double size = 1)
{
    Entities entities;
    entities.push_back(Named<BODY>(BoxShape(size, size, size), dataId));
    return entities;
}

double VolumeOf(IBrep const& brep)
{
    return brep.Body() ? FactsOf(brep.Body()->Shape()).volume : -1.0;
}

bool HasBody(TestScene& scene, char const* id = "b")
{
    return scene.Get<IBrep>(id).Body() != nullptr;
}

std::string SceneOf(std::string const& path, std::string const& rest = "<IBrep ID='b'/>")
{
    return "<Scene><SatInfo Path='" + path + "'/>" + rest + "</Scene>";
}

TEST(KernelStores, TheTwoBinaryExtensionsCountInAnyCaseAndAllOthersAreText)
{
    std::string const binary = StoreBytes(OneBox(), false);
    std::string const text = StoreBytes(OneBox(), true);
    for (char const* const name : {"s.sab", "s.SAB", "s.gkb", "s.GkB"})
    {
        EXPECT_TRUE(HasBody(TestScene(SceneOf(name)).WithFile(name, binary).Begin())) << name;
        EXPECT_FALSE(HasBody(TestScene(SceneOf(name)).WithFile(name, text).Begin())) << name;
    }
    for (char const* const name : {"s.sat", "s", "s.sab.txt", "sab", "s.gkbx"})
    {
        EXPECT_TRUE(HasBody(TestScene(SceneOf(name)).WithFile(name, text).Begin())) << name;
        EXPECT_FALSE(HasBody(TestScene(SceneOf(name)).WithFile(name, binary).Begin())) << name;
    }
}

TEST(KernelStores, AnAbsolutePathIsAppendedToTheScenesFolder)
{
    TempFolder elsewhere;
    elsewhere.Write("s.sab", StoreBytes(OneBox(), false));
    TestScene outside(SceneOf(elsewhere.NarrowPathOf("s.sab"), "<IBrep ID='b'/><IPart ID='p' Label=''/>"));
    EXPECT_FALSE(HasBody(outside.Begin()));
    EXPECT_TRUE(outside.Has("p"));
    TestScene below(SceneOf("/sub/s.sab"));
    EXPECT_TRUE(HasBody(below.WithFile("sub/s.sab", StoreBytes(OneBox(), false)).Begin()));
}

TEST(KernelStores, AnEmptyOrAbsentPathAndAMissingFileArePassedOver)
{
    for (char const* const element : {"<SatInfo Path=''/>", "<SatInfo/>", "<SatInfo Path='none.sab'/>"})
    {
        TestScene scene("<Scene>" + std::string(element) + "<SatInfo Path='s.sab'/><IBrep ID='b'/></Scene>");
        EXPECT_TRUE(HasBody(scene.WithFile("s.sab", StoreBytes(OneBox(), false)).Begin())) << element;
    }
}

TEST(KernelStores, TheElementMayStandBehindTheObjectsThatNeedIt)
{
    TestScene scene("<Scene><IBrep ID='b'/><SatInfo Path='s.sab'/></Scene>");
    EXPECT_TRUE(HasBody(scene.WithFile("s.sab", StoreBytes(OneBox(), false)).Begin()));
}

TEST(KernelStores, OfARepeatedDataIdTheFirstStays)
{
    Entities entities = OneBox("b", 1);
    entities.push_back(Named<BODY>(BoxShape(2, 2, 2), "b"));
    TestScene scene("<Scene><SatInfo Path='s.sab'/><SatInfo Path='t.sat'/><IBrep ID='b'/><IBrep ID='c'/></Scene>");
    Entities second = OneBox("b", 3);
    second.push_back(Named<BODY>(BoxShape(4, 4, 4), "c"));
    scene.WithFile("s.sab", StoreBytes(entities, false)).WithFile("t.sat", StoreBytes(second, true)).Begin();
    EXPECT_NEAR(VolumeOf(scene.Get<IBrep>("b")), 1.0, 1e-9);
    EXPECT_NEAR(VolumeOf(scene.Get<IBrep>("c")), 64.0, 1e-9);
}

TEST(KernelStores, OneStoreNamedTwiceIsRestoredTwiceAndTheFirstCounts)
{
    TestScene scene("<Scene><SatInfo Path='s.sab'/><SatInfo Path='s.sab'/><IBrep ID='b'/></Scene>");
    EXPECT_TRUE(HasBody(scene.WithFile("s.sab", StoreBytes(OneBox(), false)).Begin()));

    TempFolder folder;
    folder.Write("s.sab", StoreBytes(OneBox(), false));
    UTF16String const scenePath = folder.PathOf("scene.xml");
    XMLProducerImpl producer(UTF16String(), nullptr);
    CurveEntities curves;
    BodyEntities bodies;
    ASSERT_TRUE(RestoreKernelStore({scenePath, producer}, L"s.sab", curves, bodies));
    ENTITY const* const first = bodies.at("b");
    ASSERT_TRUE(RestoreKernelStore({scenePath, producer}, L"s.sab", curves, bodies));
    EXPECT_EQ(bodies.size(), 1U);
    EXPECT_EQ(bodies.at("b"), first);
    EXPECT_EQ(producer.GetHistoryStream()->EntityCount(), 2U) << "the second one was restored all the same";
}

TEST(KernelStores, ABodyAndAnEdgeMayShareADataId)
{
    Entities entities = OneBox("x");
    entities.push_back(Named<EDGE>(ArcEdge(), "x"));
    TestScene scene(SceneOf("s.sab", "<IBrep ID='x'/><ICurve ID='c'><GMKEntity EntityId='x'/></ICurve>"));
    scene.WithFile("s.sab", StoreBytes(entities, false)).Begin();
    EXPECT_TRUE(HasBody(scene, "x"));
    EXPECT_EQ(scene.Get<ICurve>("c").KernelCurves().count(), 1);
}

TEST(KernelStores, OtherEntitiesAndThoseWithoutDataIdArePassedOver)
{
    BODY const box(BoxShape(1, 1, 1));
    Entities entities;
    entities.push_back(Named<FACE>(box.FaceList()[0]->Shape(), "f"));
    entities.push_back(std::make_unique<BODY>(BoxShape(1, 1, 1)));
    entities.push_back(std::make_unique<EDGE>(ArcEdge()));
    entities.push_back(Named<BODY>(BoxShape(1, 1, 1), "b"));
    TestScene scene(SceneOf("s.sab", "<IBrep ID='f'/><IBrep ID=''/><IBrep ID='b'/>"));
    scene.WithFile("s.sab", StoreBytes(entities, false)).Begin();
    EXPECT_FALSE(HasBody(scene, "f"));
    EXPECT_FALSE(HasBody(scene, ""));
    EXPECT_TRUE(HasBody(scene, "b"));
}

TEST(KernelStores, AnEmptyStoreIsNoFailure)
{
    TestScene scene(SceneOf("s.sab"));
    EXPECT_FALSE(HasBody(scene.WithFile("s.sab", StoreBytes({}, false)).Begin()));
}

TEST(KernelStores, EveryKindOfShapeComesThroughInBothForms)
{
    std::vector<NamedShape> const shapes = AllShapes();
    for (bool const isText : {false, true})
    {
        Entities entities;
        std::string breps;
        for (NamedShape const& shape : shapes)
        {
            entities.push_back(Named<BODY>(*shape.shape, shape.name.c_str()));
            breps += "<IBrep ID='" + shape.name + "'/>";
        }
        TestScene scene(SceneOf(isText ? "s.sat" : "s.sab", breps));
        scene.WithFile(isText ? "s.sat" : "s.sab", StoreBytes(entities, isText)).Begin();
        for (NamedShape const& shape : shapes)
            ExpectEqualFacts(FactsOf(scene.Get<IBrep>(shape.name.c_str()).Body()->Shape()), FactsOf(*shape.shape),
                             shape.name);
    }
}

TEST(KernelStores, FiveHundredBodiesComeThrough)
{
    Entities entities;
    std::string breps;
    for (int i = 1; i <= 500; ++i)
    {
        std::string const id = "b" + std::to_string(i);
        entities.push_back(Named<BODY>(BoxShape(1, 1, i), id.c_str()));
        breps += "<IBrep ID='" + id + "'/>";
    }
    TestScene scene(SceneOf("s.gkb", breps));
    scene.WithFile("s.gkb", StoreBytes(entities, false)).Begin();
    for (int i = 1; i <= 500; ++i)
        EXPECT_NEAR(VolumeOf(scene.Get<IBrep>(("b" + std::to_string(i)).c_str())), i, 1e-9 * i);
}

TEST(KernelStores, OrdinalsOfFacesAndEdgesCountAlsoThoseWithoutIds)
{
    BODY body(BoxShape(1, 2, 3));
    body.AddFaceDataId(1, "first");
    body.AddFaceDataId(1, "last of face 1");
    body.AddFaceDataId(4, "face 4");
    body.AddFaceDataId(5, "face 4");
    body.AddEdgeDataId(11, "edge 11");
    DataIdIndex index;
    std::uint32_t counter = 0;
    BuildFaceDataIdIndex(&body, index, counter);
    EXPECT_EQ(counter, 6U);
    BuildEdgeDataIdIndex(&body, index, counter);
    EXPECT_EQ(counter, 18U);
    BuildFaceDataIdIndex(nullptr, index, counter);
    EXPECT_EQ(counter, 18U);
    EXPECT_THAT(index, ElementsAre(testing::Pair(UTF8String("edge 11"), 17U), testing::Pair(UTF8String("face 4"), 4U),
                                   testing::Pair(UTF8String("last of face 1"), 1U)));
}

// Keeps what it is told of each event.
class EventNotes final : public EventManager
{
public:
    struct Note
    {
        int type;
        int code;
        std::string fileName;
        ComponentRoleEnum reporter;
    };
    void PostEvent(Event* event) const override
    {
        auto const& carrier = dynamic_cast<ExceptionEvent const&>(*event);
        auto const& exception = dynamic_cast<FileException const&>(carrier.CarriedException());
        ComponentRoleEnum reporter = kComponentRole_Unknown;
        exception.Reporter(reporter);
        notes.push_back({carrier.Type(), exception.ErrorCode(), Text(exception.FileName()), reporter});
    }
    mutable std::vector<Note> notes;
};

std::string InsecureStore()
{
    std::string bytes = StoreBytes(OneBox(), false);
    bytes[16] = static_cast<char>(bytes[16] ^ 1);
    return bytes;
}

TEST(KernelStores, AnInsecureStoreIsReportedAndNotRestored)
{
    EventNotes events;
    TestScene scene(SceneOf("sub/../s.sab"));
    scene.WithFile("s.sab", InsecureStore()).WithFile("sub/x", "").Begin(&events);
    EXPECT_FALSE(HasBody(scene));
    ASSERT_EQ(events.notes.size(), 1U);
    EXPECT_EQ(events.notes[0].type, 0);
    EXPECT_EQ(events.notes[0].code, 16);
    EXPECT_EQ(events.notes[0].fileName, "sub/../s.sab");
    EXPECT_EQ(events.notes[0].reporter, 2);
}

TEST(KernelStores, AnInsecureStoreIsRestoredAndReportedWhenTheHostWantsIt)
{
    EventNotes events;
    TestScene scene(SceneOf("s.sab"));
    scene.Options().SetWantRestoreInsecureGMKFiles(true);
    scene.WithFile("s.sab", InsecureStore()).Begin(&events);
    EXPECT_TRUE(HasBody(scene));
    ASSERT_EQ(events.notes.size(), 1U);
    EXPECT_EQ(events.notes[0].type, 0);
    EXPECT_EQ(events.notes[0].code, 15);
    EXPECT_EQ(events.notes[0].reporter, 2);
}

TEST(KernelStores, WithoutAnEventManagerNothingIsReported)
{
    TestScene refused(SceneOf("s.sab"));
    EXPECT_FALSE(HasBody(refused.WithFile("s.sab", InsecureStore()).Begin()));
    TestScene allowed(SceneOf("s.sab"));
    allowed.Options().SetWantRestoreInsecureGMKFiles(true);
    EXPECT_TRUE(HasBody(allowed.WithFile("s.sab", InsecureStore()).Begin()));
}

TEST(KernelStores, AGoodStoreAndADamagedHeadAreNotReported)
{
    EventNotes events;
    TestScene(SceneOf("s.sab")).WithFile("s.sab", StoreBytes(OneBox(), false)).Begin(&events);
    TestScene(SceneOf("s.sab")).WithFile("s.sab", "no store").Begin(&events);
    EXPECT_TRUE(events.notes.empty());
}

TEST(PersistentIds, TheElementsOwnCountWithoutASideFile)
{
    TestScene scene(
        "<Scene><IBrep ID='b'><SubObjectPersistentIds><SubObject DataId='f' PersistentId='p'/>"
        "</SubObjectPersistentIds></IBrep></Scene>");
    UTF8String id;
    ASSERT_EQ(scene.Begin().Get<IBrep>("b").PersistentIDsMap()->PersistentId("f", id), kIsValueSpecified_Yes);
    EXPECT_EQ(Text(id), "p");
}

constexpr char kIdFile[] =
    "<I><SubObjectPersistentIds ID='b'><SubObject DataId='f' PersistentId='file'/></SubObjectPersistentIds></I>";
constexpr char kWithIdFile[] = "<SubObjectPersistentIdInfo GenerateSubObjectPersistentId='True' Path='i.xml'/>";

TEST(PersistentIds, ASideFileTakesOverForAllObjects)
{
    std::string const own =
        "<SubObjectPersistentIds><SubObject DataId='f' PersistentId='own'/></SubObjectPersistentIds>";
    TestScene scene("<Scene>" + std::string(kWithIdFile) + "<IBrep ID='b'>" + own + "</IBrep><IBrep ID='c'>" + own +
                    "</IBrep></Scene>");
    scene.WithFile("i.xml", kIdFile).Begin();
    UTF8String id;
    ASSERT_EQ(scene.Get<IBrep>("b").PersistentIDsMap()->PersistentId("f", id), kIsValueSpecified_Yes);
    EXPECT_EQ(Text(id), "file");
    EXPECT_EQ(scene.Get<IBrep>("c").PersistentIDsMap()->Size(), 0U);
}

TEST(PersistentIds, TheyAreHandedOutOnceAndByTheWrittenId)
{
    TestScene scene("<Scene>" + std::string(kWithIdFile) +
                    "<IPart ID='p' Label=''><ChildSet><IBrep ID='b'/><IBrep ID='b'/></ChildSet></IPart></Scene>");
    scene.WithFile("i.xml", kIdFile).WithPrefix("n").Begin();
    UTF8String id;
    ASSERT_EQ(scene.Get<IBrep>("n2").PersistentIDsMap()->PersistentId("f", id), kIsValueSpecified_Yes);
    EXPECT_EQ(Text(id), "file");
}

TEST(KernelCurves, AnEdgeBecomesACurveWithItsEnds)
{
    Entities entities;
    entities.push_back(Named<EDGE>(ArcEdge(), "e"));
    TestScene scene(
        SceneOf("s.sab", "<ICurve ID='c'><GMKEntity EntityId='none'/><GMKEntity EntityId='e'/><GMKEntity/></ICurve>"));
    ICurve const& curveObject = scene.WithFile("s.sab", StoreBytes(entities, false)).Begin().Get<ICurve>("c");
    auto const curves = curveObject.KernelCurves();
    ASSERT_EQ(curves.count(), 1);
    EXPECT_NEAR(curves[0]->Last() - curves[0]->First(), 1.5707963267948966, 1e-12);
    EXPECT_EQ(curveObject.CurveDataCount(), 1U);
    EXPECT_EQ(curveObject.CurveDataAt(0), nullptr);
}

TEST(KernelCurves, UnknownIdsLeaveAnObjectWithoutCurves)
{
    Entities entities;
    entities.push_back(Named<EDGE>(ArcEdge(), "e"));
    TestScene scene(SceneOf("s.sab", "<ICurve ID='c'><GMKEntity EntityId='x'/></ICurve>"));
    ICurve const& curveObject = scene.WithFile("s.sab", StoreBytes(entities, false)).Begin().Get<ICurve>("c");
    EXPECT_TRUE(curveObject.KernelCurves().empty());
    EXPECT_EQ(curveObject.CurveDataCount(), 1U);
    EXPECT_EQ(curveObject.CurveDataAt(0), nullptr);
}

TEST(KernelCurves, UnderAPrefixAnEdgeIsFoundByItsWrittenId)
{
    Entities entities;
    entities.push_back(Named<EDGE>(ArcEdge(), "e"));
    TestScene scene(SceneOf("s.sab", "<ICurve ID='c'><GMKEntity EntityId='e'/></ICurve>"));
    scene.WithFile("s.sab", StoreBytes(entities, false)).WithPrefix("n").Begin();
    EXPECT_EQ(scene.Get<ICurve>("n1").KernelCurves().count(), 1);
}

TEST(KernelCurves, UnderAPrefixACurveIsLeftOutWhenItsWrittenIdIsTaken)
{
    Entities entities;
    entities.push_back(Named<EDGE>(ArcEdge(), "e"));
    // The part gets the id that the curve has in the document.
    TestScene scene(SceneOf("s.sab", "<IPart ID='a'/><ICurve ID='n1'><GMKEntity EntityId='e'/></ICurve>"));
    scene.WithFile("s.sab", StoreBytes(entities, false)).WithPrefix("n").Begin();
    EXPECT_NO_THROW(scene.Get<IPart>("n1"));
    EXPECT_FALSE(scene.Has("n2"));
}

TEST(KernelCurves, TwoElementsMayNameOneEdge)
{
    Entities entities;
    entities.push_back(Named<EDGE>(ArcEdge(), "e"));
    TestScene scene(SceneOf("s.sab",
                            "<ICurve ID='c'><GMKEntity EntityId='e'/><GMKEntity EntityId='e'/></ICurve>"
                            "<ICurve ID='d'><GMKEntity EntityId='e'/></ICurve>"));
    scene.WithFile("s.sab", StoreBytes(entities, false)).Begin();
    EXPECT_EQ(scene.Get<ICurve>("c").KernelCurves().count(), 2);
    scene.Producer().Dispose("c");
    ASSERT_EQ(scene.Get<ICurve>("d").KernelCurves().count(), 1);
    EXPECT_TRUE(scene.Get<ICurve>("d").KernelCurves()[0]->IsDestroyed());
    scene.Producer().EndProcess();
}

TEST(KernelCurves, ChildrenOfPartsAreReadFromTheKernelToo)
{
    Entities entities;
    entities.push_back(Named<EDGE>(ArcEdge(), "e"));
    TestScene scene(SceneOf("s.sab",
                            "<IPart ID='p' Label=''><ChildSet><ICurve ID='c'><GMKEntity EntityId='e'/></ICurve>"
                            "</ChildSet></IPart>"));
    scene.WithFile("s.sab", StoreBytes(entities, false)).Begin();
    EXPECT_THAT(scene.ChildIds("p"), ElementsAre("c"));
    EXPECT_EQ(scene.Get<ICurve>("c").KernelCurves().count(), 1);
}

// A scene with everything that may be left over: bodies and curves that no element takes.
struct Leftovers
{
    Leftovers() : scene(SceneOf("s.sab", "<IBrep ID='b'/><ICurve ID='c'><GMKEntity EntityId='e'/></ICurve>"))
    {
        Entities entities = OneBox();
        entities.push_back(Named<BODY>(BoxShape(1, 2, 3), "nobody's"));
        entities.push_back(Named<EDGE>(ArcEdge(), "e"));
        entities.push_back(Named<EDGE>(ArcEdge(), "nobody's"));
        scene.WithFile("s.sab", StoreBytes(entities, false));
    }
    TestScene scene;
};

TEST(KernelOwnership, TheHostsKernelStateIsAsItWas)
{
    HISTORY_STREAM own;
    gki_global_data().resabs = 0.5;
    {
        ActiveStreamScope const active(&own);
        Leftovers test;
        test.scene.Begin();
        EXPECT_EQ(gki_global_data().activeStream, &own);
        test.scene.Producer().Dispose("c");
        EXPECT_EQ(gki_global_data().activeStream, &own);
        test.scene.Producer().EndProcess();
        EXPECT_EQ(gki_global_data().activeStream, &own);
    }
    EXPECT_EQ(gki_global_data().resabs, 0.5);
    EXPECT_EQ(own.EntityCount(), 0U);
    gki_global_data() = GLOBAL_DATA();
}

TEST(KernelOwnership, TwoProducersAtOnceDisturbEachOtherInNothing)
{
    Leftovers first;
    Leftovers second;
    first.scene.Begin();
    second.scene.Begin();
    BODY const* const body = first.scene.Get<IBrep>("b").Body();
    second.scene.Producer().EndProcess();
    EXPECT_EQ(first.scene.Get<IBrep>("b").Body(), body);
    EXPECT_EQ(FactsOf(body->Shape()).faces, 6);
    EXPECT_FALSE(first.scene.Get<ICurve>("c").KernelCurves()[0]->IsDestroyed());
    first.scene.Producer().EndProcess();
}

TEST(KernelOwnership, ProducingAndEndingAgainAndAgainKeepsMemoryFlat)
{
    Leftovers test;
    auto const cycle = [&](int times)
    {
        for (int i = 0; i < times; ++i)
        {
            XMLProducer producer{UTF16String(UTF8String(test.scene.Path())), nullptr};
            static_cast<IProducer&>(producer).BeginProcess(IdSet(), nullptr, nullptr);
            producer.EndProcess();
        }
    };
    cycle(100);
    long const before = ResidentMemoryKB();
    cycle(1000);
    // A sanitizer keeps freed memory for a while.
    EXPECT_LT(ResidentMemoryKB(), before + (kIsSanitized ? 512 : 2) * 1024);
}

}  // namespace

}  // namespace KVR::Test

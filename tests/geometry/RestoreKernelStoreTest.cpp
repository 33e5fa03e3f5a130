// What a store leaves in the tables and in the history streams, with the restoring called by itself.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <BRepBuilderAPI_MakeEdge.hxx>
#include <BRep_Builder.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Shape.hxx>
#include <gp_Pnt.hxx>

#include "framework/kernel/curve.h"
#include "framework/kernel/entity.h"
#include "framework/kernel/gmk_array.h"
#include "framework/kernel/history_stream.h"
#include "geometry/KernelStore.h"
#include "producer/XMLProducerImpl.h"
#include "tests/support/KernelBytes.h"
#include "tests/support/Shapes.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

namespace
{

using testing::IsEmpty;
using testing::SizeIs;
using Entities = std::vector<std::unique_ptr<ENTITY>>;

class RestoreKernelStore : public testing::Test
{
protected:
    template <class Entity>
    void Add(TopoDS_Shape const& shape, char const* dataId)
    {
        m_entities.push_back(std::make_unique<Entity>(shape));
        m_entities.back()->AddDataId(dataId);
    }
    void AddBox(double size, char const* dataId) { Add<BODY>(BoxShape(size, size, size), dataId); }
    // An edge along the x axis.
    void AddEdge(double length, char const* dataId)
    {
        Add<EDGE>(BRepBuilderAPI_MakeEdge(gp_Pnt(0, 0, 0), gp_Pnt(length, 0, 0)).Edge(), dataId);
    }
    // Writes the entities added so far, and forgets them.
    void Write(char const* name)
    {
        bool const isText = std::string_view(name).ends_with(".sat");
        m_folder.Write(name, StoreBytes(m_entities, isText));
        m_entities.clear();
    }

    bool Restore(char const* name)
    {
        UTF16String const scenePath = m_folder.PathOf("scene.xml");
        return KVR::RestoreKernelStore({scenePath, m_producer}, Wide(name), m_curves, m_bodies);
    }

    HISTORY_STREAM& Stream() { return *m_producer.GetHistoryStream(); }
    // The stream that has the body of that id.
    HISTORY_STREAM* StreamOf(char const* id) { return m_bodies.at(id)->Stream(); }
    double VolumeOf(char const* id) { return FactsOf(m_bodies.at(id)->Shape()).volume; }
    double LengthOf(char const* id) { return m_curves.at(id)->Last() - m_curves.at(id)->First(); }

    TempFolder m_folder;
    XMLProducerImpl m_producer{UTF16String(), nullptr};
    BodyEntities m_bodies;
    CurveEntities m_curves;

private:
    Entities m_entities;
};

TEST_F(RestoreKernelStore, OnlyTheFirstBodyOfAnIdGoesToTheSeparateStream)
{
    AddBox(1, "b");
    AddBox(2, "b");
    AddBox(3, "c");
    Write("s.sab");
    ASSERT_TRUE(Restore("s.sab"));
    ASSERT_THAT(m_bodies, SizeIs(2));
    EXPECT_NEAR(VolumeOf("b"), 1.0, 1e-9);
    HISTORY_STREAM* const separate = StreamOf("b");
    ASSERT_NE(separate, nullptr);
    EXPECT_NE(separate, &Stream());
    EXPECT_EQ(StreamOf("c"), separate);
    EXPECT_EQ(separate->EntityCount(), 2U);
    EXPECT_EQ(Stream().EntityCount(), 3U) << "the second one stays in the producer's own";
    EXPECT_EQ(Stream().StreamCount(), 1U);
}

TEST_F(RestoreKernelStore, EachStoreWithBodiesHasASeparateStream)
{
    AddBox(1, "b");
    Write("s.sab");
    AddBox(2, "b");
    AddBox(3, "c");
    Write("t.sat");
    ASSERT_TRUE(Restore("s.sab"));
    ASSERT_TRUE(Restore("t.sat"));
    EXPECT_NEAR(VolumeOf("b"), 1.0, 1e-9);
    EXPECT_NE(StreamOf("b"), StreamOf("c"));
    EXPECT_EQ(StreamOf("b")->EntityCount(), 1U);
    EXPECT_EQ(StreamOf("c")->EntityCount(), 2U) << "its own first one of a repeated id is separate too";
    EXPECT_EQ(Stream().StreamCount(), 2U);
}

TEST_F(RestoreKernelStore, BodiesWithoutDataIdAndOtherEntitiesStayInTheProducersStream)
{
    AddBox(1, "");
    Add<FACE>(BODY(BoxShape(1, 1, 1)).FaceList()[0]->Shape(), "f");
    AddEdge(1, "e");
    Write("s.sab");
    ASSERT_TRUE(Restore("s.sab"));
    EXPECT_THAT(m_bodies, IsEmpty());
    EXPECT_THAT(m_curves, SizeIs(1));
    EXPECT_EQ(Stream().StreamCount(), 0U);
    EXPECT_EQ(Stream().EntityCount(), 3U);
}

TEST_F(RestoreKernelStore, AnEmptyStoreFilesNothingMakesNoStreamAndIsDone)
{
    for (char const* const name : {"s.sab", "s.sat"})
    {
        Write(name);
        EXPECT_TRUE(Restore(name)) << name;
    }
    EXPECT_THAT(m_bodies, IsEmpty());
    EXPECT_THAT(m_curves, IsEmpty());
    EXPECT_EQ(Stream().StreamCount(), 0U);
    EXPECT_EQ(Stream().EntityCount(), 0U);
}

TEST_F(RestoreKernelStore, AnEdgeWithoutACurveInSpaceIsPassedOver)
{
    TopoDS_Edge bare;
    BRep_Builder().MakeEdge(bare);
    Add<EDGE>(bare, "bare");
    Add<EDGE>(bare, "e");
    AddEdge(3, "e");
    Write("s.sab");
    ASSERT_TRUE(Restore("s.sab"));
    EXPECT_EQ(Stream().EntityCount(), 3U) << "it was restored";
    EXPECT_EQ(m_curves.count("bare"), 0U);
    ASSERT_EQ(m_curves.count("e"), 1U) << "the first that makes a curve counts";
    EXPECT_NEAR(LengthOf("e"), 3.0, 1e-9);
}

TEST_F(RestoreKernelStore, OfRepeatedEdgesTheFirstCountsInOneStoreAndAcrossStores)
{
    AddEdge(1, "e");
    AddEdge(2, "e");
    Write("s.sab");
    AddEdge(3, "e");
    AddEdge(4, "d");
    Write("t.sat");
    ASSERT_TRUE(Restore("s.sab"));
    ASSERT_THAT(m_curves, SizeIs(1));
    EXPECT_NEAR(LengthOf("e"), 1.0, 1e-9);
    curve const* const first = m_curves.at("e");
    ASSERT_TRUE(Restore("t.sat"));
    EXPECT_EQ(m_curves.at("e"), first);
    EXPECT_NEAR(LengthOf("e"), 1.0, 1e-9);
    EXPECT_NEAR(LengthOf("d"), 4.0, 1e-9);
}

TEST_F(RestoreKernelStore, AFileThatCouldBeOpenedIsDoneWhateverIsInIt)
{
    AddBox(1, "b");
    Write("whole.sab");
    m_folder.Write("nothing.sab", "");
    m_folder.Write("words.sab", "this is no store");
    m_folder.Write("words.sat", "this is no store");
    std::string insecure = StoreBytes({}, false);
    insecure[16] = static_cast<char>(insecure[16] ^ 1);
    m_folder.Write("insecure.sab", insecure);
    for (char const* const name : {"nothing.sab", "words.sab", "words.sat", "insecure.sab"})
    {
        EXPECT_TRUE(Restore(name)) << name;
        EXPECT_THAT(m_bodies, IsEmpty()) << name;
    }
    EXPECT_TRUE(Restore("whole.sab"));
    EXPECT_THAT(m_bodies, SizeIs(1));
}

TEST_F(RestoreKernelStore, AFileThatCannotBeOpenedIsNot)
{
    m_folder.MakeFolder("folder.sab");
    for (char const* const name : {"none.sab", "none.sat", "folder.sab", "no/such/folder.sab"})
        EXPECT_FALSE(Restore(name)) << name;
    EXPECT_THAT(m_bodies, IsEmpty());
    EXPECT_THAT(m_curves, IsEmpty());
}

class EventCount final : public EventManager
{
public:
    void PostEvent(Event*) const override { ++count; }
    mutable int count = 0;
};

TEST_F(RestoreKernelStore, AMissingStoreIsNoEventAndItsEdgesAreNotFound)
{
    AddEdge(1, "e");
    Write("there.sab");
    TempFolder const& folder = m_folder;
    folder.Write("scene.xml",
                 "<Scene><SatInfo Path='missing.sab'/><SatInfo Path='there.sab'/>"
                 "<ICurve ID='c'><GMKEntity EntityId='m'/></ICurve>"
                 "<ICurve ID='d'><GMKEntity EntityId='m'/><GMKEntity EntityId='e'/></ICurve></Scene>");
    EventCount events;
    XMLProducer producer(folder.PathOf("scene.xml"), nullptr);
    IProducer& scene = producer;
    scene.BeginProcess(IdSet(), nullptr, &events);
    EXPECT_EQ(events.count, 0);
    auto const* const missing = dynamic_cast<ICurve*>(scene.Load("c"));
    auto const* const found = dynamic_cast<ICurve*>(scene.Load("d"));
    ASSERT_TRUE(missing && found);
    EXPECT_EQ(missing->KernelCurves().count(), 0);
    EXPECT_EQ(found->KernelCurves().count(), 1);
    scene.EndProcess();
}

}  // namespace

}  // namespace KVR::Test

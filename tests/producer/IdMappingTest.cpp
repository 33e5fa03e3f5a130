#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "framework/api/IGenericObject.h"
#include "framework/xml_util/ObjectState.h"
#include "producer/XMLProducerImpl.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

namespace
{

using List = std::vector<std::string>;

class SomeObject final : public ObjectState<IGenericObject>
{
public:
    explicit SomeObject(char const* id) : ObjectState(id, UTF16String()) {}
};

std::string Mapped(XMLProducerImpl& producer, char const* id)
{
    UTF8String mapped = "untouched";
    return producer.MapObjectId(id, mapped) ? Text(mapped) : "no: " + Text(mapped);
}

std::string Queried(XMLProducerImpl const& producer, char const* id)
{
    UTF8String mapped = "untouched";
    bool const isThere = producer.QueryMappedObject(id, mapped);
    return (isThere ? "yes: " : "no: ") + Text(mapped);
}

// A file, an assembly and a part; the file's id comes between those of the other two.
constexpr char const* kScene = R"(<Scene>
    <IPart ID="p" Label=""><Styles><StyleRef ID="s5"/></Styles><ChildSet><Child ID="never met"/></ChildSet></IPart>
    <IFile ID="f" IsRoot="1"><RefFiles><R RefId="a" RefPath="x"/></RefFiles>
        <ChildSet><A ID="a"/><A ID="ghost"/></ChildSet></IFile>
    <IAssembly ID="a" Label="">
        <ExtensionData TypeId="t" OccurrencePath="[a][i]"/>
        <Styles><StyleRef ID="s1"/></Styles>
        <ChildSet>
            <IInstance ID="i"><Styles><StyleRef ID="s2"/></Styles><Child ID="p"/>
                <NetStyles><StyleRef ID="s1"/><StyleRef ID="s3"/></NetStyles></IInstance>
            <Child ID="p"/><Child ID="f"/>
            <IInstance ID="j"><Child ID="p"/></IInstance>
        </ChildSet>
        <CrossLevelAttributes><Styles><EntityStyles Path="[i][p]"><Styles><StyleRef ID="s3"/><StyleRef ID="s4"/>
            </Styles></EntityStyles></Styles></CrossLevelAttributes>
    </IAssembly></Scene>)";

}  // namespace

TEST(MapObjectId, AnswersFalseWithoutAPrefix)
{
    XMLProducerImpl producer(UTF16String(), nullptr);
    EXPECT_FALSE(producer.HasNewObjectIdPrefix());
    EXPECT_EQ(Mapped(producer, "a"), "no: untouched");
}

TEST(MapObjectId, CountsFromOneInFirstMetOrder)
{
    XMLProducerImpl producer(UTF16String(), nullptr);
    producer.SetNewObjectIdPrefix("new_");
    EXPECT_TRUE(producer.HasNewObjectIdPrefix());
    EXPECT_EQ(Mapped(producer, "b"), "new_1");
    EXPECT_EQ(Mapped(producer, "a"), "new_2");
    EXPECT_EQ(Mapped(producer, "b"), "new_1");
    EXPECT_EQ(Mapped(producer, ""), "new_3") << "the empty id is one like any other";
    EXPECT_EQ(Mapped(producer, "new_1"), "new_4");
    for (int i = 5; i <= 1200; ++i)
        ASSERT_EQ(Mapped(producer, ("id" + std::to_string(i)).c_str()), "new_" + std::to_string(i));
}

TEST(MapObjectId, GoesOnCountingUnderAFurtherPrefix)
{
    XMLProducerImpl producer(UTF16String(), nullptr);
    producer.SetNewObjectIdPrefix("P");
    EXPECT_EQ(Mapped(producer, "a"), "P1");
    producer.SetNewObjectIdPrefix("Q");
    EXPECT_EQ(Mapped(producer, "a"), "Q2") << "the map is a new one, the counter is not";
}

TEST(MapObjectId, MapsUnderAnEmptyPrefixToo)
{
    XMLProducerImpl producer(UTF16String(), nullptr);
    producer.SetNewObjectIdPrefix("");
    EXPECT_TRUE(producer.HasNewObjectIdPrefix());
    EXPECT_EQ(Mapped(producer, "a"), "1");
}

TEST(QueryMappedObject, WithoutAPrefixCopiesTheIdAndAsksTheRegistry)
{
    XMLProducerImpl producer(UTF16String(), nullptr);
    producer.objectCollector->AddObject(new SomeObject("a"));
    EXPECT_EQ(Queried(producer, "a"), "yes: a");
    EXPECT_EQ(Queried(producer, "b"), "no: b");
}

TEST(QueryMappedObject, WithAPrefixKnowsOnlyIdsThatWereMapped)
{
    XMLProducerImpl producer(UTF16String(), nullptr);
    producer.SetNewObjectIdPrefix("P");
    EXPECT_EQ(Mapped(producer, "a"), "P1");
    EXPECT_EQ(Mapped(producer, "b"), "P2");
    producer.objectCollector->AddObject(new SomeObject("P1"));
    producer.objectCollector->AddObject(new SomeObject("c"));
    EXPECT_EQ(Queried(producer, "a"), "yes: P1");
    EXPECT_EQ(Queried(producer, "b"), "no: P2") << "mapped, without an object";
    EXPECT_EQ(Queried(producer, "c"), "no: c") << "no key of the map, although there is such an object";
}

TEST(QueryMappedObject, AnswersFalseWithoutARegistry)
{
    XMLProducerImpl producer(UTF16String(), nullptr);
    producer.objectCollector->AddObject(new SomeObject("a"));
    producer.EndProcess();
    EXPECT_EQ(Queried(producer, "a"), "no: untouched");
}

// "a" comes first: a, its style s1, its instance i with s2, then the target p, in which s5 is met, then s3, j, and s4.
// Only then comes "f", whose child "a" is known, with "ghost".
TEST(IdMapping, NumbersIdsInTheOrderInWhichReadersMeetThem)
{
    TestScene scene(kScene);
    scene.WithPrefix("P").Begin();
    EXPECT_EQ(Text(scene.Get<IAssembly>("P1").Id()), "P1");
    EXPECT_EQ(Ids(scene.Get<IAssembly>("P1").Styles()), (List{"P2"}));
    EXPECT_EQ(Ids(scene.Get<IInstance>("P3").Styles()), (List{"P4"}));
    EXPECT_EQ(Text(scene.Get<IInstance>("P3").TargetId().Id()), "P5");
    EXPECT_EQ(Ids(scene.Get<IPart>("P5").Styles()), (List{"P6"}));
    EXPECT_EQ(Ids(scene.Get<IInstance>("P3").NetStyles()), (List{"P2", "P7"}));
    EXPECT_EQ(Text(scene.Get<IInstance>("P8").TargetId().Id()), "P5");
    IdSet path;
    IdSet styles;
    scene.Get<IAssembly>("P1").CrossLevelStyleAt(0, path, styles);
    EXPECT_EQ(Ids(styles), (List{"P7", "P9"}));
    EXPECT_EQ(Text(scene.Get<IFile>("P10").Id()), "P10");
    EXPECT_EQ(Text(scene.Producer().RootObjectId().Id()), "P10");
    EXPECT_EQ(scene.Get<IFile>("P10").ChildCount(), 2U) << "the child without an element counts, as P11";
    EXPECT_EQ(scene.ChildIds("P10"), (List{"P1", ""}));
    EXPECT_EQ(scene.ChildIds("P1"), (List{"P3", "P5", "P8"})) << "the file was not registered at its turn";
    EXPECT_FALSE(scene.Has("P11"));
}

TEST(IdMapping, LeavesPathsAndFileReferencesAsTheyAreWritten)
{
    TestScene scene(kScene);
    scene.WithPrefix("P").Begin();
    IdSet path;
    IdSet styles;
    scene.Get<IAssembly>("P1").CrossLevelStyleAt(0, path, styles);
    EXPECT_EQ(Ids(path), (List{"i", "p"}));
    ExtensionDataContent content;
    ASSERT_EQ(scene.Get<IAssembly>("P1").ExtensionDataByTypeId("t", content), kIsValueSpecified_Yes);
    EXPECT_EQ(Ids(content.ObjectPath()), (List{"a", "i"}));
    UTF8String id;
    UTF16String refPath;
    ASSERT_EQ(scene.Get<IFile>("P10").RefFileAt(0, id, refPath), kIsValueSpecified_Yes);
    EXPECT_EQ(Text(id), "a");
}

TEST(IdMapping, LoadOfAnOldIdYieldsNull)
{
    TestScene scene(kScene);
    scene.WithPrefix("P").Begin();
    for (char const* const id : {"a", "f", "p", "i", "j", "s1", "P"})
        EXPECT_FALSE(scene.Has(id)) << id;
    scene.Producer().Dispose("a");
    EXPECT_TRUE(scene.Has("P1")) << "Dispose takes the new id, too";
    scene.Producer().Dispose("P1");
    EXPECT_FALSE(scene.Has("P1"));
}

TEST(IdMapping, DoesNotTouchIdsWithoutAPrefix)
{
    TestScene scene(kScene);
    scene.Begin();
    EXPECT_EQ(scene.ChildIds("a"), (List{"i", "p", "j"}));
    EXPECT_EQ(Text(scene.Producer().RootObjectId().Id()), "f");
    EXPECT_FALSE(scene.Has("1"));
}

TEST(IdMapping, ASecondProducerOfTheSameFileCountsForItself)
{
    TestScene scene(kScene);
    XMLProducer other(UTF16String(UTF8String(scene.Path().c_str())), nullptr);
    scene.WithPrefix("P").Begin();
    other.SetNewObjectIdPrefix("Q");
    other.BeginProcess(IdSet(), nullptr, nullptr);
    EXPECT_EQ(Text(other.RootObjectId().Id()), "Q10");
    EXPECT_EQ(other.Load("P10"), nullptr);
}

}  // namespace KVR::Test

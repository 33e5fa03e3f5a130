#include "structure/XMLPart.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "tests/structure/Answers.h"
#include "tests/support/ReadElement.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;
using testing::ThrowsMessage;

class CountEvents : public EventManager
{
public:
    void PostEvent(Event*) const override { ++m_count; }
    int Count() const { return m_count; }

private:
    mutable int m_count = 0;
};

std::string PartText(std::string const& content)
{
    return "<IPart ID='m' Label='L'>" + content + "</IPart>";
}

}  // namespace

TEST(XMLPart, AnInstanceInItsSetIsSkippedWithoutAMessage)
{
    TestScene scene(InScene("<IPart ID='a'/>" +
                            PartText("<ChildSet><IInstance ID='i'><Child ID='a'/></IInstance>"
                                     "<IInstance ID='bad'><Child ID='nowhere'/></IInstance><Child ID='a'/></ChildSet>"
                                     "<UnitAndTolerance LengthUnit='kUnitType_Inch'/>")));
    CountEvents events;
    scene.Begin(&events);
    EXPECT_THAT(scene.ChildIds("m"), ElementsAre("a"));
    EXPECT_FALSE(scene.Has("i"));
    EXPECT_FALSE(scene.Has("bad"));
    EXPECT_EQ(AnswerOf(scene.Get<IPart>("m"), &IUnit::LengthUnit), kUnitType_Inch);
    EXPECT_EQ(events.Count(), 0);
}

TEST(XMLPart, AnInstanceInItsSetDoesNotHaveItsTargetRead)
{
    // Were the target read on demand, the reference behind it would find it.
    TestScene scene(
        InScene(PartText("<ChildSet><IInstance ID='i'><Child ID='z'/></IInstance><Child ID='z'/></ChildSet>") +
                "<IPart ID='z'/>"));
    scene.Begin();
    EXPECT_THAT(scene.ChildIds("m"), ElementsAre());
}

TEST(XMLPart, AFeatureOverrideInItsSetIsSkipped)
{
    TestScene scene(InScene("<IPart ID='a'/>" + PartText("<ChildSet><IAssemblyFeatureOverride ID='o'/><Child ID='a'/>"
                                                         "</ChildSet>")));
    scene.Begin();
    EXPECT_THAT(scene.ChildIds("m"), ElementsAre("a"));
    EXPECT_FALSE(scene.Has("o"));
}

TEST(XMLPart, CrossLevelAttributesAreSkippedAndWhatIsBehindThemIsRead)
{
    TestScene scene(
        InScene(PartText("<CrossLevelAttributes><Styles><EntityStyles Path='[a]'/></Styles>"
                         "</CrossLevelAttributes><ChangeKey>k</ChangeKey>")));
    scene.Begin();
    EXPECT_EQ(ChangeKeyOf(scene.Get<IPart>("m")), "k");
    EXPECT_TRUE(scene.Get<IPart>("m").Styles().IsEmpty());
}

TEST(XMLPart, AChildAtOrBeyondTheCountThrowsOutOfRange)
{
    TestScene scene(InScene("<IPart ID='a'/>" + PartText("<ChildSet><Child ID='a'/></ChildSet>")));
    scene.Begin();
    IPart const& one = scene.Get<IPart>("m");
    IPart const& empty = scene.Get<IPart>("a");
    ASSERT_EQ(one.ChildCount(), 1u);
    EXPECT_EQ(Text(one.ChildAt(0).Id()), "a");
    for (unsigned long long const index : {1ull, 2ull, ~0ull})
    {
        EXPECT_THAT([&] { one.ChildAt(index); }, ThrowsMessage<std::out_of_range>("invalid vector<T> subscript"));
        EXPECT_THAT([&] { empty.ChildAt(index - 1); }, ThrowsMessage<std::out_of_range>("invalid vector<T> subscript"));
    }
}

TEST(XMLPart, AChildThatTheHostDisposedOfKeepsItsId)
{
    TestScene scene(InScene("<IPart ID='a'/>" + PartText("<ChildSet><Child ID='a'/></ChildSet>")));
    scene.Begin();
    scene.Producer().Dispose("a");
    EXPECT_THAT(scene.ChildIds("m"), ElementsAre("a"));
}

TEST(XMLPart, IsReadFromAnElementAlone)
{
    ReadElement reading;
    XMLPart part(&reading.Producer());
    EXPECT_FALSE(reading.ReadWithStores(part, nullptr));
    EXPECT_FALSE(reading.ReadWithStores(part, reading.Parse("<IPart ID='p'>text</IPart>")->getFirstChild()));
    EXPECT_TRUE(part.Id().IsEmpty());
    EXPECT_TRUE(reading.ReadWithStores(part, reading.Parse("<IPart ID='p'/>")));
    EXPECT_EQ(part.Id(), "p");
}

}  // namespace KVR::Test

#include "organisation/XMLGroup.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "producer/ElementReaders.h"
#include "tests/organisation/SetScene.h"
#include "tests/structure/Answers.h"
#include "tests/support/ReadElement.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

SetScene Groups(std::string const& content, char const* prefix = nullptr)
{
    return SetScene("<GroupSet>" + content + "</GroupSet>", prefix);
}

std::vector<std::string> Items(SetScene& scene, char const* id)
{
    return Ids(scene.Get<IGroup>(id).GeometryItems());
}

}  // namespace

TEST(XMLGroup, EverythingIsRead)
{
    SetScene scene = Groups(
        "<IGroup ID='g' Label='L' VersionPersistentId='v'><GeometryItems Items='a,b'/>"
        "<ExtensionData TypeId='t' Content='c'/></IGroup>");
    IGroup& group = scene.Get<IGroup>("g");
    EXPECT_EQ(Text(group.Label()), "L");
    EXPECT_EQ(TextOf(group, &IGroup::VersionPersistentId), "v");
    EXPECT_THAT(Ids(group.GeometryItems()), ElementsAre("a", "b"));
    EXPECT_EQ(ExtensionTextOf(group, "t"), "c");
    EXPECT_THAT(Ids(scene.Owner().GroupSet()), ElementsAre("g"));
    EXPECT_TRUE(group.PropertyIds().IsEmpty());
    EXPECT_FALSE(group.IsThreadSafe());
}

TEST(XMLGroup, WithNothingItIsEmpty)
{
    SetScene scene = Groups("<IGroup ID='g' Label=''/>");
    IGroup& group = scene.Get<IGroup>("g");
    EXPECT_EQ(Text(group.Label()), "");
    EXPECT_EQ(Text(group.Description()), "");
    EXPECT_THAT(Ids(group.GeometryItems()), IsEmpty());
    EXPECT_EQ(TextOf(group, &IGroup::VersionPersistentId), std::nullopt);
}

TEST(XMLGroup, AnItemThatIsRepeatedCountsOnce)
{
    SetScene scene = Groups("<IGroup ID='g' Label=''><GeometryItems Items='a,b,a'/></IGroup>");
    EXPECT_THAT(Items(scene, "g"), ElementsAre("a", "b"));
}

TEST(XMLGroup, WithoutItemsItHasThoseOfTheGroupBeforeIt)
{
    SetScene scene = Groups(
        "<IGroup ID='g1' Label=''><GeometryItems Items='a,b'/></IGroup><IGroup ID='g2' Label=''/>"
        "<IGroup ID='g3' Label=''><GeometryItems Items='c'/></IGroup><IGroup ID='g4' Label=''/>");
    EXPECT_THAT(Items(scene, "g1"), ElementsAre("a", "b"));
    EXPECT_THAT(Items(scene, "g2"), ElementsAre("a", "b"));
    EXPECT_THAT(Items(scene, "g3"), ElementsAre("c"));
    EXPECT_THAT(Items(scene, "g4"), ElementsAre("c"));
}

TEST(XMLGroup, TheFirstWithoutItemsHasNone)
{
    SetScene scene = Groups("<IGroup ID='g1' Label=''/><IGroup ID='g2' Label=''><GeometryItems Items='a'/></IGroup>");
    EXPECT_THAT(Items(scene, "g1"), IsEmpty());
    EXPECT_THAT(Items(scene, "g2"), ElementsAre("a"));
}

TEST(XMLGroup, ItemsDoNotReachTheGroupsOfTheNextSet)
{
    SetScene scene(
        "<GroupSet><IGroup ID='g1' Label=''><GeometryItems Items='a'/></IGroup></GroupSet>"
        "<GroupSet><IGroup ID='g2' Label=''/></GroupSet>");
    EXPECT_THAT(Items(scene, "g2"), IsEmpty());
    EXPECT_THAT(Ids(scene.Owner().GroupSet()), ElementsAre("g1", "g2"));
}

TEST(XMLGroup, AnElementWithoutItemsEndsWhatWentBefore)
{
    SetScene scene = Groups(
        "<IGroup ID='g1' Label=''><GeometryItems Items='a'/></IGroup>"
        "<IGroup ID='g2' Label=''><GeometryItems/></IGroup><IGroup ID='g3' Label=''/>");
    EXPECT_THAT(Items(scene, "g2"), IsEmpty());
    EXPECT_THAT(Items(scene, "g3"), IsEmpty());
}

TEST(XMLGroup, ManyGroupsWithoutItemsHoldThoseOfTheFirstOnce)
{
    std::string xml = "<IGroup ID='g' Label=''><GeometryItems Items='a,b'/></IGroup>";
    for (int i = 0; i < 100; ++i)
        xml += "<IGroup ID='g" + std::to_string(i) + "' Label=''/>";
    SetScene scene = Groups(xml);
    EXPECT_EQ(&scene.Get<IGroup>("g").GeometryItems(), &scene.Get<IGroup>("g99").GeometryItems());
}

TEST(XMLGroup, AnItemAddedToOneOfTwoThatShareMembersIsNotTheOthers)
{
    XMLGroup first(Wide("1"), "g1", Wide(""));
    first.AddItem("a");
    XMLGroup second(Wide("2"), "g2", Wide(""));
    second.ShareItems(first);
    second.AddItem("b");
    second.AddItem("a");
    EXPECT_THAT(Ids(first.GeometryItems()), ElementsAre("a"));
    EXPECT_THAT(Ids(second.GeometryItems()), ElementsAre("a", "b"));
}

TEST(XMLGroup, TheTextOfDescriptionDoesNotReachIt)
{
    SetScene scene = Groups("<IGroup ID='g' Label='' Description='d'><Description>text</Description></IGroup>");
    EXPECT_EQ(Text(scene.Get<IGroup>("g").Description()), "");
}

TEST(XMLGroup, AnElementOfAnyNameIsAGroup)
{
    SetScene scene =
        Groups("text<Cluster ID='g' Label='L'/><!-- comment --><?ILayer ID='p'?><ILayer ID='h' Label=''/>");
    EXPECT_EQ(Text(scene.Get<IGroup>("g").Label()), "L");
    EXPECT_EQ(Text(scene.Get<IGroup>("h").Label()), "");
    EXPECT_THAT(Ids(scene.Owner().GroupSet()), ElementsAre("g", "h"));
}

TEST(XMLGroup, WithoutIdAndLabelBothAreEmpty)
{
    SetScene scene = Groups("<IGroup ID='g' Label='L'/><IGroup/>");
    EXPECT_EQ(Text(scene.Get<IGroup>("").Label()), "");
    EXPECT_THAT(Ids(scene.Owner().GroupSet()), ElementsAre("g", ""));
}

TEST(XMLGroup, ItHasNoChangeKey)
{
    SetScene scene = Groups("<IGroup ID='g' Label=''><ChangeKey>k</ChangeKey></IGroup>");
    EXPECT_EQ(ChangeKeyOf(scene.Get<IGroup>("g")), std::nullopt);
}

TEST(XMLGroup, OfTwoExtensionDataTheLastAloneCounts)
{
    SetScene scene = Groups(
        "<IGroup ID='g' Label=''><ExtensionData TypeId='t'/><ExtensionData TypeId='u' Content='2'/></IGroup>"
        "<IGroup ID='h' Label=''/>");
    EXPECT_FALSE(ExtensionOf(scene.Get<IGroup>("g"), "t"));
    EXPECT_EQ(ExtensionTextOf(scene.Get<IGroup>("g"), "u"), "2");
    EXPECT_FALSE(ExtensionOf(scene.Get<IGroup>("h"), "u")) << "it does not reach the next group";
}

TEST(XMLGroup, APersistentIdDoesNotReachTheNextGroup)
{
    SetScene scene = Groups("<IGroup ID='g' Label='' VersionPersistentId='v'/><IGroup ID='h' Label=''/>");
    EXPECT_EQ(TextOf(scene.Get<IGroup>("h"), &IGroup::VersionPersistentId), std::nullopt);
}

TEST(XMLGroup, ARepeatedIdIsReadAgainAndTheFirstIsServed)
{
    SetScene scene = Groups(
        "<IGroup ID='g' Label='1'/><IGroup ID='g' Label='2'><GeometryItems Items='a'/></IGroup><IGroup ID='h'/>");
    EXPECT_THAT(Ids(scene.Owner().GroupSet()), ElementsAre("g", "h"));
    EXPECT_EQ(Text(scene.Get<IGroup>("g").Label()), "1");
    EXPECT_THAT(Items(scene, "h"), ElementsAre("a"));
}

TEST(XMLGroup, ARepeatedIdIsToldTwice)
{
    ReadElement reading;
    std::vector<UTF8String> ids;
    ASSERT_TRUE(ReadGroupSet(
        &reading.Producer(),
        reading.Parse("<GroupSet><IGroup ID='g' Label='1'/><IGroup ID='h'/><IGroup ID='g' Label='2'/></GroupSet>"),
        ids));
    EXPECT_THAT(Texts(ids), ElementsAre("g", "h", "g"));
    EXPECT_EQ(Text(reading.Producer().Load("g")->Label()), "1");
}

TEST(XMLGroup, UnderAPrefixARepeatedOneMapsItsItems)
{
    SetScene scene = Groups(
        "<IGroup ID='g'/><IGroup ID='g'><GeometryItems Items='x,y'/></IGroup><IGroup ID='h'><GeometryItems/></IGroup>",
        "n");
    EXPECT_THAT(Ids(scene.Get<IPart>("n4").GroupSet()), ElementsAre("n5", "n8"));
    EXPECT_THAT(Items(scene, "n5"), IsEmpty());
}

TEST(XMLGroup, UnderAPrefixItsIdAndItsItemsAreMapped)
{
    SetScene scene = Groups("<IGroup ID='g' Label=''><GeometryItems Items='b,unknown'/></IGroup>", "n");
    EXPECT_THAT(Items(scene, "n5"), ElementsAre("n2", "n6"));
    EXPECT_THAT(Ids(scene.Get<IPart>("n4").GroupSet()), ElementsAre("n5"));
}

TEST(XMLGroup, ANullSetIsRefused)
{
    std::vector<UTF8String> ids;
    EXPECT_FALSE(ReadGroupSet(nullptr, nullptr, ids));
}

}  // namespace KVR::Test

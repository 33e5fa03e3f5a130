#include "organisation/XMLLOD.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "producer/ElementReaders.h"
#include "tests/organisation/SetScene.h"
#include "tests/structure/Answers.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

}  // namespace

TEST(XMLLOD, LabelAndDescriptionAreRead)
{
    SetScene scene("<LodSet><ILod ID='d' Label='L' Description='coarse'/></LodSet>");
    ILod& lod = scene.Get<ILod>("d");
    EXPECT_EQ(Text(lod.Label()), "L");
    EXPECT_EQ(Text(lod.Description()), "coarse");
    EXPECT_THAT(Ids(scene.Owner().LodSet()), ElementsAre("d"));
    EXPECT_FALSE(lod.IsThreadSafe());
    EXPECT_TRUE(lod.PropertyIds().IsEmpty());
}

TEST(XMLLOD, WithTheIdAloneEverythingElseIsEmpty)
{
    SetScene scene("<LodSet><ILod ID='d'/></LodSet>");
    EXPECT_EQ(Text(scene.Get<ILod>("d").Label()), "");
    EXPECT_EQ(Text(scene.Get<ILod>("d").Description()), "");
}

TEST(XMLLOD, WithoutAnIdItHasTheEmptyOne)
{
    SetScene scene("<LodSet><ILod Label='nameless'/></LodSet>");
    EXPECT_EQ(Text(scene.Get<ILod>("").Label()), "nameless");
}

TEST(XMLLOD, AVersionPersistentIdIsNotKept)
{
    SetScene scene("<LodSet><ILod ID='d' VersionPersistentId='v'/></LodSet>");
    EXPECT_EQ(TextOf(scene.Get<ILod>("d"), &ILod::VersionPersistentId), std::nullopt);
}

TEST(XMLLOD, ItsChildElementsAreNotRead)
{
    SetScene scene("<LodSet><ILod ID='d'><ChangeKey>k</ChangeKey><ExtensionData TypeId='t'/></ILod></LodSet>");
    EXPECT_EQ(ChangeKeyOf(scene.Get<ILod>("d")), std::nullopt);
    EXPECT_FALSE(ExtensionOf(scene.Get<ILod>("d"), "t"));
}

TEST(XMLLOD, AnElementOfAnotherNameIsSkipped)
{
    SetScene scene("<LodSet><Lod ID='x'/><ILOD ID='y'/><ILod ID='z'/></LodSet>");
    EXPECT_THAT(Ids(scene.Owner().LodSet()), ElementsAre("z"));
    EXPECT_FALSE(scene.Has("x"));
}

TEST(XMLLOD, OfTwoWithOneIdTheFirstIsTheOnlyOne)
{
    SetScene scene("<LodSet><ILod ID='d' Label='1'/><ILod ID='d' Label='2'/></LodSet>");
    EXPECT_THAT(Ids(scene.Owner().LodSet()), ElementsAre("d"));
    EXPECT_EQ(Text(scene.Get<ILod>("d").Label()), "1");
}

TEST(XMLLOD, AnOwnerWhoseSetRepeatsAKnownOneDoesNotListIt)
{
    TestScene scene(
        InScene("<IPart ID='p1'><AttributeSet><LodSet><ILod ID='d'/></LodSet></AttributeSet></IPart>"
                "<IPart ID='p2'><AttributeSet><LodSet><ILod ID='d'/></LodSet></AttributeSet></IPart>"));
    scene.Begin();
    EXPECT_THAT(Ids(scene.Get<IPart>("p1").LodSet()), ElementsAre("d"));
    EXPECT_THAT(Ids(scene.Get<IPart>("p2").LodSet()), IsEmpty());
}

TEST(XMLLOD, UnderAPrefixTheIdStaysAsWritten)
{
    SetScene scene("<LodSet><ILod ID='d'/></LodSet>", "n");
    EXPECT_TRUE(scene.Has("d"));
    EXPECT_THAT(Ids(scene.Get<IPart>("n4").LodSet()), ElementsAre("d"));
}

TEST(XMLLOD, ANullSetIsRefused)
{
    std::vector<UTF8String> ids;
    EXPECT_FALSE(ReadLodSet(nullptr, nullptr, ids));
}

}  // namespace KVR::Test

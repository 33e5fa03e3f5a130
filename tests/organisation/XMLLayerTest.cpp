#include "organisation/XMLLayer.h"

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

// A layer "l" with the content.
class LayerScene : public SetScene
{
public:
    explicit LayerScene(std::string const& content, std::string const& attributes = "", char const* prefix = nullptr)
        : SetScene("<LayerSet><ILayer ID='l' " + attributes + ">" + content + "</ILayer></LayerSet>", prefix)
    {
    }
    ILayer& Layer() { return Get<ILayer>("l"); }
    ILayer* operator->() { return &Layer(); }
};

bool ShownWith(std::string const& visibility)
{
    return LayerScene("<LayerInfo Visibility='" + visibility + "'/>")->IsVisible();
}

std::vector<std::string> Items(std::string const& text)
{
    return Ids(LayerScene("<GeometryItems Items='" + text + "'/>")->GeometryItems());
}

}  // namespace

TEST(XMLLayer, WithoutChildrenItIsShownAndEverythingElseIsEmpty)
{
    LayerScene layer("");
    EXPECT_EQ(Text(layer->Id()), "l");
    EXPECT_EQ(Text(layer->Label()), "");
    EXPECT_EQ(Text(layer->Description()), "");
    EXPECT_EQ(layer->LayerNumber(), 0);
    EXPECT_TRUE(layer->IsVisible());
    EXPECT_THAT(Ids(layer->GeometryItems()), IsEmpty());
    EXPECT_THAT(Ids(layer->Styles()), IsEmpty());
    EXPECT_EQ(ChangeKeyOf(layer.Layer()), std::nullopt);
    EXPECT_EQ(TextOf(layer.Layer(), &ILayer::VersionPersistentId), std::nullopt);
    EXPECT_TRUE(layer->PropertyIds().IsEmpty());
    EXPECT_FALSE(layer->IsThreadSafe());
}

TEST(XMLLayer, EverythingIsRead)
{
    LayerScene layer(
        "<LayerInfo ID='7' Description='hidden lines' Visibility='False'/><GeometryItems Items='a,b'/>"
        "<ChangeKey>key</ChangeKey><Styles><StyleRef ID='s1'/><StyleRef ID='s2'/></Styles>"
        "<ExtensionData TypeId='t' Content='c'/>",
        "Label='L \xC3\xB6' VersionPersistentId='v'");
    EXPECT_EQ(Text(layer->Label()), "L \xC3\xB6");
    EXPECT_EQ(TextOf(layer.Layer(), &ILayer::VersionPersistentId), "v");
    EXPECT_EQ(layer->LayerNumber(), 7);
    EXPECT_EQ(Text(layer->Description()), "hidden lines");
    EXPECT_FALSE(layer->IsVisible());
    EXPECT_THAT(Ids(layer->GeometryItems()), ElementsAre("a", "b"));
    EXPECT_EQ(ChangeKeyOf(layer.Layer()), "key");
    EXPECT_THAT(Ids(layer->Styles()), ElementsAre("s1", "s2"));
    EXPECT_EQ(ExtensionTextOf(layer.Layer(), "t"), "c");
    EXPECT_THAT(Ids(layer.Owner().LayerSet()), ElementsAre("l"));
}

TEST(XMLLayer, OnlyTheWordTrueMeansShown)
{
    EXPECT_TRUE(ShownWith("True"));
    for (char const* const text : {"False", "1", "0", "true", "TRUE", " True", "yes"})
        EXPECT_FALSE(ShownWith(text)) << text;
}

TEST(XMLLayer, WithoutVisibilityOrWithAnEmptyOneItIsShown)
{
    EXPECT_TRUE(LayerScene("<LayerInfo ID='1'/>")->IsVisible());
    EXPECT_TRUE(ShownWith(""));
}

TEST(XMLLayer, AnItemThatIsRepeatedCountsOnce)
{
    EXPECT_THAT(Items("a,b,a"), ElementsAre("a", "b"));
}

TEST(XMLLayer, BlanksAroundItemsAreNoPartOfThem)
{
    EXPECT_THAT(Items(" a,b "), ElementsAre("a", "b"));
    EXPECT_THAT(Items("a , b"), ElementsAre("a", "b"));
    EXPECT_THAT(Items("a b"), ElementsAre("a b"));
}

TEST(XMLLayer, EmptyItemsAreNone)
{
    EXPECT_THAT(Items(""), IsEmpty());
    EXPECT_THAT(Items(" "), IsEmpty());
    EXPECT_THAT(Items(",,a,"), ElementsAre("a"));
}

TEST(XMLLayer, ItemsOfAnyLengthAreTold)
{
    // Plain ones, and ones whose bytes beyond ASCII, or units, look like a comma but for some of their bits.
    for (std::string const letter : {"a", "-", "\u00ac", "\u2c2c"})
    {
        std::string text;
        std::vector<std::string> expected;
        for (std::size_t length = 1; length <= 40; ++length)
        {
            std::string item;
            for (std::size_t i = 0; i < length; ++i)
                item += letter;
            text += (length > 1 ? "," : "") + item;
            expected.push_back(item);
        }
        EXPECT_EQ(Items(text), expected) << letter;
    }
}

TEST(XMLLayer, ItemsNeedNotExist)
{
    EXPECT_THAT(Items("nothing"), ElementsAre("nothing"));
}

TEST(XMLLayer, ANumberThatIsNoneIsZero)
{
    EXPECT_EQ(LayerScene("<LayerInfo ID='seven'/>")->LayerNumber(), 0);
    EXPECT_EQ(LayerScene("<LayerInfo ID=''/>")->LayerNumber(), 0);
    EXPECT_EQ(LayerScene("<LayerInfo ID='99999999999'/>")->LayerNumber(), 0);
    EXPECT_EQ(LayerScene("<LayerInfo ID='-3'/>")->LayerNumber(), -3);
}

TEST(XMLLayer, TheElementsIdIsTheObjectsAndThatOfLayerInfoIsTheNumber)
{
    LayerScene layer("<LayerInfo ID='12'/>");
    EXPECT_EQ(Text(layer->Id()), "l");
    EXPECT_EQ(layer->LayerNumber(), 12);
    EXPECT_FALSE(layer.Has("12"));
}

TEST(XMLLayer, EachOfTheTwoElementsMayStateWhatUsuallyStandsInTheOther)
{
    LayerScene layer("<GeometryItems ID='4' Description='d' Visibility='False'/><LayerInfo Items='a'/>");
    EXPECT_EQ(layer->LayerNumber(), 4);
    EXPECT_EQ(Text(layer->Description()), "d");
    EXPECT_FALSE(layer->IsVisible());
    EXPECT_THAT(Ids(layer->GeometryItems()), ElementsAre("a"));
}

TEST(XMLLayer, OfTwoAttributesOfANameTheFirstCounts)
{
    LayerScene layer("<LayerInfo ID='1' Items='a' Visibility=''/><GeometryItems ID='2' Items='b' Visibility='0'/>");
    EXPECT_EQ(layer->LayerNumber(), 1);
    EXPECT_TRUE(layer->IsVisible());
    EXPECT_THAT(Ids(layer->GeometryItems()), ElementsAre("a"));
}

TEST(XMLLayer, DescriptionOfTheLayerElementItselfIsNotRead)
{
    LayerScene layer("<LayerInfo/>", "Description='d' Visibility='False' Items='a'");
    EXPECT_EQ(Text(layer->Description()), "");
    EXPECT_TRUE(layer->IsVisible());
    EXPECT_THAT(Ids(layer->GeometryItems()), IsEmpty());
}

TEST(XMLLayer, OfTwoExtensionDataTheLastAloneCounts)
{
    LayerScene layer("<ExtensionData TypeId='t' Content='1'/><ExtensionData TypeId='u' Content='2'/>");
    EXPECT_EQ(ExtensionTextOf(layer.Layer(), "t"), std::nullopt);
    EXPECT_EQ(ExtensionTextOf(layer.Layer(), "u"), "2");
}

TEST(XMLLayer, ExtensionDataWithoutATypeIdIsNotKept)
{
    EXPECT_FALSE(ExtensionOf(LayerScene("<ExtensionData Content='1'/>").Layer(), ""));
}

TEST(XMLLayer, AChildOfTheSetOfAnotherNameIsSkipped)
{
    SetScene scene("<LayerSet><Layer ID='x'/><ILayer ID='y'/></LayerSet>");
    EXPECT_FALSE(scene.Has("x"));
    EXPECT_THAT(Ids(scene.Owner().LayerSet()), ElementsAre("y"));
}

TEST(XMLLayer, ARepeatedIdIsReadAgainAndTheFirstIsServed)
{
    SetScene scene("<LayerSet><ILayer ID='l' Label='1'/><ILayer ID='l' Label='2'/></LayerSet>");
    EXPECT_THAT(Ids(scene.Owner().LayerSet()), ElementsAre("l"));
    EXPECT_EQ(Text(scene.Get<ILayer>("l").Label()), "1");
}

TEST(XMLLayer, ARepeatedIdIsToldTwice)
{
    ReadElement reading;
    std::vector<UTF8String> ids;
    ASSERT_TRUE(ReadLayerSet(
        &reading.Producer(),
        reading.Parse("<LayerSet><ILayer ID='l' Label='1'/><ILayer ID='m'/><ILayer ID='l' Label='2'/></LayerSet>"),
        ids));
    EXPECT_THAT(Texts(ids), ElementsAre("l", "m", "l"));
    EXPECT_EQ(Text(reading.Producer().Load("l")->Label()), "1");
}

// What the second names gets its new ids all the same.
TEST(XMLLayer, UnderAPrefixARepeatedOneMapsItsItemsAndStyles)
{
    SetScene scene(
        "<LayerSet><ILayer ID='l'/><ILayer ID='l'><GeometryItems Items='x'/><Styles><StyleRef "
        "ID='s'/></Styles></ILayer>"
        "<ILayer ID='m'/></LayerSet>",
        "n");
    EXPECT_THAT(Ids(scene.Get<IPart>("n4").LayerSet()), ElementsAre("n5", "n8"));
    EXPECT_THAT(Ids(scene.Get<ILayer>("n5").GeometryItems()), IsEmpty());
}

TEST(XMLLayer, WithoutAnIdItHasTheEmptyOne)
{
    SetScene scene("<LayerSet><ILayer Label='nameless'/></LayerSet>");
    EXPECT_EQ(Text(scene.Get<ILayer>("").Label()), "nameless");
    EXPECT_THAT(Ids(scene.Owner().LayerSet()), ElementsAre(""));
}

TEST(XMLLayer, UnderAPrefixItsIdItsItemsAndItsStylesAreMapped)
{
    // a, b, c and the owner are the first four.
    SetScene scene(
        "<LayerSet><ILayer ID='l'><LayerInfo ID='9'/><GeometryItems Items='b,unknown'/>"
        "<Styles><StyleRef ID='s'/></Styles></ILayer></LayerSet>",
        "n");
    ILayer& layer = scene.Get<ILayer>("n5");
    EXPECT_EQ(layer.LayerNumber(), 9);
    EXPECT_THAT(Ids(layer.Styles()), ElementsAre("n6"));
    EXPECT_THAT(Ids(layer.GeometryItems()), ElementsAre("n2", "n7"));
    EXPECT_THAT(Ids(scene.Get<IPart>("n4").LayerSet()), ElementsAre("n5"));
}

TEST(XMLLayer, ANullSetIsRefused)
{
    std::vector<UTF8String> ids;
    EXPECT_FALSE(ReadLayerSet(nullptr, nullptr, ids));
    EXPECT_TRUE(ids.empty());
}

}  // namespace KVR::Test

#include "organisation/XMLView.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "producer/ElementReaders.h"
#include "tests/organisation/SetScene.h"
#include "tests/structure/Answers.h"
#include "tests/support/ReadElement.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::ThrowsMessage;

constexpr char kBadIndex[] = "invalid vector<T> subscript";

// A view "v" with the attributes and content.
class ViewScene : public SetScene
{
public:
    explicit ViewScene(std::string const& content, std::string const& attributes = "", char const* prefix = nullptr)
        : SetScene("<ViewSet><IView ID='v' Label='L' " + attributes + ">" + content + "</IView></ViewSet>", prefix)
    {
    }
    IView& operator*() { return Get<IView>("v"); }
    IView* operator->() { return &**this; }
};

std::string Member(std::string const& content)
{
    return "<ViewMemberChild>" + content + "</ViewMemberChild>";
}

std::string Member(std::string const& path, std::string const& visibility)
{
    return Member("<OccurrencePath Path='" + path + "'/><EntityVisibility Visibility='" + visibility + "'/>");
}

std::string Members(std::string const& content)
{
    return "<ViewMember>" + content + "</ViewMember>";
}

// Each member as its path, with a plus when it is shown.
std::vector<std::string> Told(IView const& view)
{
    std::vector<std::string> told;
    for (unsigned long long i = 0; i < view.ViewMemberCount(); ++i)
    {
        std::string path;
        for (std::string const& id : Ids(view.OccurrencePathAt(i)))
            path += "[" + id + "]";
        told.push_back(path + (view.EntityVisibilityAt(i) ? "+" : "-"));
    }
    return told;
}

}  // namespace

TEST(XMLView, WithIdAndLabelAloneItIsActiveAndShownAndHasNoUnit)
{
    ViewScene view("");
    EXPECT_EQ(Text(view->Id()), "v");
    EXPECT_EQ(Text(view->Label()), "L");
    EXPECT_TRUE(view->IsActive());
    EXPECT_TRUE(view->IsVisible());
    EXPECT_EQ(AnswerOf(*view, &IView::LengthUnit), std::nullopt);
    EXPECT_EQ(view->ViewMemberCount(), 0U);
    EXPECT_THAT(Ids(view->CameraSet()), IsEmpty());
    EXPECT_EQ(TextOf(*view, &IView::VersionPersistentId), std::nullopt);
    EXPECT_THAT(Ids(view.Owner().ViewSet()), ElementsAre("v"));
    EXPECT_TRUE(view->PropertyIds().IsEmpty());
    EXPECT_FALSE(view->IsThreadSafe());
}

TEST(XMLView, AnyIntegerButZeroMeansShown)
{
    for (char const* const text : {"1", "2", "-1", " 1 "})
        EXPECT_TRUE(ViewScene("", std::string("Visibility='") + text + "'")->IsVisible()) << text;
    for (char const* const text : {"0", "00", "True", "true", ""})
        EXPECT_FALSE(ViewScene("", std::string("Visibility='") + text + "'")->IsVisible()) << text;
}

TEST(XMLView, AnyIntegerButZeroMeansActive)
{
    EXPECT_TRUE(ViewScene("", "IsActive='3'")->IsActive());
    EXPECT_FALSE(ViewScene("", "IsActive='0'")->IsActive());
    EXPECT_FALSE(ViewScene("", "IsActive='true'")->IsActive());
}

TEST(XMLView, AUnitSpecifiesTheLengthUnitAlsoWhenItsTextIsNone)
{
    EXPECT_EQ(AnswerOf(*ViewScene("<Unit LengthUnit='kUnitType_Foot'/>"), &IView::LengthUnit), kUnitType_Foot);
    EXPECT_EQ(AnswerOf(*ViewScene("<Unit LengthUnit='foot'/>"), &IView::LengthUnit), kUnitType_Unknown);
    EXPECT_EQ(AnswerOf(*ViewScene("<Unit/>"), &IView::LengthUnit), kUnitType_Unknown);
    EXPECT_EQ(AnswerOf(*ViewScene("<Unit LengthUnit='kUnitType_Foot'/><Unit LengthUnit='x'/>"), &IView::LengthUnit),
              kUnitType_Foot);
}

TEST(XMLView, EverythingAMemberSaysIsRead)
{
    ViewScene view(Members(Member("<OccurrencePath Path='[a][b][c]'/><EntityVisibility Visibility='1'/>"
                                  "<Styles><StyleRef ID='s1'/><StyleRef ID='s2'/></Styles><Transform>" +
                                  MoveText(5) + "</Transform>")),
                   "VersionPersistentId='version'");
    ASSERT_EQ(view->ViewMemberCount(), 1U);
    EXPECT_THAT(Ids(view->OccurrencePathAt(0)), ElementsAre("a", "b", "c"));
    EXPECT_TRUE(view->EntityVisibilityAt(0));
    EXPECT_THAT(Ids(view->EntityStylesAt(0)), ElementsAre("s1", "s2"));
    EXPECT_EQ(view->EntityTransformAt(0).Element(0, 3), 5);
    EXPECT_EQ(TextOf(*view, &IView::VersionPersistentId), "version");
}

TEST(XMLView, AMemberWithoutVisibilityIsHidden)
{
    EXPECT_THAT(Told(*ViewScene(Members(Member("<OccurrencePath Path='[a]'/>")))), ElementsAre("[a]-"));
    EXPECT_THAT(Told(*ViewScene(Members(Member("<OccurrencePath Path='[a]'/><EntityVisibility/>")))),
                ElementsAre("[a]-"));
}

TEST(XMLView, AMembersVisibilityIsAnyIntegerButZero)
{
    ViewScene view(Members(Member("[a]", "2") + Member("[b]", "0") + Member("[c]", "True")));
    EXPECT_THAT(Told(*view), ElementsAre("[a]+", "[b]-", "[c]-"));
}

TEST(XMLView, ALaterMemberOfAPathReplacesTheEarlierAndStandsWhereItStands)
{
    ViewScene view(Members(Member("[a]", "1") + Member("[b]", "1") +
                           Member("<OccurrencePath Path='[a]'/><Styles><StyleRef ID='s'/></Styles>")));
    EXPECT_THAT(Told(*view), ElementsAre("[b]+", "[a]-"));
    EXPECT_THAT(Ids(view->EntityStylesAt(1)), ElementsAre("s"));
}

TEST(XMLView, AMemberIsReplacedAsOftenAsItIsRepeated)
{
    ViewScene view(Members(Member("[a]", "1") + Member("[b]", "1") + Member("[a]", "0") + Member("[c]", "1") +
                           Member("[b]", "0") + Member("[a]", "1")));
    EXPECT_THAT(Told(*view), ElementsAre("[c]+", "[b]-", "[a]+"));
}

TEST(XMLView, PathsAreEqualWithEqualIdsInEqualOrder)
{
    ViewScene view(Members(Member("[a][b]", "1") + Member("[b][a]", "1") + Member("[a]", "1") + Member("x[a]", "0")));
    // The character in front of an id is skipped unseen, whatever it is.
    EXPECT_THAT(Told(*view), ElementsAre("[a][b]+", "[b][a]+", "[a]+", "[[a]-"));
}

TEST(XMLView, MembersWithoutAPathFoldIntoOneWithTheEmptyPath)
{
    ViewScene view(Members(Member("") + Member("[a]", "1") + Member("<EntityVisibility Visibility='1'/>") +
                           Member("<OccurrencePath/>")));
    EXPECT_THAT(Told(*view), ElementsAre("[a]+", "-"));
}

TEST(XMLView, SeveralMemberListsAddUp)
{
    ViewScene view(Members(Member("[a]", "1")) + Members(Member("[b]", "1") + Member("[a]", "0")));
    EXPECT_THAT(Told(*view), ElementsAre("[b]+", "[a]-"));
}

TEST(XMLView, OtherElementsInAMemberListAreSkipped)
{
    ViewScene view(Members("<Member/><ViewMember/>text" + Member("[a]", "1")) + Member("[b]", "1"));
    EXPECT_THAT(Told(*view), ElementsAre("[a]+"));
}

TEST(XMLView, ManyMembersWithRepeatsKeepTheOrderOfTheLast)
{
    std::string xml;
    std::vector<std::string> expected;
    for (int i = 0; i < 3000; ++i)
        xml += Member("[x][" + std::to_string(i % 1000) + "]", i < 2000 ? "0" : "1");
    for (int i = 0; i < 1000; ++i)
        expected.push_back("[x][" + std::to_string(i) + "]+");
    EXPECT_THAT(Told(*ViewScene(Members(xml))), ElementsAreArray(expected));
}

TEST(XMLView, ATransformWithoutTextOrWithABadOneIsTheIdentity)
{
    for (char const* const text : {"<Transform/>", "<Transform></Transform>", "<Transform>1 2 3</Transform>", ""})
        EXPECT_EQ(ViewScene(Members(Member(text)))->EntityTransformAt(0).Elements(), kIdentity) << text;
}

TEST(XMLView, ABadIndexIsOutOfRange)
{
    ViewScene view(Members(Member("[a]", "1")));
    EXPECT_THAT([&] { view->OccurrencePathAt(1); }, ThrowsMessage<std::out_of_range>(kBadIndex));
    EXPECT_THAT([&] { view->EntityVisibilityAt(1); }, ThrowsMessage<std::out_of_range>(kBadIndex));
    EXPECT_THAT([&] { view->EntityTransformAt(1); }, ThrowsMessage<std::out_of_range>(kBadIndex));
    EXPECT_THAT([&] { view->EntityStylesAt(~0ULL); }, ThrowsMessage<std::out_of_range>(kBadIndex));
}

TEST(XMLView, CameraSetsAddUpAndNeedNotExist)
{
    ViewScene view(
        "<CameraSet><CameraRef ID='k1'/><CameraRef ID='k2'/></CameraSet>"
        "<CameraSet><CameraRef ID='k3'/><CameraRef ID='k1'/><CameraRef/><ICamera ID='k4'/></CameraSet>");
    EXPECT_THAT(Ids(view->CameraSet()), ElementsAre("k1", "k2", "k3"));
    EXPECT_FALSE(view.Has("k1"));
    EXPECT_FALSE(view.Has("k4"));
}

TEST(XMLView, ItKeepsNeitherExtensionDataNorChangeKey)
{
    ViewScene view("<ExtensionData TypeId='t'/><ChangeKey>k</ChangeKey>");
    EXPECT_FALSE(ExtensionOf(*view, "t"));
    EXPECT_EQ(ChangeKeyOf(*view), std::nullopt);
}

TEST(XMLView, AnElementOfAnyNameIsAView)
{
    SetScene scene("<ViewSet>text<Look ID='v' Label='E'/><!-- c --><?IView ID='p'?></ViewSet>");
    EXPECT_EQ(Text(scene.Get<IView>("v").Label()), "E");
    EXPECT_THAT(Ids(scene.Owner().ViewSet()), ElementsAre("v"));
}

TEST(XMLView, WithoutAnyAttributeItHasTheEmptyId)
{
    SetScene scene("<ViewSet><IView/></ViewSet>");
    EXPECT_TRUE(scene.Get<IView>("").IsActive());
}

TEST(XMLView, OfTwoWithOneIdTheFirstIsTheOnlyOneAndBothOwnersListIt)
{
    TestScene scene(
        InScene("<IPart ID='p1'><AttributeSet><ViewSet><IView ID='v' Label='1'/><IView ID='v' Label='2'/></ViewSet>"
                "</AttributeSet></IPart>"
                "<IPart ID='p2'><AttributeSet><ViewSet><IView ID='v' Label='3'/></ViewSet></AttributeSet></IPart>"));
    scene.Begin();
    EXPECT_EQ(Text(scene.Get<IView>("v").Label()), "1");
    EXPECT_THAT(Ids(scene.Get<IPart>("p1").ViewSet()), ElementsAre("v"));
    EXPECT_THAT(Ids(scene.Get<IPart>("p2").ViewSet()), ElementsAre("v"));
}

TEST(XMLView, UnderAPrefixAllIdsButThoseOfPathsAreMapped)
{
    SetScene scene("<ViewSet><IView ID='v' Label=''>" +
                       Members(Member("<OccurrencePath Path='[a][x]'/><Styles><StyleRef ID='s'/></Styles>")) +
                       "<CameraSet><CameraRef ID='k'/></CameraSet></IView></ViewSet>"
                       "<CameraSet><ICamera ID='k' Label=''/></CameraSet>",
                   "n");
    // The camera comes before the view, whatever the document says.
    IView& view = scene.Get<IView>("n6");
    EXPECT_THAT(Ids(view.CameraSet()), ElementsAre("n5"));
    EXPECT_TRUE(dynamic_cast<ICamera*>(&scene.Get<ICamera>("n5")));
    EXPECT_THAT(Ids(view.OccurrencePathAt(0)), ElementsAre("a", "x"));
    EXPECT_THAT(Ids(view.EntityStylesAt(0)), ElementsAre("n7"));
    EXPECT_THAT(Ids(scene.Get<IPart>("n4").ViewSet()), ElementsAre("n6"));
}

TEST(XMLView, ARepeatedIdIsToldTwiceAndMakesOneObject)
{
    ReadElement reading;
    std::vector<UTF8String> ids;
    ASSERT_TRUE(ReadViewSet(
        &reading.Producer(),
        reading.Parse("<ViewSet><IView ID='v' Label='1'/><IView ID='w'/><IView ID='v' Label='2'/></ViewSet>"), ids));
    EXPECT_THAT(Texts(ids), ElementsAre("v", "w", "v"));
    EXPECT_EQ(Text(reading.Producer().Load("v")->Label()), "1");
}

TEST(XMLView, UnderAPrefixARepeatedOneIsNotReadAndMapsNothing)
{
    SetScene scene("<ViewSet><IView ID='v'/><IView ID='v'>" +
                       Members(Member("<OccurrencePath Path='[a]'/><Styles><StyleRef ID='s'/></Styles>")) +
                       "</IView><IView ID='w'/></ViewSet>",
                   "n");
    EXPECT_THAT(Ids(scene.Get<IPart>("n4").ViewSet()), ElementsAre("n5", "n6"));
    EXPECT_EQ(scene.Get<IView>("n5").ViewMemberCount(), 0U);
}

TEST(XMLView, ANullSetIsRefused)
{
    std::vector<UTF8String> ids;
    EXPECT_FALSE(ReadViewSet(nullptr, nullptr, ids));
}

TEST(XMLView, MembersAddedByHandFoldInTheSameWay)
{
    XMLView view(Wide("L"), "v");
    auto const pathOf = [](char const* id)
    {
        IdSet path;
        path.AddWithUniquenessCheck(id);
        return path;
    };
    ViewMemberRecord shown;
    shown.visible = true;
    view.AddViewMember(pathOf("a"), ViewMemberRecord());
    view.AddViewMember(pathOf("b"), shown);
    view.AddViewMember(pathOf("a"), shown);
    view.FinishMembers();
    EXPECT_THAT(Told(view), ElementsAre("[b]+", "[a]+"));
}

}  // namespace KVR::Test

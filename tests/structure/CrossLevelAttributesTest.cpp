#include "structure/CrossLevelAttributes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/structure/Answers.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;

// An assembly "m" with cross-level attributes, read; its lists are told as texts, "path: value".
class CrossLevel : public testing::Test
{
protected:
    void Read(std::string const& content) { ReadAll("<CrossLevelAttributes>" + content + "</CrossLevelAttributes>"); }
    void ReadAll(std::string const& elements)
    {
        m_scene = std::make_unique<TestScene>(InScene("<IAssembly ID='m'>" + elements + "</IAssembly>"));
        m_scene->Begin();
    }
    IAssembly const& Assembly() { return m_scene->Get<IAssembly>("m"); }

    std::vector<std::string> Visibilities()
    {
        std::vector<std::string> told;
        for (unsigned long long i = 0; i < Assembly().CrossLevelVisibilityCount(); ++i)
        {
            IdSet path;
            bool visible = false;
            Assembly().CrossLevelVisibilityAt(i, path, visible);
            told.push_back(Joined(path) + ": " + (visible ? "visible" : "hidden"));
        }
        return told;
    }

    std::vector<std::string> Styles()
    {
        std::vector<std::string> told;
        for (unsigned long long i = 0; i < Assembly().CrossLevelStyleCount(); ++i)
        {
            IdSet path;
            IdSet styles;
            Assembly().CrossLevelStyleAt(i, path, styles);
            told.push_back(Joined(path) + ": " + Joined(styles));
        }
        return told;
    }

    // Tells the paths alone.
    std::vector<std::string> Transforms()
    {
        std::vector<std::string> told;
        for (unsigned long long i = 0; i < Assembly().CrossLevelTransformCount(); ++i)
        {
            IdSet path;
            Matrix3d transform;
            Assembly().CrossLevelTransformAt(i, path, transform);
            told.push_back(Joined(path));
        }
        return told;
    }

    std::array<double, 16> TransformAt(unsigned long long index)
    {
        IdSet path;
        Matrix3d transform;
        // Of another value than the identity, which is what a bad text leaves.
        transform.SetElement(0, 0, 99);
        Assembly().CrossLevelTransformAt(index, path, transform);
        return transform.Elements();
    }

private:
    static std::string Joined(IdSet const& ids)
    {
        std::string joined;
        for (std::string const& id : Ids(ids))
            joined += "/" + id;
        return joined;
    }

    std::unique_ptr<TestScene> m_scene;
};

std::string StylesText(std::string const& path, std::string const& content)
{
    return "<EntityStyles Path='" + path + "'>" + content + "</EntityStyles>";
}

}  // namespace

TEST_F(CrossLevel, ANullNodeIsNotReadAndAnEmptyElementIs)
{
    std::vector<CrossLevelVisibility> visibilities;
    std::vector<CrossLevelStyle> styles;
    std::vector<CrossLevelTransform> transforms;
    EXPECT_FALSE(ReadCrossLevelAttributes(nullptr, nullptr, visibilities, styles, transforms));
    Read("");
    EXPECT_THAT(Visibilities(), ElementsAre());
    EXPECT_THAT(Styles(), ElementsAre());
    EXPECT_THAT(Transforms(), ElementsAre());
}

TEST_F(CrossLevel, AllThreeListsAreRead)
{
    Read("<Styles>" + StylesText("[a][b]", "<Styles><StyleRef ID='s'/></Styles>") +
         "</Styles><Visibilities><EntityVisibility Path='[c]' Visibility='1'/></Visibilities>"
         "<Transformations><EntityTransformation Path='[d][e]' Transformation='" +
         MoveText(5) + "'/></Transformations>");
    EXPECT_THAT(Styles(), ElementsAre("/a/b: /s"));
    EXPECT_THAT(Visibilities(), ElementsAre("/c: visible"));
    EXPECT_THAT(Transforms(), ElementsAre("/d/e"));
    auto expected = kIdentity;
    expected[3] = 5;
    EXPECT_EQ(TransformAt(0), expected);
}

TEST_F(CrossLevel, ListsKeepDocumentOrderAndRepeatedPathsOverAllElements)
{
    Read(
        "<Visibilities><EntityVisibility Path='[b]' Visibility='1'/><EntityVisibility Path='[a]' Visibility='0'/>"
        "</Visibilities><Styles/><Visibilities><EntityVisibility Path='[b]' Visibility='0'/></Visibilities>"
        "<Styles>" +
        StylesText("[b]", "") + StylesText("[a]", "") + StylesText("[b]", "") +
        "</Styles><Transformations><EntityTransformation Path='[b]'/><EntityTransformation Path='[a]'/>"
        "<EntityTransformation Path='[b]'/></Transformations>");
    EXPECT_THAT(Visibilities(), ElementsAre("/b: visible", "/a: hidden", "/b: hidden"));
    EXPECT_THAT(Styles(), ElementsAre("/b: ", "/a: ", "/b: "));
    EXPECT_THAT(Transforms(), ElementsAre("/b", "/a", "/b"));
}

TEST_F(CrossLevel, ASecondElementAppends)
{
    std::string const element =
        "<CrossLevelAttributes><Visibilities><EntityVisibility Path='[a]'/></Visibilities></CrossLevelAttributes>";
    ReadAll(element + "<ChangeKey/>" + element);
    EXPECT_THAT(Visibilities(), ElementsAre("/a: hidden", "/a: hidden"));
}

TEST_F(CrossLevel, AVisibilityIsVisibleForTheTextOneAlone)
{
    Read(
        "<Visibilities><EntityVisibility Path='[1]' Visibility='1'/><EntityVisibility Path='[2]' Visibility='0'/>"
        "<EntityVisibility Path='[3]' Visibility='True'/><EntityVisibility Path='[4]' Visibility='true'/>"
        "<EntityVisibility Path='[5]' Visibility=' 1'/><EntityVisibility Path='[6]' Visibility=''/>"
        "<EntityVisibility Path='[7]'/><EntityVisibility Path='[8]' visibility='1'/></Visibilities>");
    EXPECT_THAT(Visibilities(), ElementsAre("/1: visible", "/2: hidden", "/3: hidden", "/4: hidden", "/5: hidden",
                                            "/6: hidden", "/7: hidden", "/8: hidden"));
}

TEST_F(CrossLevel, AVisibilityOrTransformWithoutAPathStaysWithAnEmptyOne)
{
    Read(
        "<Visibilities><EntityVisibility Visibility='1'/><EntityVisibility Path='' Visibility='1'/>"
        "<EntityVisibility/></Visibilities><Transformations><EntityTransformation Transformation='" +
        MoveText(1) + "'/><EntityTransformation/></Transformations>");
    EXPECT_THAT(Visibilities(), ElementsAre(": visible", ": visible", ": hidden"));
    EXPECT_THAT(Transforms(), ElementsAre("", ""));
}

TEST_F(CrossLevel, StylesWithoutAPathAreSkippedAndThoseWithoutAnIdStay)
{
    std::string const refs = "<Styles><StyleRef ID='s'/></Styles>";
    Read("<Styles>" + StylesText("", refs) + "<EntityStyles>" + refs + "</EntityStyles><EntityStyles path='[x]'>" +
         refs + "</EntityStyles>" + StylesText("[a]", "") + StylesText("[b]", "<Styles/>") + "</Styles>");
    EXPECT_THAT(Styles(), ElementsAre("/a: ", "/b: "));
}

TEST_F(CrossLevel, APathWithoutABracketIsEmptyAndItsStylesStay)
{
    Read("<Styles>" + StylesText("abc", "<Styles><StyleRef ID='s'/></Styles>") + "</Styles>");
    EXPECT_THAT(Styles(), ElementsAre(": /s"));
}

TEST_F(CrossLevel, StylesOfOneEntityComeFromStylesAndNetStylesAndNothingElse)
{
    Read(
        "<Styles>" +
        StylesText("[a]",
                   "text<NetStyles><StyleRef ID='n'/><StyleRef ID='s'/></NetStyles><styles><StyleRef ID='x'/></styles>"
                   "<Other><StyleRef ID='x'/></Other><StyleRef ID='x'/><Styles>text<StyleRef ID='s'/><StyleRef ID='t'/>"
                   "<Ref ID='x'/></Styles>") +
        "</Styles>");
    EXPECT_THAT(Styles(), ElementsAre("/a: /n/s/t"));
}

TEST_F(CrossLevel, StylesStartAfreshInEachEntity)
{
    Read("<Styles>" + StylesText("[a]", "<Styles><StyleRef ID='s'/></Styles>") +
         StylesText("[b]", "<Styles><StyleRef ID='t'/></Styles>") + "</Styles>");
    EXPECT_THAT(Styles(), ElementsAre("/a: /s", "/b: /t"));
}

TEST_F(CrossLevel, APathThatPassesOneIdTwiceKeepsItOnceAtItsFirstPlace)
{
    Read("<Visibilities><EntityVisibility Path='[a][b][a]'/></Visibilities>");
    EXPECT_THAT(Visibilities(), ElementsAre("/a/b: hidden"));
}

TEST_F(CrossLevel, TheCharacterInFrontOfEachIdIsDroppedUnseen)
{
    Read(
        "<Visibilities><EntityVisibility Path='a]b]'/><EntityVisibility Path='(ab](cd]'/>"
        "<EntityVisibility Path='[a] [b]'/><EntityVisibility Path='[a][b'/><EntityVisibility Path=']'/>"
        "</Visibilities>");
    EXPECT_THAT(Visibilities(), ElementsAre("/: hidden", "/ab/cd: hidden", "/a/[b: hidden", "/a: hidden", "/: hidden"));
}

TEST_F(CrossLevel, ATransformThatIsNoneIsTheIdentity)
{
    Read("<Transformations><EntityTransformation Path='[a]' Transformation='" + MoveText(5) +
         "'/><EntityTransformation Path='[b]'/><EntityTransformation Path='[c]' Transformation='1 2 3'/>"
         "<EntityTransformation Path='[d]' Transformation='" +
         MoveText(5) + " 1'/></Transformations>");
    ASSERT_THAT(Transforms(), ElementsAre("/a", "/b", "/c", "/d"));
    EXPECT_EQ(TransformAt(0)[3], 5);
    for (unsigned long long const index : {1, 2, 3})
        EXPECT_EQ(TransformAt(index), kIdentity) << index;
}

TEST_F(CrossLevel, ChildrenOfOtherNamesAreSkippedOnBothLevels)
{
    Read(
        "text<Visibility><EntityVisibility Path='[x]'/></Visibility><visibilities><EntityVisibility Path='[x]'/>"
        "</visibilities><Visibilities>text<EntityStyles Path='[x]'/><entityVisibility Path='[x]'/>"
        "<Other Path='[x]' Visibility='1'/><?EntityVisibility Path='[x]'?><EntityVisibility Path='[a]'/>"
        "</Visibilities><Styles><EntityVisibility Path='[x]'/></Styles><Transformations>"
        "<Transformation Path='[x]'/></Transformations><?Visibilities x?><EntityVisibility Path='[x]'/>");
    EXPECT_THAT(Visibilities(), ElementsAre("/a: hidden"));
    EXPECT_THAT(Styles(), ElementsAre());
    EXPECT_THAT(Transforms(), ElementsAre());
}

TEST(CrossLevelPaths, AreNotResolvedAndTouchNoOtherObject)
{
    TestScene scene(InScene(
        "<IPart ID='a'/><IAssembly ID='m'><ChildSet><IInstance ID='i' Visibility='1'><Child ID='a'/></IInstance>"
        "</ChildSet><CrossLevelAttributes><Visibilities><EntityVisibility Path='[i]' Visibility='0'/>"
        "<EntityVisibility Path='[nowhere]' Visibility='0'/></Visibilities></CrossLevelAttributes></IAssembly>"));
    scene.Begin();
    EXPECT_EQ(scene.Get<IAssembly>("m").CrossLevelVisibilityCount(), 2u);
    EXPECT_TRUE(scene.Get<IInstance>("i").IsVisible());
}

}  // namespace KVR::Test

// References that lead back to where they came from: an element whose reading is under way counts as done.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/SceneWalk.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

namespace
{

using List = std::vector<std::string>;

std::string Instance(std::string const& id, std::string const& target)
{
    return "<IInstance ID='" + id + "'><Child ID='" + target + "'/></IInstance>";
}
std::string Assembly(std::string const& id, std::string const& children)
{
    return "<IAssembly ID='" + id + "' Label=''><ChildSet>" + children + "</ChildSet></IAssembly>";
}
std::string File(std::string const& id, List const& children)
{
    std::string text = "<IFile ID='" + id + "'><ChildSet>";
    for (std::string const& child : children)
        text += "<C ID='" + child + "'/>";
    return text + "</ChildSet></IFile>";
}
std::string Scene(std::string const& elements)
{
    return "<Scene>" + elements + "<IPart ID='p'/></Scene>";
}

}  // namespace

TEST(Cycle, AnAssemblyThatReachesItselfEndsAtItsOwnInstance)
{
    TestScene scene(Scene(Assembly("a", Instance("i", "p") + Instance("j", "a") + Instance("k", "p"))));
    scene.Begin();
    EXPECT_EQ(scene.ChildIds("a"), List{"i"}) << "the instance of itself has no target yet, which ends the assembly";
    EXPECT_FALSE(scene.Has("j"));
    EXPECT_FALSE(scene.Has("k"));
    EXPECT_TRUE(scene.Has("p"));
}

TEST(Cycle, TwoAssembliesThatReachEachOtherEndWhereTheCycleCloses)
{
    for (bool const reversed : {false, true})
    {
        std::string const first = Assembly("a", Instance("i", "b"));
        std::string const second = Assembly("b", Instance("j", "a"));
        TestScene scene(Scene(reversed ? second + first : first + second));
        scene.Begin();
        EXPECT_EQ(scene.ChildIds("a"), List{"i"});
        EXPECT_EQ(scene.ChildIds("b"), List{});
        EXPECT_EQ(scene.Get<IInstance>("i").TargetId().Id(), UTF8String("b"));
        EXPECT_FALSE(scene.Has("j"));
    }
}

TEST(Cycle, AFileThatIsPlacedUnderItselfEndsAtThatInstance)
{
    TestScene scene(Scene(File("0", {"a", "p"}) + Assembly("a", Instance("i", "0"))));
    scene.Begin();
    EXPECT_EQ(scene.ChildIds("0"), (List{"a", "p"}));
    EXPECT_EQ(scene.ChildIds("a"), List{});
    EXPECT_FALSE(scene.Has("i"));
    EXPECT_EQ(scene.Producer().RootObjectId().Id(), UTF8String("0"));
    SceneAnswers const answers = WalkScene(scene.Producer());
    EXPECT_EQ(answers.Objects(), 3U);
}

TEST(Cycle, TheSameFileBelowAnAssemblyThatIsReadFirstIsPlaced)
{
    // "a" is read first; the file in it finds "a" under way, and leaves that child out.
    TestScene scene(Scene(File("f", {"a", "p"}) + Assembly("a", Instance("i", "f"))));
    scene.Begin();
    EXPECT_EQ(scene.ChildIds("a"), List{"i"});
    EXPECT_EQ(scene.Get<IInstance>("i").TargetId().Id(), UTF8String("f"));
    EXPECT_EQ(scene.ChildIds("f"), List{"p"});
}

TEST(Cycle, TwoInstancesThatPlaceEachOtherMakeNoObject)
{
    TestScene scene(Scene(Instance("i", "j") + Instance("j", "i") + Instance("k", "k") + Instance("l", "p")));
    scene.Begin();
    for (char const* const id : {"i", "j", "k"})
        EXPECT_FALSE(scene.Has(id)) << id;
    EXPECT_TRUE(scene.Has("l"));
}

TEST(Cycle, AFileMayNameTheInlineInstanceThatPlacesIt)
{
    // No element of the root has that id, so the id is listed, and by the time a host asks there is such an instance.
    TestScene scene(Scene(File("f", {"i"}) + Assembly("a", Instance("i", "f"))));
    scene.Begin();
    EXPECT_EQ(scene.ChildIds("f"), List{"i"});
    EXPECT_EQ(scene.Get<IInstance>("i").TargetId().Id(), UTF8String("f"));
    SceneAnswers const answers = WalkScene(scene.Producer());
    EXPECT_EQ(answers.files, 1U);
    EXPECT_EQ(answers.instances, 1U);
    EXPECT_EQ(answers.absent, 0U);
}

TEST(Cycle, AFileThatNamesItselfLeavesItselfOut)
{
    TestScene scene(Scene(File("f", {"f", "p", "f"})));
    scene.Begin();
    EXPECT_EQ(scene.ChildIds("f"), List{"p"});
}

TEST(Cycle, FilesThatNameEachOtherEnd)
{
    TestScene scene(Scene(File("f", {"g"}) + File("g", {"h"}) + File("h", {"f", "p"})));
    scene.Begin();
    EXPECT_EQ(scene.ChildIds("f"), List{"g"});
    EXPECT_EQ(scene.ChildIds("g"), List{"h"});
    EXPECT_EQ(scene.ChildIds("h"), List{"p"});
}

TEST(Cycle, AChildOfAnAssemblyThatIsTheAssemblyItselfAddsNothing)
{
    TestScene scene(Scene(Assembly("a", "<Child ID='a'/><Child ID='p'/>" + Instance("i", "p") + "<Child ID='p'/>")));
    scene.Begin();
    EXPECT_EQ(scene.ChildIds("a"), (List{"i", "p"})) << "the part is there once the instance has had it read";
}

TEST(Cycle, EndsUnderMappedIdsAsWell)
{
    TestScene scene(Scene(Assembly("a", Instance("i", "b")) + Assembly("b", Instance("j", "a"))));
    scene.WithPrefix("P").Begin();
    // a, i, b, j in the order in which they are met.
    EXPECT_EQ(scene.ChildIds("P1"), List{"P2"});
    EXPECT_EQ(scene.ChildIds("P3"), List{});
    EXPECT_FALSE(scene.Has("P4"));
}

}  // namespace KVR::Test

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "structure/XMLFile.h"
#include "tests/structure/Answers.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;

std::string FileText(char const* id, std::string const& children)
{
    return std::string("<IFile ID='") + id + "'><ChildSet>" + children + "</ChildSet></IFile>";
}

std::string PartText(char const* id)
{
    return std::string("<IPart ID='") + id + "' Label='" + id + "'/>";
}

// The ids that the file kept, whether there are objects behind them or not.
std::vector<std::string> KeptIds(TestScene& scene, char const* file)
{
    std::vector<std::string> ids;
    for (UTF8String const& id : scene.Get<XMLFile>(file).ChildIds())
        ids.push_back(Text(id));
    return ids;
}

}  // namespace

TEST(FileChildSet, NamesElementsFurtherDownTheDocumentInItsOwnOrder)
{
    // In the order of ids the file comes between its children.
    TestScene scene(InScene(FileText("m", "<Child ID='z'/><Child ID='a'/>") + PartText("a") + PartText("z")));
    scene.Begin();
    EXPECT_THAT(scene.ChildIds("m"), ElementsAre("z", "a"));
    EXPECT_TRUE(scene.Has("a"));
    EXPECT_TRUE(scene.Has("z"));
}

TEST(FileChildSet, NamesElementsAboveItInTheDocument)
{
    TestScene scene(InScene(PartText("z") + PartText("a") + FileText("m", "<Child ID='z'/><Child ID='a'/>")));
    scene.Begin();
    EXPECT_THAT(scene.ChildIds("m"), ElementsAre("z", "a"));
}

TEST(FileChildSet, AnElementOfAnyNameIsAChild)
{
    TestScene scene(
        InScene(FileText("f", "<IPart ID='p'/><Anything ID='q' Type='IPart'/>text<!-- c --><?Child ID='r'?>") +
                PartText("p") + PartText("q") + PartText("r")));
    scene.Begin();
    EXPECT_THAT(scene.ChildIds("f"), ElementsAre("p", "q"));
}

TEST(FileChildSet, ASecondSetAppendsAndRepeatsStay)
{
    TestScene scene(
        InScene("<IFile ID='f'><ChildSet><Child ID='p'/><Child ID='q'/></ChildSet>"
                "<ChildSet/><ChildSet><Child ID='p'/></ChildSet></IFile>" +
                PartText("p") + PartText("q")));
    scene.Begin();
    EXPECT_THAT(scene.ChildIds("f"), ElementsAre("p", "q", "p"));
}

TEST(FileChildSet, AChildThatNamesNoElementIsCountedAndItsIdIsEmpty)
{
    TestScene scene(InScene(FileText("f", "<Child ID='nowhere'/><Child ID='p'/>") + PartText("p")));
    scene.Begin();
    EXPECT_EQ(scene.Get<IFile>("f").ChildCount(), 2u);
    EXPECT_THAT(scene.ChildIds("f"), ElementsAre("", "p"));
    EXPECT_THAT(KeptIds(scene, "f"), ElementsAre("nowhere", "p"));
}

TEST(FileChildSet, AChildWithoutAnIDNamesTheElementOfTheEmptyId)
{
    TestScene none(InScene(FileText("f", "<Child/><Child id='p'/>")));
    none.Begin();
    EXPECT_THAT(KeptIds(none, "f"), ElementsAre("", ""));
    TestScene one(InScene(FileText("f", "<Child/>") + "<IPart Label='nameless'/>"));
    one.Begin();
    EXPECT_THAT(KeptIds(one, "f"), ElementsAre(""));
    EXPECT_EQ(Text(one.Get<IPart>("").Label()), "nameless");
}

TEST(FileChildSet, AChildWhoseReaderLeftNoObjectLeavesNoGap)
{
    // The instance has no target: it is dispatched and leaves nothing, when its turn comes before the file's.
    TestScene scene(InScene("<IInstance ID='a'/>" + FileText("f", "<Child ID='a'/><Child ID='p'/>") + PartText("p")));
    scene.Begin();
    EXPECT_FALSE(scene.Has("a"));
    EXPECT_THAT(KeptIds(scene, "f"), ElementsAre("p"));
}

TEST(FileChildSet, AChildMayBeAnInstanceAnAssemblyOrAFile)
{
    TestScene scene(InScene(FileText("f", "<Child ID='i'/><Child ID='a'/><Child ID='g'/>") +
                            "<IInstance ID='i'><Child ID='p'/></IInstance><IAssembly ID='a'/>" + FileText("g", "") +
                            PartText("p")));
    scene.Begin();
    EXPECT_THAT(scene.ChildIds("f"), ElementsAre("i", "a", "g"));
    EXPECT_EQ(Text(scene.Get<IInstance>("i").TargetId().Id()), "p");
}

TEST(FileChildSet, AChildThatTheHostDisposedOfHasAnEmptyId)
{
    TestScene scene(InScene(FileText("f", "<Child ID='p'/><Child ID='q'/>") + PartText("p") + PartText("q")));
    scene.Begin();
    scene.Producer().Dispose("p");
    EXPECT_THAT(scene.ChildIds("f"), ElementsAre("", "q"));
    EXPECT_EQ(scene.Get<IFile>("f").ChildCount(), 2u);
}

TEST(FileChildSet, AFileThatNamesItselfEndsAndIsNoChildOfItself)
{
    TestScene scene(InScene(FileText("f", "<Child ID='f'/><Child ID='p'/>") + PartText("p")));
    scene.Begin();
    EXPECT_THAT(scene.ChildIds("f"), ElementsAre("p"));
}

TEST(FileChildSet, TwoFilesThatNameEachOtherEnd)
{
    TestScene scene(InScene(FileText("f", "<Child ID='g'/>") + FileText("g", "<Child ID='f'/>")));
    scene.Begin();
    EXPECT_THAT(scene.ChildIds("f"), ElementsAre("g"));
    EXPECT_THAT(scene.ChildIds("g"), ElementsAre());
}

TEST(FileChildSet, AFileThatReachesItselfThroughAnInstanceEndsWhereTheReadingBegan)
{
    auto const text = [](std::string const& assembly)
    {
        return InScene(FileText("m", "<Child ID='" + assembly + "'/>") + "<IAssembly ID='" + assembly +
                       "'><ChildSet><IInstance ID='i'><Child ID='m'/></IInstance></ChildSet></IAssembly>");
    };
    TestScene fileFirst(text("z"));
    fileFirst.Begin();
    EXPECT_THAT(fileFirst.ChildIds("m"), ElementsAre("z"));
    EXPECT_THAT(fileFirst.ChildIds("z"), ElementsAre());
    EXPECT_FALSE(fileFirst.Has("i"));
    TestScene assemblyFirst(text("a"));
    assemblyFirst.Begin();
    EXPECT_THAT(assemblyFirst.ChildIds("a"), ElementsAre("i"));
    EXPECT_THAT(assemblyFirst.ChildIds("m"), ElementsAre());
}

}  // namespace KVR::Test

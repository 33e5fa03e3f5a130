// Elements within elements, a hundred thousand deep, at every place where an element may stand.

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tests/support/FullScene.h"
#include "tests/support/RunOnStack.h"
#include "tests/support/SceneWalk.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

namespace
{

// Each level declares the empty default namespace: without that the parser looks it up through all levels above, and
// its time grows with the square of the depth.
constexpr unsigned long long kLevels = 100000;

std::string Nested(std::string const& name, unsigned long long levels = kLevels)
{
    return Repeated("<" + name + " xmlns=\"\">", levels) + Repeated("</" + name + ">", levels);
}

std::string AnswersOf(std::string const& text)
{
    std::string answers;
    RunOnStack(kSmallStack,
               [&]
               {
                   TestScene scene(text);
                   WriteSideFiles(scene);
                   scene.Begin();
                   answers = WalkScene(scene.Producer(), FullSceneIds()).text;
               });
    return answers;
}

// The marked scene with something at one of its marks, counted from 0, and nothing at the others.
std::string WithAt(unsigned long long place, std::string const& what)
{
    std::string result;
    std::string_view rest = MarkedFullScene();
    for (;; --place)
    {
        auto const at = rest.find('@');
        result += rest.substr(0, at);
        if (at == std::string_view::npos)
            return result;
        if (place == 0)
            result += what;
        rest.remove_prefix(at + 1);
    }
}

constexpr unsigned kMarks = 53;

class HostileNestingAt : public testing::TestWithParam<unsigned>
{
};

}  // namespace

TEST(HostileNesting, IsTriedAtEveryMarkOfTheScene)
{
    std::string_view const scene = MarkedFullScene();
    EXPECT_EQ(std::count(scene.begin(), scene.end(), '@'), kMarks);
}

TEST_P(HostileNestingAt, AMarkIsNoMoreThanOneUnknownElementThere)
{
    EXPECT_EQ(AnswersOf(WithAt(GetParam(), Nested("x"))), AnswersOf(WithAt(GetParam(), "<x/>")));
}

INSTANTIATE_TEST_SUITE_P(OfUnknownElements, HostileNestingAt, testing::Range(0U, kMarks));

TEST(HostileNesting, OfKnownElementsUnderTheRootEndsWithoutHarm)
{
    for (char const* const name : {"IFile", "IAssembly", "IPart", "IInstance", "IUniverse", "ChildSet", "Scene"})
    {
        TestScene scene("<Scene><IPart ID='p'/>" + Nested(name) + "</Scene>");
        RunOnStack(kSmallStack, [&] { scene.Begin(); });
        EXPECT_TRUE(scene.Has("p")) << name;
        SceneAnswers const answers = WalkScene(scene.Producer(), {"p", ""});
        // The outermost one has no id, and what is in it is none of the children that it reads.
        bool const isObject =
            std::string(name) == "IFile" || std::string(name) == "IAssembly" || std::string(name) == "IPart";
        EXPECT_EQ(answers.Objects(), isObject ? 2U : 1U) << name;
    }
}

TEST(HostileNesting, OfElementsThatAreKnownInEachOtherEndsWithoutHarm)
{
    // Each line: what opens a level, what closes it.
    std::vector<std::pair<std::string, std::string>> const levels = {
        {"<ChildSet xmlns=''><IAssembly xmlns='' ID='n'>", "</IAssembly></ChildSet>"},
        {"<ChildSet xmlns=''><IInstance xmlns='' ID='n'><Child ID='p'/>", "</IInstance></ChildSet>"},
        {"<Styles xmlns=''><StyleRef ID='s'/>", "</Styles>"},
        {"<CrossLevelAttributes xmlns=''><Styles xmlns=''><EntityStyles xmlns='' Path='[a]'>",
         "</EntityStyles></Styles></CrossLevelAttributes>"},
        {"<FileProperties xmlns=''><ViewData xmlns=''><UpVector xmlns=''>", "</UpVector></ViewData></FileProperties>"},
        {"<ExtensionData xmlns='' TypeId='type'>", "</ExtensionData>"},
        {"<ChangeKey xmlns=''>k", "</ChangeKey>"}};
    for (auto const& [open, close] : levels)
    {
        TestScene scene("<Scene><IAssembly ID='a'>" + Repeated(open, kLevels) + Repeated(close, kLevels) +
                        "</IAssembly><IPart ID='p'/></Scene>");
        RunOnStack(kSmallStack, [&] { scene.Begin(); });
        EXPECT_TRUE(scene.Has("a")) << open;
        EXPECT_TRUE(scene.Has("p")) << open;
        SceneAnswers const answers = WalkScene(scene.Producer(), {"a", "n"});
        EXPECT_GE(answers.assemblies, 1U);
    }
}

TEST(HostileNesting, InsideAChangeKeyKeepsAllOfItsText)
{
    TestScene scene("<Scene><IPart ID='p'><ChangeKey>" + Repeated("<x xmlns=''>a", kLevels) +
                    Repeated("b</x>", kLevels) + "</ChangeKey></IPart></Scene>");
    RunOnStack(kSmallStack, [&] { scene.Begin(); });
    UTF8String key;
    ASSERT_EQ(scene.Get<IPart>("p").ChangeKey(kSnapshotVersion_Current, key), kIsValueSpecified_Yes);
    EXPECT_EQ(Text(key), Repeated("a", kLevels) + Repeated("b", kLevels));
}

TEST(HostileNesting, ThatIsNeverClosedIsRefused)
{
    TestScene scene("<Scene>" + Repeated("<x xmlns=''>", kLevels));
    RunOnStack(kSmallStack, [&] { EXPECT_FALSE(Opens(scene)); });
    EXPECT_FALSE(scene.Has("p"));
}

}  // namespace KVR::Test

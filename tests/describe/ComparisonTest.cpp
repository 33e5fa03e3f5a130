#include "describe/Comparison.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "tests/support/FullScene.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

std::string SceneWith(std::string const& children, std::string const& label = "part")
{
    return "<Scene><IFile ID='f'><ChildSet><Child ID='p' Type='IPart'/></ChildSet></IFile>"
           "<IPart ID='p' Label='" +
           label + "'><ChildSet>" + children + "</ChildSet></IPart></Scene>";
}

std::vector<Difference> Differences(std::string const& first, std::string const& second,
                                    std::vector<UTF8String> const& ids = {})
{
    TestScene one(first);
    TestScene other(second);
    return Compare(one.Begin().Producer(), other.Begin().Producer(), ids);
}

}  // namespace

TEST(Comparison, AnObjectEqualsItself)
{
    TestScene scene(FullScene());
    WriteSideFiles(scene);
    scene.Begin();
    for (std::string const& id : FullSceneIds())
    {
        IObject* const object = scene.Producer().Load(id.c_str());
        EXPECT_TRUE(!object || Compare(*object, *object).empty()) << id;
    }
    EXPECT_THAT(Compare(scene.Producer(), scene.Producer()), IsEmpty());
}

TEST(Comparison, ObjectsDifferByMembers)
{
    TestScene scene(SceneWith("<IPoint ID='a' X='1'/><IPoint ID='b' Label='two'/>"));
    scene.Begin();
    std::vector<std::string> paths;
    for (Difference const& difference : Compare(scene.Get<IPoint>("a"), scene.Get<IPoint>("b")))
        paths.push_back(difference.path);
    EXPECT_THAT(paths, testing::Contains("Id"));
    EXPECT_THAT(paths, testing::Contains("Label"));
    EXPECT_THAT(paths, testing::Not(testing::Contains("Class")));
    EXPECT_FALSE(Compare(scene.Get<IPoint>("a"), scene.Get<IPart>("p")).empty());
}

TEST(Comparison, ScenesDifferByThePathOfAMember)
{
    EXPECT_THAT(Differences(SceneWith(""), SceneWith("")), IsEmpty());
    EXPECT_THAT(Differences(SceneWith("", "old"), SceneWith("", "new")),
                ElementsAre(Difference{"p/Label", "\"old\"", "\"new\""}));
}

TEST(Comparison, AnItemThatOneListLacksIsOneDifference)
{
    auto const found = Differences(SceneWith("<IPoint ID='a'/>"), SceneWith("<IPoint ID='a'/><IPoint ID='b'/>"));
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0], (Difference{"p/Children[1]", "", "\"b\""}));
    EXPECT_EQ(found[1].path, "b/");
    EXPECT_EQ(found[1].first, "null");
}

TEST(Comparison, ObjectsThatNothingRefersToAreComparedByTheirIds)
{
    std::string const with = "<Scene><IPart ID='p' Label='x'/></Scene>";
    std::string const without = "<Scene><IPart ID='p'/></Scene>";
    EXPECT_THAT(Differences(with, without), IsEmpty());
    EXPECT_THAT(Differences(with, without, {"p"}), ElementsAre(Difference{"p/Label", "\"x\"", "\"\""}));
}

TEST(Comparison, AnswersAreComparedByValue)
{
    Answer const number{1.5};
    Answer const list{Answer::List{number, Answer{}}};
    EXPECT_THAT(Compare(list, list), IsEmpty());
    EXPECT_THAT(Compare(Answer{Answer::List{}}, list),

                ElementsAre(Difference{"[0]", "", "1.5"}, Difference{"[1]", "", "null"}));
    Answer const nothing{std::numeric_limits<double>::quiet_NaN()};
    EXPECT_THAT(Compare(nothing, nothing), IsEmpty());
    EXPECT_THAT(Compare(number, Answer{1LL}), ElementsAre(Difference{"", "1.5", "1"}));
}

}  // namespace KVR::Test

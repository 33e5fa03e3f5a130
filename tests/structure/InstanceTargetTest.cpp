#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/structure/Answers.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;

using Elements = std::array<double, 16>;

std::string InstanceText(char const* id, std::string const& children)
{
    return std::string("<IInstance ID='") + id + "'>" + children + "</IInstance>";
}

std::string ChildText(char const* target, std::string const& transform)
{
    return std::string("<Child ID='") + target + "' Transformation='" + transform + "'/>";
}

std::string TargetOf(TestScene& scene, char const* instance)
{
    return Text(scene.Get<IInstance>(instance).TargetId().Id());
}

Elements TransformOf(TestScene& scene, char const* instance)
{
    return scene.Get<IInstance>(instance).Transform()->Elements();
}

// The transform of an instance whose "Child" says so.
Elements Read(std::string const& text)
{
    TestScene scene(InScene("<IPart ID='p'/>" + InstanceText("i", ChildText("p", text))));
    scene.Begin();
    return TransformOf(scene, "i");
}

Elements Moved(double x)
{
    Elements elements = kIdentity;
    elements[3] = x;
    return elements;
}

}  // namespace

TEST(InstanceTarget, WithoutAChildElementThereIsNoInstance)
{
    TestScene scene(InScene(InstanceText("i", "") + InstanceText("j", "<ChangeKey>k</ChangeKey>")));
    scene.Begin();
    EXPECT_FALSE(scene.Has("i"));
    EXPECT_FALSE(scene.Has("j"));
}

TEST(InstanceTarget, WithoutAnIdIsTheObjectOfTheEmptyIdWhereThereIsOne)
{
    // The target id is then the empty one, which is looked up like any other.
    TestScene scene(InScene("<IPart Label='nameless'/>" + InstanceText("i", "") + InstanceText("j", "<Child/>")));
    scene.Begin();
    EXPECT_TRUE(scene.Has(""));
    EXPECT_TRUE(scene.Has("i"));
    EXPECT_EQ(TargetOf(scene, "j"), "");
}

TEST(InstanceTarget, MayBeAPartAnAssemblyOrAFile)
{
    TestScene scene(InScene("<IPart ID='p'/><IAssembly ID='a'/><IFile ID='f'/>" +
                            InstanceText("i1", "<Child ID='p'/>") + InstanceText("i2", "<Child ID='a'/>") +
                            InstanceText("i3", "<Child ID='f'/>")));
    scene.Begin();
    EXPECT_EQ(TargetOf(scene, "i1"), "p");
    EXPECT_EQ(TargetOf(scene, "i2"), "a");
    EXPECT_EQ(TargetOf(scene, "i3"), "f");
}

TEST(InstanceTarget, ThatStandsLaterIsReadFirstAndFound)
{
    for (char const* const element : {"IPart", "IAssembly", "IFile"})
    {
        TestScene scene(InScene(InstanceText("i", "<Child ID='z'/>") + "<" + element + " ID='z'/>"));
        scene.Begin();
        EXPECT_EQ(TargetOf(scene, "i"), "z") << element;
    }
}

TEST(InstanceTarget, ThatDoesNotExistLeavesNoInstance)
{
    TestScene scene(
        InScene(InstanceText("i", "<Child ID='nowhere'/>") + "<IPart ID='p'/>" + InstanceText("j", "<Child id='p'/>")));
    scene.Begin();
    EXPECT_FALSE(scene.Has("i"));
    EXPECT_FALSE(scene.Has("j"));
}

TEST(InstanceTarget, OfAWrongKindLeavesNoInstanceThoughTheObjectExists)
{
    for (char const* const id : {"a", "z"})
    {
        TestScene scene(InScene("<IPart ID='p'/>" + InstanceText("i", std::string("<Child ID='") + id + "'/>") +
                                InstanceText(id, "<Child ID='p'/>")));
        scene.Begin();
        EXPECT_TRUE(scene.Has(id)) << id;
        EXPECT_FALSE(scene.Has("i")) << id;
    }
}

TEST(InstanceTarget, ThatIsABodyIsReadAndLeavesNoInstance)
{
    TestScene scene(InScene("<IAssembly ID='a'><ChildSet>" + InstanceText("i", "<Child ID='z'/>") +
                            "<IPoint ID='behind'/></ChildSet></IAssembly><IBrep ID='z'/>" +
                            InstanceText("j", "<Child ID='z'/>")));
    scene.Begin();
    EXPECT_NO_THROW(scene.Get<IBrep>("z"));
    EXPECT_FALSE(scene.Has("i"));
    EXPECT_FALSE(scene.Has("j"));
    EXPECT_FALSE(scene.Has("behind")) << "it ends the assembly";
    EXPECT_TRUE(scene.Has("a"));
}

TEST(InstanceTarget, OfTwoChildrenTheSecondDecidesAndTheFirstIsStillRead)
{
    // The reference behind the instance finds "y" only because the instance had it read.
    TestScene scene(InScene("<IAssembly ID='a'><ChildSet>" +
                            InstanceText("i", ChildText("y", MoveText(1)) + ChildText("z", MoveText(2))) +
                            "<Child ID='y'/></ChildSet></IAssembly><IPart ID='y'/><IPart ID='z'/>"));
    scene.Begin();
    EXPECT_EQ(TargetOf(scene, "i"), "z");
    EXPECT_EQ(TransformOf(scene, "i"), Moved(2));
    EXPECT_THAT(scene.ChildIds("a"), ElementsAre("i", "y"));
}

TEST(InstanceTarget, OfTwoChildrenASecondWithoutATargetLeavesNoInstance)
{
    TestScene scene(InScene("<IPart ID='p'/>" + InstanceText("i", "<Child ID='p'/><Child ID='nowhere'/>") +
                            InstanceText("j", "<Child ID='nowhere'/><Child ID='p'/>")));
    scene.Begin();
    EXPECT_FALSE(scene.Has("i"));
    EXPECT_EQ(TargetOf(scene, "j"), "p");
}

TEST(InstanceTarget, OneComponentMayBeTheTargetOfAnyNumberOfInstances)
{
    std::string text = "<IAssembly ID='a'><ChildSet>";
    std::vector<std::string> ids;
    for (int i = 0; i < 100; ++i)
    {
        ids.push_back(std::to_string(i));
        text += InstanceText(ids.back().c_str(), ChildText("p", MoveText(i)));
    }
    TestScene scene(InScene(text + "</ChildSet></IAssembly><IPart ID='p'/>"));
    scene.Begin();
    EXPECT_EQ(scene.ChildIds("a"), ids);
    for (std::string const& id : ids)
    {
        EXPECT_EQ(TargetOf(scene, id.c_str()), "p");
        EXPECT_EQ(TransformOf(scene, id.c_str()), Moved(std::stoi(id)));
    }
}

TEST(InstanceTarget, TwoInstancesThroughEachOtherEnd)
{
    TestScene scene(InScene(InstanceText("i", "<Child ID='j'/>") + InstanceText("j", "<Child ID='i'/>")));
    scene.Begin();
    EXPECT_FALSE(scene.Has("i"));
    EXPECT_FALSE(scene.Has("j"));
}

TEST(InstanceTarget, TheTransformIsTheOneOfTheChildExactly)
{
    EXPECT_EQ(Read("0 0 1 -10.5 0 1 0 75 -1 0 0 60 0 0 0 1"),
              (Elements{0, 0, 1, -10.5, 0, 1, 0, 75, -1, 0, 0, 60, 0, 0, 0, 1}));
    EXPECT_EQ(Read("6.8556271770597666e-15 -1 4.6448702601952198e-14 4.1466766750363 1e308 -1e-308 0.1 5e-324 "
                   "3 4 5 6 7 8 9 10"),
              (Elements{6.8556271770597666e-15, -1, 4.6448702601952198e-14, 4.1466766750363, 1e308, -1e-308, 0.1,
                        5e-324, 3, 4, 5, 6, 7, 8, 9, 10}));
}

TEST(InstanceTarget, TheNumbersOfATransformMayBeSeparatedByAnyWhiteSpaceAndCommas)
{
    EXPECT_EQ(Read(" 1,0,0,7,\t0 1 0&#10;0  0 0 ,,1 0 0 0 0 1&#13; "), Moved(7));
}

TEST(InstanceTarget, TheTransformIsThereWhenItIsTheIdentityAndWhenThereIsNone)
{
    EXPECT_EQ(Read(MoveText(0)), kIdentity);
    TestScene scene(InScene("<IPart ID='p'/>" + InstanceText("i", "<Child ID='p'/>")));
    scene.Begin();
    Matrix3d const* const transform = scene.Get<IInstance>("i").Transform();
    ASSERT_NE(transform, nullptr);
    EXPECT_TRUE(transform->IsIdentity());
    EXPECT_EQ(scene.Get<IInstance>("i").Transform(), transform);
}

TEST(InstanceTarget, ATransformAlmostTheIdentityIsKeptAsItIs)
{
    EXPECT_EQ(Read("1 0 0 1e-300 0 1 0 0 0 0 1 0 0 0 0 1"), Moved(1e-300));
}

TEST(InstanceTarget, ATransformOfAnotherCountOrWithAPieceThatIsNoNumberIsTheIdentity)
{
    for (char const* const text : {"", "1 0 0 5 0 1 0 0 0 0 1 0 0 0 0", "1 0 0 5 0 1 0 0 0 0 1 0 0 0 0 1 0", "5",
                                   "1 0 0 5 0 1 0 0 0 0 1 0 0 0 0 x", "1 0 0 5 0 1 0 0 0 0 1 0 0 0 0 inf",
                                   "1 0 0 5 0 1 0 0 0 0 1 0 0 0 0 0x1", "1;0;0;5;0;1;0;0;0;0;1;0;0;0;0;1"})
        EXPECT_EQ(Read(text), kIdentity) << text;
}

TEST(InstanceTarget, ABadTransformOfASecondChildLeavesTheOneOfTheFirst)
{
    TestScene scene(
        InScene("<IPart ID='p'/><IPart ID='q'/>" + InstanceText("i", ChildText("p", MoveText(3)) + "<Child ID='q'/>")));
    scene.Begin();
    EXPECT_EQ(TargetOf(scene, "i"), "q");
    EXPECT_EQ(TransformOf(scene, "i"), Moved(3));
}

}  // namespace KVR::Test

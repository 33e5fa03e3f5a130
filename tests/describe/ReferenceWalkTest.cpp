#include "describe/ReferenceWalk.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/TestScene.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;

constexpr char kScene[] =
    "<Scene><IFile ID='f' IsRoot='1'><StyleSet><IRenderStyle ID='red'/></StyleSet>"
    "<ChildSet><IInstance ID='i1'><Child ID='a'/></IInstance><IInstance ID='i2'><Child ID='gone'/></IInstance>"
    "</ChildSet></IFile>"
    "<IAssembly ID='a'><ChildSet><IInstance ID='i3'><Child ID='f'/></IInstance></ChildSet></IAssembly>"
    "<IPart ID='alone'/></Scene>";

std::vector<std::string> References(IObject& object)
{
    std::vector<UTF8String> ids;
    CollectReferences(object, ids);
    std::vector<std::string> texts;
    for (UTF8String const& id : ids)
        texts.push_back(Text(id));
    return texts;
}

std::vector<std::string> Reached(ReferenceWalk& walk)
{
    std::vector<std::string> ids;
    while (walk.Next())
        ids.push_back(Text(walk.Id()) + (walk.Object() ? "" : "?"));
    return ids;
}

}  // namespace

TEST(References, ChildrenStandBeforeSets)
{
    TestScene scene(kScene);
    scene.Begin();
    EXPECT_THAT(References(scene.Get<IFile>("f")), ElementsAre("i1", "i2", "red"));
    EXPECT_THAT(References(scene.Get<IInstance>("i1")), ElementsAre("a"));
    EXPECT_TRUE(References(scene.Get<IPart>("alone")).empty());
}

TEST(ReferenceWalk, GoesToEachIdOnceInTheOrderOfReferences)
{
    TestScene scene(kScene);
    scene.Begin();
    ReferenceWalk walk(scene.Producer());
    EXPECT_FALSE(walk.Next());
    walk.Reach("f");
    EXPECT_THAT(Reached(walk), ElementsAre("f", "i1", "i2", "red", "a", "gone?", "i3"));
}

TEST(ReferenceWalk, GoesOnFromFurtherIds)
{
    TestScene scene(kScene);
    scene.Begin();
    ReferenceWalk walk(scene.Producer());
    walk.Reach("a");
    walk.Reach("alone");
    ASSERT_TRUE(walk.Next());
    walk.Reach("i1");
    EXPECT_THAT(Reached(walk), ElementsAre("alone", "i1", "i3", "f", "i2", "red", "gone?"));
    walk.Reach("alone");
    EXPECT_FALSE(walk.Next());
}

}  // namespace KVR::Test

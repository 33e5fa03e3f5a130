#include "describe/ReferenceWalk.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/support/TestScene.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;

constexpr char kScene[] =
    "<Scene><IFile ID='f'><AttributeSet><StyleSet><IRenderStyle ID='red'/></StyleSet></AttributeSet>"
    "<ChildSet><Child ID='a' Type='IAssembly'/></ChildSet></IFile>"
    "<IAssembly ID='a'><Styles><StyleRef ID='red'/><StyleRef ID='lost'/></Styles><ChildSet><IInstance ID='i1'><Child "
    "ID='p'/></IInstance>"
    "<IInstance ID='i2'><Child ID='alone'/></IInstance></ChildSet></IAssembly>"
    "<IPart ID='p'/><IPart ID='alone'/></Scene>";

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
    EXPECT_THAT(References(scene.Get<IFile>("f")), ElementsAre("a", "red"));
    EXPECT_THAT(References(scene.Get<IAssembly>("a")), ElementsAre("i1", "i2", "red", "lost"));
    EXPECT_THAT(References(scene.Get<IInstance>("i1")), ElementsAre("p"));
    EXPECT_TRUE(References(scene.Get<IPart>("alone")).empty());
}

TEST(ReferenceWalk, GoesToEachIdOnceInTheOrderOfReferences)
{
    TestScene scene(kScene);
    scene.Begin();
    ReferenceWalk walk(scene.Producer());
    EXPECT_FALSE(walk.Next());
    walk.Reach("f");
    EXPECT_THAT(Reached(walk), ElementsAre("f", "a", "red", "i1", "i2", "lost?", "p", "alone"));
}

TEST(ReferenceWalk, GoesOnFromFurtherIds)
{
    TestScene scene(kScene);
    scene.Begin();
    ReferenceWalk walk(scene.Producer());
    walk.Reach("a");
    walk.Reach("alone");
    ASSERT_TRUE(walk.Next());
    walk.Reach("i2");
    EXPECT_THAT(Reached(walk), ElementsAre("alone", "i2", "i1", "red", "lost?", "p"));
    walk.Reach("alone");
    EXPECT_FALSE(walk.Next());
}

TEST(ReferenceWalk, GoesToEachOfManyObjectsOnce)
{
    constexpr int kParts = 3000;
    std::string children;
    std::string parts;
    for (int i = 0; i < kParts; ++i)
    {
        std::string const id = "p" + std::to_string(i);
        children +=
            "<IInstance ID='i" + std::to_string(i) + "'><Child ID='p" + std::to_string(i / 3) + "'/></IInstance>";
        parts += "<IPart ID='" + id + "'/>";
    }
    TestScene scene("<Scene><IFile ID='f'/><IAssembly ID='a'><ChildSet>" + children + "</ChildSet></IAssembly>" +
                    parts + "</Scene>");
    scene.Begin();
    ReferenceWalk walk(scene.Producer());
    walk.Reach("a");
    std::vector<std::string> ids = Reached(walk);
    EXPECT_EQ(ids.size(), 1U + kParts + kParts / 3);
    std::sort(ids.begin(), ids.end());
    EXPECT_EQ(std::unique(ids.begin(), ids.end()), ids.end());
}

}  // namespace KVR::Test

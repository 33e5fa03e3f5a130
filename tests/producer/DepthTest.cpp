// Chains of assembly, instance, assembly: a thousand levels load whole on a small stack, and any number does no harm.

#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "producer/ObjectNodeIndex.h"
#include "tests/support/RunOnStack.h"
#include "tests/support/SceneWalk.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

namespace
{

struct Chain
{
    unsigned long long levels;
    // Whether ids grow downwards, so that the top is read first and everything else from within it.
    bool topFirst;
    bool withFile;
    bool withPart;
};

std::ostream& operator<<(std::ostream& stream, Chain const& chain)
{
    return stream << chain.levels << (chain.topFirst ? " top first" : " bottom first")
                  << (chain.withFile ? " with file" : "") << (chain.withPart ? " with part" : "");
}

// Ids of one length, so that the order of texts is that of numbers.
std::string Id(char kind, unsigned long long number)
{
    std::string id = std::to_string(number);
    id.insert(0, 8 - id.size(), '0');
    id.insert(0, 1, kind);
    return id;
}

std::string AssemblyId(Chain const& chain, unsigned long long level)
{
    return Id('a', chain.topFirst ? level : chain.levels - 1 - level);
}

std::string Text(Chain const& chain)
{
    std::string text = "<Scene>";
    if (chain.withFile)
        text += "<IFile ID='" + std::string(chain.topFirst ? "A" : "z") + "'><ChildSet><C ID='" + AssemblyId(chain, 0) +
                "'/></ChildSet></IFile>";
    for (unsigned long long level = 0; level < chain.levels; ++level)
    {
        text += "<IAssembly ID='" + AssemblyId(chain, level) + "' Label=''><ChildSet>";
        bool const isLast = level + 1 == chain.levels;
        if (!isLast || chain.withPart)
            text += "<IInstance ID='" + Id('i', level) + "'><Child ID='" +
                    (isLast ? "part" : AssemblyId(chain, level + 1)) + "'/></IInstance>";
        text += "</ChildSet></IAssembly>";
    }
    if (chain.withPart)
        text += "<IPart ID='part' Label=''/>";
    return text + "</Scene>";
}

SceneAnswers Load(TestScene& scene, std::string const& top)
{
    SceneAnswers answers;
    RunOnStack(kSmallStack,
               [&]
               {
                   scene.Begin();
                   answers = WalkScene(scene.Producer(), {top});
                   scene.Producer().EndProcess();
               });
    return answers;
}

class DepthOf : public testing::TestWithParam<Chain>
{
};

}  // namespace

TEST_P(DepthOf, AThousandLevelsLoadsWhole)
{
    Chain const& chain = GetParam();
    TestScene scene(Text(chain));
    SceneAnswers const answers = Load(scene, AssemblyId(chain, 0));
    EXPECT_EQ(answers.files, chain.withFile ? 1U : 0U);
    EXPECT_EQ(answers.assemblies, chain.levels);
    EXPECT_EQ(answers.instances, chain.withPart ? chain.levels : chain.levels - 1);
    EXPECT_EQ(answers.parts, chain.withPart ? 1U : 0U);
    EXPECT_EQ(answers.absent, 0U);
}

INSTANTIATE_TEST_SUITE_P(Chains, DepthOf,
                         testing::Values(Chain{1000, true, false, false}, Chain{1000, true, false, true},
                                         Chain{1000, true, true, false}, Chain{1000, true, true, true},
                                         Chain{1000, false, false, false}, Chain{1000, false, false, true},
                                         Chain{1000, false, true, false}, Chain{1000, false, true, true},
                                         // Read from the bottom up there is no depth.
                                         Chain{20000, false, true, true}));

TEST(Depth, AHundredThousandLevelsEndWithoutHarm)
{
    Chain const chain{100000, true, false, true};
    TestScene scene(Text(chain));
    RunOnStack(kSmallStack,
               [&]
               {
                   scene.Begin();
                   // The chain is whole in runs; the last assembly of each could not reach the next one.
                   unsigned long long assemblies = 0;
                   unsigned long long ends = 0;
                   for (unsigned long long level = 0; level < chain.levels; ++level)
                   {
                       IAssembly const& assembly = scene.Get<IAssembly>(AssemblyId(chain, level).c_str());
                       ++assemblies;
                       if (assembly.ChildCount() == 0)
                           ++ends;
                   }
                   EXPECT_EQ(assemblies, chain.levels) << "every assembly is read in its own turn at the latest";
                   EXPECT_EQ(ends, chain.levels / ObjectNodeIndex::kDeepestReference);
                   SceneAnswers const answers = WalkScene(scene.Producer(), {AssemblyId(chain, 0)});
                   EXPECT_EQ(answers.assemblies, ObjectNodeIndex::kDeepestReference);
               });
}

TEST(Depth, AHundredThousandInstancesOfEachOtherEndWithoutHarm)
{
    std::string text = "<Scene><IPart ID='p'/>";
    for (unsigned long long i = 0; i < 100000; ++i)
        text += "<IInstance ID='" + Id('i', i) + "'><Child ID='" + Id('i', i + 1) + "'/></IInstance>";
    TestScene scene(text + "</Scene>");
    RunOnStack(kSmallStack, [&] { scene.Begin(); });
    EXPECT_TRUE(scene.Has("p"));
    EXPECT_FALSE(scene.Has(Id('i', 0).c_str()));
    EXPECT_FALSE(scene.Has(Id('i', 99999).c_str()));
}

TEST(Depth, AHundredThousandFilesThatNameEachOtherEndWithoutHarm)
{
    std::string text = "<Scene>";
    for (unsigned long long i = 0; i < 100000; ++i)
        text += "<IFile ID='" + Id('f', i) + "'><ChildSet><C ID='" + Id('f', i + 1) + "'/></ChildSet></IFile>";
    TestScene scene(text + "</Scene>");
    RunOnStack(kSmallStack, [&] { scene.Begin(); });
    unsigned long long ends = 0;
    for (unsigned long long i = 0; i < 100000; ++i)
    {
        if (scene.Get<IFile>(Id('f', i).c_str()).ChildCount() == 0)
            ++ends;
    }
    EXPECT_EQ(ends, 100000U / ObjectNodeIndex::kDeepestReference);
}

}  // namespace KVR::Test

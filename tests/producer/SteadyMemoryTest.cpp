// A host that reads scene after scene takes no more memory for the thousandth than for the hundredth.

#include <gtest/gtest.h>

#include "tests/support/FullScene.h"
#include "tests/support/ResidentMemory.h"
#include "tests/support/SanitizedBuild.h"
#include "tests/support/SceneWalk.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

namespace
{

constexpr int kWarmUp = 100;
constexpr int kCycles = 1000;
// What an allocator may keep for itself over 900 cycles; a leak of one object in each would be more.
constexpr long kToleranceKB = 300;
// Sanitizers hold on to freed memory, so that there the cycles are run for leaks alone, and fewer of them.
constexpr int kSanitizedCycles = 150;

template <class Cycle>
void ExpectSteadyMemory(Cycle cycle)
{
    long warm = 0;
    for (int i = 0; i < (kIsSanitized ? kSanitizedCycles : kCycles); ++i)
    {
        if (i == kWarmUp)
            warm = ResidentMemoryKB();
        ASSERT_NO_FATAL_FAILURE(cycle());
    }
    if (!kIsSanitized)
    {
        EXPECT_LT(ResidentMemoryKB() - warm, kToleranceKB);
    }
}

}  // namespace

TEST(SteadyMemory, OverAThousandCyclesOfAProducersLife)
{
    TempFolder const folder;
    WriteSideFiles(folder);
    UTF16String const path = folder.Write("scene.xml", FullScene());
    ExpectSteadyMemory(
        [&]
        {
            XMLProducerOptions options;
            XMLProducer producer(path, &options);
            producer.QueryFile();
            producer.BeginProcess(IdSet(), nullptr, nullptr);
            ASSERT_EQ(WalkScene(producer, FullSceneIds()).Objects(), 26U);
            producer.EndProcess();
        });
}

TEST(SteadyMemory, OverAThousandCyclesWithMappedIdsAndDisposedObjects)
{
    TempFolder const folder;
    WriteSideFiles(folder);
    UTF16String const path = folder.Write("scene.xml", FullScene());
    ExpectSteadyMemory(
        [&]
        {
            XMLProducer producer(path, nullptr);
            producer.SetNewObjectIdPrefix("first");
            producer.SetNewObjectIdPrefix("P");
            producer.BeginProcess(IdSet(), nullptr, nullptr);
            SceneAnswers const answers = WalkScene(producer);
            ASSERT_GT(answers.Objects(), 5U);
            for (char const* const id : {"P1", "P2", "P3", "P4", "P5", "P6", "P7", "P8"})
                producer.Dispose(id);
        });
}

TEST(SteadyMemory, OverAThousandCyclesThatFail)
{
    TempFolder const folder;
    UTF16String const broken = folder.Write("broken.xml", FullScene().substr(0, 3000));
    UTF16String const withoutBlob = folder.Write("scene.xml", FullScene());
    ExpectSteadyMemory(
        [&]
        {
            XMLProducer producer(broken, nullptr);
            producer.QueryFile();
            ASSERT_FALSE(Opens(producer));
            XMLProducer second(withoutBlob, nullptr);
            ASSERT_FALSE(Opens(second));
            XMLProducer missing(folder.PathOf("missing.xml"), nullptr);
            ASSERT_FALSE(Opens(missing));
        });
}

}  // namespace KVR::Test

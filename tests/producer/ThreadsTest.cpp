// Several producers on several threads: each thread has its own, and the host does what hosting.md asks of it. It holds
// Xerces for all of them, and lets one at a time open or end.

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>
#include <xercesc/util/PlatformUtils.hpp>

#include "tests/support/FullScene.h"
#include "tests/support/SceneWalk.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

namespace
{

constexpr unsigned kThreads = 4;
constexpr int kProducersEach = 50;

// A scene of its own for each thread, told by its label and by the number of its instances.
std::string SceneOf(unsigned thread)
{
    return Replaced(FullScene(), "<IPart ID=\"other\"",
                    "<IAssembly ID='many'><ChildSet>" +
                        Repeated("<IInstance ID='m'><Child ID='other'/></IInstance>", 20 * (thread + 1)) +
                        "</ChildSet></IAssembly><IPart VersionPersistentId='thread " + std::to_string(thread) +
                        "' ID=\"other\"");
}

}  // namespace

TEST(Threads, ReadScenesOfTheirOwnWhileTheHostHoldsXerces)
{
    xercesc::XMLPlatformUtils::Initialize();
    {
        std::vector<std::string> expected;
        TempFolder const folder;
        WriteSideFiles(folder);
        std::vector<std::string> ids = FullSceneIds();
        ids.emplace_back("many");
        for (unsigned thread = 0; thread < kThreads; ++thread)
        {
            XMLProducer producer(folder.Write(std::to_string(thread) + ".xml", SceneOf(thread)), nullptr);
            producer.BeginProcess(IdSet(), nullptr, nullptr);
            SceneAnswers const answers = WalkScene(producer, ids);
            EXPECT_EQ(answers.assemblies, 3U);
            expected.push_back(answers.text);
        }
        std::atomic<int> right = 0;
        std::mutex opening;
        std::vector<std::thread> threads;
        for (unsigned thread = 0; thread < kThreads; ++thread)
        {
            threads.emplace_back(
                [&, thread]
                {
                    UTF16String const path = folder.PathOf(std::to_string(thread) + ".xml");
                    for (int i = 0; i < kProducersEach; ++i)
                    {
                        auto const producer = std::make_unique<XMLProducer>(path, nullptr);
                        {
                            std::lock_guard<std::mutex> const lock(opening);
                            producer->QueryFile();
                            producer->BeginProcess(IdSet(), nullptr, nullptr);
                        }
                        // Questions go on while others open and end.
                        if (WalkScene(*producer, ids).text == expected[thread])
                            ++right;
                        std::lock_guard<std::mutex> const lock(opening);
                        producer->EndProcess();
                    }
                });
        }
        for (std::thread& thread : threads)
            thread.join();
        EXPECT_EQ(right, static_cast<int>(kThreads) * kProducersEach);
    }
    xercesc::XMLPlatformUtils::Terminate();
}

TEST(Threads, MeetBrokenScenesWithoutHarmToEachOther)
{
    xercesc::XMLPlatformUtils::Initialize();
    {
        TempFolder const folder;
        WriteSideFiles(folder);
        UTF16String const good = folder.Write("good.xml", FullScene());
        UTF16String const broken = folder.Write("broken.xml", FullScene().substr(0, 2000));
        std::mutex opening;
        std::atomic<int> read = 0;
        std::atomic<int> refused = 0;
        std::vector<std::thread> threads;
        for (unsigned thread = 0; thread < kThreads; ++thread)
        {
            threads.emplace_back(
                [&, thread]
                {
                    for (int i = 0; i < kProducersEach; ++i)
                    {
                        std::lock_guard<std::mutex> const lock(opening);
                        XMLProducer producer(thread % 2 == 0 ? good : broken, nullptr);
                        ++(Opens(producer) ? read : refused);
                    }
                });
        }
        for (std::thread& thread : threads)
            thread.join();
        EXPECT_EQ(read, 2 * kProducersEach);
        EXPECT_EQ(refused, 2 * kProducersEach);
    }
    xercesc::XMLPlatformUtils::Terminate();
}

}  // namespace KVR::Test

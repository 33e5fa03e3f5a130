// What docs/hosting.md allows many threads: producers side by side, opened and ended under one lock, asked without.

#include <algorithm>
#include <atomic>
#include <thread>
#include <xercesc/util/PlatformUtils.hpp>

#include "framework/xml_util/DocumentPolicy.h"
#include "tests/campaigns/Campaign.h"
#include "tests/campaigns/Scenes.h"

namespace KVR::Campaigns
{

void RunThreads(double scale, Tally& tally)
{
    constexpr std::uint64_t kProducers = 50'000;
    constexpr std::size_t kThreads = 16;
    // So many in a process, which has ten seconds.
    constexpr std::uint64_t kTogether = 500;
    SetDocumentPolicy(DocumentPolicy::Untrusted());
    SceneCopies copies;
    std::string const scenes[] = {copies.Make(SceneCopies::Kind::kComplete), copies.Make(SceneCopies::Kind::kFull),
                                  copies.Make(SceneCopies::Kind::kModel)};
    std::uint64_t const count = Share(scale, kProducers);
    RunForked(
        tally, (count + kTogether - 1) / kTogether, 1,
        [&](std::uint64_t)
        {
            // As hosts have to: the start of Xerces-C is not safe against itself.
            xercesc::XMLPlatformUtils::Initialize();
            std::mutex lock;
            std::atomic<std::uint64_t> next{0};
            std::atomic<bool> isWrong{false};
            std::vector<std::thread> threads;
            for (std::size_t i = 0; i < kThreads; ++i)
                threads.emplace_back(
                    [&]
                    {
                        for (std::uint64_t input = next++; input < std::min(count, kTogether); input = next++)
                            if (!AskScene(scenes[input % 3], input % 2 == 0 ? "n" : nullptr, &lock).empty())
                                isWrong = true;
                    });
            for (std::thread& thread : threads)
                thread.join();
            xercesc::XMLPlatformUtils::Terminate();
            return std::string(isWrong ? "an answer that is an exception" : "");
        },
        [](std::uint64_t) { return std::string("threads"); });
    tally.inputs = count;
}

}  // namespace KVR::Campaigns

// Campaigns against the library and the program's parts: kvr_campaigns [--share FRACTION] [NAME...]. Prints a line of
// figures for each, and ends with 1 when any has found something.

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/campaigns/Campaign.h"

namespace
{

using namespace KVR::Campaigns;

constexpr Campaign kCampaigns[] = {
    {"side-files",
     "every side file and scene cut to every length, every byte patched in five ways, kernel stores also with a digest "
     "that fits; everything asked",
     &RunSideFiles},
    {"scenes", "scenes changed by the grammar of elements and by bytes, with and without prefix; one in 25 exported",
     &RunScenes},
    {"cycles",
     "scenes with references of all kinds in circles of 1, 2, 3 and 7 objects, alone, two that meet, and reached from "
     "several roots; asked, exported and checked",
     &RunCycles},
    {"failures",
     "an allocation that fails, once and from there on, while a scene with every store is opened, asked and ended, and "
     "a model is imported and exported",
     &RunFailures},
    {"file-calls",
     "calls of the system for files that fail, or are short, one by one while the program imports, exports and dumps",
     &RunFileCalls},
    {"counts", "every place of stores, scenes and models that may be a count by 12 values, within 1 s and 512 MiB",
     &RunCounts},
    {"threads", "producers side by side in 16 threads", &RunThreads},
    {"soak", "open, ask, end, import and export over and over within 256 kB and the same files open", &RunSoak},
    {"xml", "documents that attack the parser, with verdicts for hosts that trust nobody and by default", &RunXml},
    {"side-paths", "what a scene may name as side files, with verdicts", &RunSidePaths},
    {"models", "mutants of models in every format: a scene or a sentence, within the limits, nothing left over",
     &RunModels},
    {"watch", "a scene that is read again each time that it changes, whole or torn, within 256 kB", &RunWatch},
    {"misuse", "what hosts are allowed, which works, and what they are forbidden, with what comes of it", &RunMisuse},
};

bool Run(Campaign const& campaign, double share)
{
    Tally tally;
    campaign.run(share, tally);
    std::printf(
        "%.*s: %llu inputs, %llu crashes, %llu hangs, %llu leaks, %llu wrong answers; the slowest took %.2f s, the "
        "largest process %llu MiB; %.*s\n",
        static_cast<int>(campaign.name.size()), campaign.name.data(), static_cast<unsigned long long>(tally.inputs),
        static_cast<unsigned long long>(tally.crashes), static_cast<unsigned long long>(tally.hangs),
        static_cast<unsigned long long>(tally.leaks), static_cast<unsigned long long>(tally.wrong), tally.slowest,
        static_cast<unsigned long long>(tally.peakKB / 1024), static_cast<int>(campaign.covers.size()),
        campaign.covers.data());
    for (std::string const& finding : tally.findings)
        std::printf("  %s\n", finding.c_str());
    std::fflush(stdout);
    return tally.IsGood();
}

}  // namespace

int main(int argc, char** argv)
{
    // What the allocator keeps for itself counts as held, unless it keeps nothing.
    if (!std::getenv("GLIBC_TUNABLES"))
    {
        setenv("GLIBC_TUNABLES", "glibc.malloc.tcache_count=0", 1);
        execv("/proc/self/exe", argv);
    }
    double share = 1.0;
    std::vector<std::string> names;
    for (int i = 1; i < argc; ++i)
        if (std::strcmp(argv[i], "--share") == 0 && i + 1 < argc)
            share = std::atof(argv[++i]);
        else
            names.emplace_back(argv[i]);
    bool isGood = true;
    std::size_t known = 0;
    for (Campaign const& campaign : kCampaigns)
    {
        bool isChosen = names.empty();
        for (std::string const& name : names)
            isChosen |= name == campaign.name;
        known += isChosen;
        try
        {
            isGood &= !isChosen || Run(campaign, share);
        }
        catch (std::exception const& error)
        {
            std::printf("%s\n", error.what());
            isGood = false;
        }
    }
    return isGood && known >= names.size() ? EXIT_SUCCESS : EXIT_FAILURE;
}

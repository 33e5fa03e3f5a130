// Everything that the library and the exchange do, over and over: memory and file descriptors stay as they are.

#include <malloc.h>

#include <cstdlib>
#include <filesystem>

#include "exchange/ExportScene.h"
#include "exchange/ImportModel.h"
#include "framework/xml_util/DocumentPolicy.h"
#include "tests/campaigns/Campaign.h"
#include "tests/campaigns/ModelFiles.h"
#include "tests/campaigns/Scenes.h"

namespace KVR::Campaigns
{

namespace
{

namespace fs = std::filesystem;

constexpr std::uint64_t kCycles = 25'000;
constexpr std::uint64_t kBetweenExchanges = 100;
constexpr std::size_t kMostGrowth = 256 * 1024;

std::size_t OpenFiles()
{
    return static_cast<std::size_t>(std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator()));
}

std::size_t HeldBytes()
{
    malloc_trim(0);
    struct mallinfo2 const info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

std::string Exchange(Test::TempFolder const& folder)
{
    std::string const scene = folder.NarrowPathOf("out.xml");
    if (ImportModel(folder.NarrowPathOf("m.brep"), scene).outcome != Outcome::kDone)
        return "the import failed";
    SceneOptions options;
    options.path = scene;
    for (char const* const name : {"out.glb", "out.step", "out.stl"})
        if (ExportScene(options, folder.NarrowPathOf(name)).outcome != Outcome::kDone)
            return std::string("the export failed: ") + name;
    return {};
}

}  // namespace

void RunSoak(double scale, Tally& tally)
{
    SetDocumentPolicy(DocumentPolicy::Untrusted());
    SceneCopies copies;
    std::string const scenes[] = {copies.Make(SceneCopies::Kind::kComplete), copies.Make(SceneCopies::Kind::kFull),
                                  copies.Make(SceneCopies::Kind::kModel)};
    Test::TempFolder const folder;
    WriteBytes(folder.NarrowPathOf("m.brep"), ModelFiles::Brep());
    std::uint64_t const cycles = Share(scale, kCycles);
    // All in one process, which is why it is one input here; the cycles are counted below.
    std::size_t files = 0;
    std::size_t held = 0;
    for (std::uint64_t cycle = 0; cycle < cycles + 10; ++cycle)
    {
        // What libraries keep for good they have by then.
        if (cycle == 10)
        {
            files = OpenFiles();
            held = HeldBytes();
        }
        std::string wrong = AskScene(scenes[cycle % 3], cycle % 2 == 0 ? "n" : nullptr);
        if (wrong.empty() && cycle % kBetweenExchanges == 1)
            wrong = Exchange(folder);
        if (!wrong.empty())
            tally.Find(tally.wrong, "cycle " + std::to_string(cycle) + ": " + wrong);
        ++tally.inputs;
    }
    std::size_t const heldNow = HeldBytes();
    if (heldNow > held + kMostGrowth)
        tally.Find(tally.leaks, std::to_string(heldNow - held) + " bytes more than at the beginning");
    if (OpenFiles() != files)
        tally.Find(tally.leaks, "files are left open");
}

}  // namespace KVR::Campaigns

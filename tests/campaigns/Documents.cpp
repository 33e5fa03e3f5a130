// Scenes changed by a grammar and byte by byte, and such with references in circles, with and without a prefix for ids;
// some are exported and checked, too.

#include <algorithm>
#include <filesystem>

#include "exchange/ExportScene.h"
#include "framework/api/Exception.h"
#include "framework/xml_util/DocumentPolicy.h"
#include "inspect/Check.h"
#include "tests/campaigns/Campaign.h"
#include "tests/campaigns/Cycles.h"
#include "tests/campaigns/Mutation.h"
#include "tests/campaigns/Scenes.h"

namespace KVR::Campaigns
{

namespace
{

constexpr std::uint64_t kStructured = 200'000;
constexpr std::uint64_t kBytes = 50'000;
// Each twice or so: CycleCount() tells how many there are.
constexpr std::uint64_t kCycles = 20'000;
// One in so many is exported.
constexpr std::uint64_t kBetweenExports = 25;
constexpr char const* kFormats[] = {".glb", ".stl", ".obj", ".ply", ".step", ".html"};

std::string Export(std::string const& scene, std::uint64_t number)
{
    SceneOptions options;
    options.path = scene;
    std::string const target =
        (std::filesystem::path(scene).parent_path() / "out").string() + kFormats[number % std::size(kFormats)];
    ExportResult const result = ExportScene(options, target);
    std::error_code ignored;
    bool const isThere = std::filesystem::remove(target, ignored);
    if ((result.outcome == Outcome::kDone) != isThere)
        return "an export whose file does not fit its outcome: " + result.failure;
    if (result.failure.find("its writer ended") != std::string::npos)
        return result.failure;
    return result.outcome == Outcome::kDone || !result.failure.empty() ? std::string() : "no sentence";
}

// One in four is exported, and one checked.
std::string TryCycle(std::string const& scene, std::uint64_t number)
{
    std::string wrong = AskScene(scene, number % 2 == 0 ? "n" : nullptr);
    Dice dice(number);
    std::size_t const way = dice.Below(4);
    if (wrong.empty() && way == 0)
        wrong = Export(scene, dice.Next());
    if (!wrong.empty() || way != 1)
        return wrong;
    CheckOptions options;
    options.account = true;
    for (Account const& account : CheckScene(scene, options).accounts)
        if (!account.Agrees())
            wrong = "an account that does not agree";
    return wrong;
}

}  // namespace

void RunScenes(double scale, Tally& tally)
{
    SetDocumentPolicy(DocumentPolicy::Untrusted());
    SceneCopies copies;
    std::string const scenes[] = {copies.Make(SceneCopies::Kind::kComplete), copies.Make(SceneCopies::Kind::kFull),
                                  copies.Make(SceneCopies::Kind::kModel)};
    std::string documents[3];
    for (std::size_t i = 0; i < 3; ++i)
        documents[i] = ReadBytes(scenes[i]);
    std::uint64_t const structured = Share(scale, kStructured);
    RunForked(
        tally, structured + Share(scale, kBytes), 250,
        [&](std::uint64_t input)
        {
            Dice dice(input);
            std::size_t const scene = dice.Below(3);
            WriteBytes(scenes[scene], input < structured ? MutatedScene(documents[scene], dice)
                                                         : MutatedBytes(documents[scene], dice));
            if (input % kBetweenExports == 0)
                return Export(scenes[scene], input / kBetweenExports);
            return AskScene(scenes[scene], input % 2 == 0 ? "n" : nullptr);
        },
        [&](std::uint64_t input)
        { return (input < structured ? "structured mutant " : "byte mutant ") + std::to_string(input); });
}

void RunCycles(double scale, Tally& tally)
{
    SetDocumentPolicy(DocumentPolicy::Untrusted());
    SceneCopies copies;
    std::string const scenes[] = {copies.Make(SceneCopies::Kind::kComplete), copies.Make(SceneCopies::Kind::kFull)};
    std::string const documents[] = {ReadBytes(scenes[0]), ReadBytes(scenes[1])};
    std::uint64_t const count = Share(scale, kCycles);
    // A share is spread over all of them.
    std::uint64_t const step = std::max<std::uint64_t>(kCycles / count, 1) | 1U;
    RunForked(
        tally, count, 250,
        [&](std::uint64_t input)
        {
            std::size_t const scene = input * step / CycleCount() % 2;
            WriteBytes(scenes[scene], CyclicScene(documents[scene], input * step));
            return TryCycle(scenes[scene], input);
        },
        [](std::uint64_t input) { return "circle " + std::to_string(input); });
}

}  // namespace KVR::Campaigns

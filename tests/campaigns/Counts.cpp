// Every place of a file that may be a count, by hostile values, each within a second and 512 MiB.

#include <sys/resource.h>

#include <array>
#include <cstring>
#include <filesystem>

#include "exchange/ImportModel.h"
#include "framework/xml_util/DocumentPolicy.h"
#include "tests/campaigns/Campaign.h"
#include "tests/campaigns/ModelFiles.h"
#include "tests/campaigns/Scenes.h"
#include "tests/support/KernelBytes.h"
#include "tests/support/SanitizedBuild.h"

namespace KVR::Campaigns
{

namespace
{

namespace fs = std::filesystem;

constexpr std::array<std::uint64_t, 12> kValues = {
    0, 1, 0x7F, 0xFF, 0xFFFF, 0x10000, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFFU, 0x100000000U, 1ULL << 62U, ~0ULL};
constexpr std::array<char const*, 12> kTexts = {"0",
                                                "1",
                                                "127",
                                                "255",
                                                "65535",
                                                "65536",
                                                "2147483647",
                                                "2147483648",
                                                "4294967295",
                                                "4294967296",
                                                "4611686018427387904",
                                                "-1"};

// A second for the library; a child that imports has the time to start, too. Sanitizers take more of both.
constexpr double kMostSeconds = Test::kIsSanitized ? 6.0 : 1.0;
constexpr long kMostKB = (Test::kIsSanitized ? 2048L : 512L) * 1024;

struct Target
{
    std::string name;
    std::string bytes;
    bool isText = false;
    /// Of a kernel store: its head, which is made to fit.
    std::size_t head = 0;
    /// Where it is written, and the scene to be asked; without a scene it is a model to be imported.
    std::string file;
    std::string scene;

    /// The places of numbers: in texts where one begins, else every byte.
    std::vector<std::size_t> places = {};
};

void FindPlaces(Target& target)
{
    auto const isDigit = [](char c) { return c >= '0' && c <= '9'; };
    for (std::size_t i = target.head; i < target.bytes.size(); ++i)
        if (!target.isText || (isDigit(target.bytes[i]) && (i == 0 || !isDigit(target.bytes[i - 1]))))
            target.places.push_back(i);
}

std::string Mutant(Target const& target, std::size_t place, std::size_t value)
{
    std::string bytes = target.bytes;
    if (target.isText)
    {
        std::size_t const end = std::min(bytes.find_first_not_of("0123456789", place), bytes.size());
        bytes.replace(place, end - place, kTexts[value]);
    }
    else
    {
        // Counts of four bytes take the lower half.
        std::size_t const size = std::min<std::size_t>(value % 2 == 0 ? 8 : 4, bytes.size() - place);
        std::memcpy(bytes.data() + place, &kValues[value], size);
    }
    return target.head > 0 ? Test::WithHead(bytes.substr(target.head), target.isText) : bytes;
}

double Seconds(int who)
{
    struct rusage usage
    {
    };
    getrusage(who, &usage);
    return static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
           1e-6 * static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec);
}

std::string TryTarget(Target const& target)
{
    double const begin = Seconds(RUSAGE_SELF) + Seconds(RUSAGE_CHILDREN);
    std::string wrong;
    if (!target.scene.empty())
        wrong = AskScene(target.scene);
    else
    {
        std::string const scene = (fs::path(target.file).parent_path() / "out.xml").string();
        ImportResult const result = ImportModel(target.file, scene);
        if (result.outcome == Outcome::kFailed && result.failure.empty())
            wrong = "no sentence";
    }
    double const taken = Seconds(RUSAGE_SELF) + Seconds(RUSAGE_CHILDREN) - begin;
    struct rusage usage
    {
    };
    getrusage(target.scene.empty() ? RUSAGE_CHILDREN : RUSAGE_SELF, &usage);
    if (wrong.empty() && taken > kMostSeconds)
        return std::to_string(taken) + " s";
    if (wrong.empty() && usage.ru_maxrss > kMostKB)
        return std::to_string(usage.ru_maxrss) + " kB";
    return wrong;
}

std::vector<Target> Targets(SceneCopies& copies, Test::TempFolder const& models)
{
    std::vector<Target> targets;
    for (SceneCopies::Kind const kind : {SceneCopies::Kind::kComplete, SceneCopies::Kind::kModel})
        for (std::string const& name : copies.Files(kind))
        {
            Target target{name, {}, false, 0, {}, copies.Make(kind), {}};
            target.file = (fs::path(target.scene).parent_path() / name).string();
            target.bytes = ReadBytes(target.file);
            std::string const extension = fs::path(name).extension().string();
            target.isText =
                extension == ".xml" || extension == ".sat" || extension == ".kvrproperty" || extension == ".ids";
            if (extension == ".sat" || extension == ".sab")
                target.head = Test::WithHead({}, target.isText).size();
            targets.push_back(std::move(target));
        }
    for (ModelFiles::Model const& model : ModelFiles::All())
    {
        // The large one has no counts, but names of entities.
        if (model.bytes.size() > 100'000)
            continue;
        Target target{model.name, model.bytes, false, 0, models.NarrowPathOf("m" + model.extension), {}, {}};
        target.isText = model.name.find("binary") == std::string::npos && model.name != "GLB";
        targets.push_back(std::move(target));
    }
    for (Target& target : targets)
        FindPlaces(target);
    return targets;
}

}  // namespace

void RunCounts(double scale, Tally& tally)
{
    SetDocumentPolicy(DocumentPolicy::Untrusted());
    SceneCopies copies;
    Test::TempFolder const models;
    for (Target const& target : Targets(copies, models))
    {
        // What is imported takes a process each: every thirtieth place of it stands for all.
        std::uint64_t const all = target.places.size() * kValues.size() / (target.scene.empty() ? 30 : 1);
        std::uint64_t const count = std::min<std::uint64_t>(Share(scale, std::max<std::uint64_t>(all, 1)), all);
        std::uint64_t const total = target.places.size() * kValues.size();
        auto const numberOf = [&, total, count](std::uint64_t input) { return input * total / count; };
        RunForked(
            tally, count, 100,
            [&](std::uint64_t input)
            {
                std::uint64_t const number = numberOf(input);
                WriteBytes(target.file,
                           Mutant(target, target.places[number / kValues.size()], number % kValues.size()));
                return TryTarget(target);
            },
            [&](std::uint64_t input)
            {
                std::uint64_t const number = numberOf(input);
                return target.name + " at " + std::to_string(target.places[number / kValues.size()]) + " = " +
                       kTexts[number % kValues.size()];
            });
    }
}

}  // namespace KVR::Campaigns

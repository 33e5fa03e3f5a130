// What layers, groups and views cost beside a bare parse of the same scene, at a tenth of their full sizes and at all.

#include <benchmark/benchmark.h>
#include <fmt/format.h>
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/ChildProcess.h"
#include "bench/Goals.h"
#include "bench/OrganisationGenerator.h"
#include "bench/SceneGenerator.h"
#include "bench/ScratchFolder.h"
#include "bench/StructureMeasures.h"

namespace
{

using namespace KVR::Bench;

constexpr unsigned kStep = 10;
constexpr double kViewGoal = 1.1;
constexpr double kOtherGoal = 1.25;
constexpr double kGrowthGoal = 1.2;

struct Scene
{
    OrganisationCase kind;
    unsigned count = 0;
    Scenes files;
    std::vector<Round> rounds;
};

// One repetition is one round.
void RunRound(benchmark::State& state, Scene& scene)
{
    for ([[maybe_unused]] auto const iteration : state)
    {
        try
        {
            scene.rounds.push_back(MeasureRound(scene.files, scene.kind.lastId(scene.count)));
            state.SetIterationTime(scene.rounds.back().beginSeconds);
        }
        catch (std::exception const& exception)
        {
            state.SkipWithError(exception.what());
        }
    }
}

// A failed round ends the run with an exception.
class Failures : public benchmark::BenchmarkReporter
{
public:
    bool ReportContext(Context const&) override { return true; }
    void ReportRuns(std::vector<Run> const& runs) override
    {
        for (Run const& run : runs)
        {
            if (run.error_occurred)
                throw std::runtime_error(run.error_message);
        }
    }
};

template <class Figure>
double Median(Scene const& scene, Figure figure)
{
    std::vector<double> values;
    for (Round const& round : scene.rounds)
        values.push_back(figure(round));
    auto const middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

double RatioOf(Scene const& scene)
{
    return Median(scene, [](Round const& round) { return round.beginSeconds / round.parseSeconds; });
}

double SecondsPerThing(Scene const& scene, double Round::*seconds)
{
    return Median(scene, [&](Round const& round) { return round.*seconds; }) / scene.count;
}

// How much more a thing costs in the large scene than in the small one.
double Growth(Scene const& small, Scene const& large, double Round::*seconds)
{
    return SecondsPerThing(large, seconds) / SecondsPerThing(small, seconds);
}

// Scenes stand in pairs: a tenth, and the full size.
void Report(std::vector<Scene> const& scenes)
{
    fmt::print("{:<22} {:>18} {:>8} {:>11} {:>13} {:>6} {:>12} {:>12}\n", "scene", "", "file MB", "parse ms",
               "begin ms", "ratio", "document MB", "beyond MB");
    for (Scene const& scene : scenes)
    {
        fmt::print("{:<22} {:>18} {:>8.1f} {:>11.1f} {:>13.1f} {:>6.2f} {:>12.1f} {:>12.1f}\n", scene.kind.name,
                   fmt::format("{} {}", scene.count, scene.kind.unit),
                   static_cast<double>(std::filesystem::file_size(scene.files.measured)) / 1e6,
                   Median(scene, [](Round const& round) { return round.parseSeconds * 1e3; }),
                   Median(scene, [](Round const& round) { return round.beginSeconds * 1e3; }), RatioOf(scene),
                   Median(scene, [](Round const& round) { return round.parseMemory / 1e6; }),
                   Median(scene, [](Round const& round) { return (round.beginMemory - round.parseMemory) / 1e6; }));
    }
    std::vector<Goal> goals;
    for (std::size_t i = 0; i + 1 < scenes.size(); i += 2)
    {
        Scene const& small = scenes[i];
        Scene const& large = scenes[i + 1];
        std::string const name(large.kind.name);
        goals.push_back({"BeginProcess / bare parse, " + name, "", name.starts_with("view") ? kViewGoal : kOtherGoal,
                         RatioOf(large)});
        double const growth = Growth(small, large, &Round::beginSeconds);
        fmt::print("{}: a thing takes {:.2f} of the time in a tenth of the scene, {:.2f} in the bare parse\n", name,
                   growth, Growth(small, large, &Round::parseSeconds));
        goals.push_back({"growth of BeginProcess to the full size, " + name, "", kGrowthGoal, growth});
    }
    fmt::print("{}", GoalsText(goals));
}

void Run(int repeat)
{
    ScratchFolder const folder;
    std::filesystem::path const smallest = folder.Path() / "smallest.xml";
    DoInChildProcess([&] { WriteScene(smallest, 1); });
    std::vector<Scene> scenes;
    for (OrganisationCase const& kind : OrganisationCases())
    {
        for (unsigned const count : {kind.count / kStep, kind.count})
            scenes.push_back({kind, count, {smallest, folder.Path() / fmt::format("{}.xml", scenes.size())}, {}});
    }
    for (Scene& scene : scenes)
    {
        DoInChildProcess([&] { scene.kind.write(scene.files.measured, scene.count); });
        benchmark::RegisterBenchmark(fmt::format("{}/{}", scene.kind.name, scene.count).c_str(), RunRound,
                                     std::ref(scene))
            ->Iterations(1)
            ->Repetitions(repeat)
            ->UseManualTime()
            ->Unit(benchmark::kSecond);
    }
    Failures failures;
    benchmark::RunSpecifiedBenchmarks(&failures);
    Report(scenes);
}

}  // namespace

int main(int argc, char** argv)
{
    try
    {
        int repeat = 5;
        CLI::App app("Measures the reading of layers, groups and views beside a bare parse of the same scene.");
        app.add_option("--repeat", repeat, "Rounds per scene; the medians count")
            ->check(CLI::Range(1, 1000))
            ->capture_default_str();
        CLI11_PARSE(app, argc, argv);
        Run(repeat);
        return 0;
    }
    catch (std::exception const& exception)
    {
        std::fprintf(stderr, "kvr_bench_organisation: %s\n", exception.what());
        return 1;
    }
}

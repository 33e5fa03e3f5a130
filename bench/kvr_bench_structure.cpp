// What the producer costs beside a bare parse of the same scene, from a thousand instances to a million.

#include <benchmark/benchmark.h>
#include <fmt/format.h>
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <functional>
#include <iterator>
#include <string>
#include <vector>

#include "bench/ChildProcess.h"
#include "bench/SceneGenerator.h"
#include "bench/ScratchFolder.h"
#include "bench/StructureMeasures.h"
#include "bench/StructureReport.h"

namespace
{

using namespace KVR::Bench;

constexpr unsigned kSizes[] = {1'000, 10'000, 100'000, 1'000'000};

struct Options
{
    unsigned max = 1'000'000;
    int repeat = 5;
    bool json = false;
};

struct Scene
{
    Scenes files;
    unsigned instances;
    std::vector<Round> rounds;
};

// One repetition is one round. The time that counts is that of BeginProcess; the rest of the round stands beside it.
void RunRound(benchmark::State& state, Scene& scene)
{
    for ([[maybe_unused]] auto const iteration : state)
    {
        try
        {
            Round const round = MeasureRound(scene.files, scene.instances);
            scene.rounds.push_back(round);
            state.SetIterationTime(round.beginSeconds);
            state.counters["parse_s"] = round.parseSeconds;
            state.counters["ratio"] = round.beginSeconds / round.parseSeconds;
            state.counters["end_s"] = round.endSeconds;
            state.counters["load_ns"] = round.loadNanoseconds;
            state.counters["kept_bytes"] = round.keptMemory;
            state.counters["extra_bytes"] = round.beginMemory - round.parseMemory;
        }
        catch (std::exception const& exception)
        {
            state.SkipWithError(exception.what());
        }
    }
}

// Says on standard error how far the run is. A failed round ends it with an exception.
class Progress : public benchmark::BenchmarkReporter
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
        // The runs come first, and then what was made of them.
        if (runs.front().run_type == Run::RT_Iteration)
            fmt::print(stderr, "{} done\n", runs.front().run_name.function_name);
    }
};

template <class Figure>
double Median(std::vector<Round> const& rounds, Figure figure)
{
    std::vector<double> values;
    for (Round const& round : rounds)
        values.push_back(figure(round));
    auto const middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

SizeFigures Summary(Scene const& scene)
{
    auto const median = [&](double Round::*figure)
    { return Median(scene.rounds, [&](Round const& round) { return round.*figure; }); };
    SizeFigures size;
    size.instances = scene.instances;
    size.fileBytes = static_cast<double>(std::filesystem::file_size(scene.files.measured));
    size.parseSeconds = median(&Round::parseSeconds);
    size.beginSeconds = median(&Round::beginSeconds);
    size.beginRatio = Median(scene.rounds, [](Round const& round) { return round.beginSeconds / round.parseSeconds; });
    size.endSeconds = median(&Round::endSeconds);
    size.loadNanoseconds = median(&Round::loadNanoseconds);
    size.parseBytesPerInstance = median(&Round::parseMemory) / scene.instances;
    size.extraBytesPerInstance =
        Median(scene.rounds, [](Round const& round) { return round.beginMemory - round.parseMemory; }) /
        scene.instances;
    size.keptBytesPerInstance = median(&Round::keptMemory) / scene.instances;
    return size;
}

void Run(Options const& options)
{
    ScratchFolder const folder;
    std::filesystem::path const smallest = folder.Path() / "1.xml";
    DoInChildProcess([&] { WriteScene(smallest, 1); });
    std::vector<Scene> scenes;
    for (unsigned const instances : kSizes)
    {
        if (instances <= options.max)
            scenes.push_back({{smallest, folder.Path() / fmt::format("{}.xml", instances)}, instances, {}});
    }
    for (Scene& scene : scenes)
    {
        DoInChildProcess([&] { WriteScene(scene.files.measured, scene.instances); });
        benchmark::RegisterBenchmark(fmt::format("Structure/{}", scene.instances).c_str(), RunRound, std::ref(scene))
            ->Iterations(1)
            ->Repetitions(options.repeat)
            ->UseManualTime()
            ->Unit(benchmark::kSecond);
    }
    Progress progress;
    benchmark::RunSpecifiedBenchmarks(&progress);
    std::vector<SizeFigures> sizes;
    for (Scene const& scene : scenes)
        sizes.push_back(Summary(scene));
    std::fputs((options.json ? JsonText(sizes) : TableText(sizes)).c_str(), stdout);
}

}  // namespace

int main(int argc, char** argv)
{
    try
    {
        Options options;
        CLI::App app("Measures the reading of product structure beside a bare parse of the same scene.");
        app.add_option("--max", options.max, "The largest scene, in instances")
            ->check(CLI::Range(kSizes[0], kSizes[std::size(kSizes) - 1]))
            ->capture_default_str();
        app.add_option("--repeat", options.repeat, "Rounds per scene; the medians count")
            ->check(CLI::Range(1, 1000))
            ->capture_default_str();
        app.add_flag("--json", options.json, "Print the figures as JSON");
        CLI11_PARSE(app, argc, argv);
        Run(options);
        return 0;
    }
    catch (std::exception const& exception)
    {
        std::fprintf(stderr, "kvr_bench_structure: %s\n", exception.what());
        return 1;
    }
}

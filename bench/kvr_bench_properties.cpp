// What the properties of a scene cost beside a bare parse of their file: kept by objects, and dropped.

#include <fmt/format.h>
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "bench/ChildProcess.h"
#include "bench/Goals.h"
#include "bench/PropertyMeasures.h"
#include "bench/ScratchFolder.h"

namespace
{

using namespace KVR::Bench;

constexpr double kMostTime = 1.25;
constexpr double kMostExtraMiB = 16.0;

struct Options
{
    unsigned entries = 1'000'000;
    int repeat = 5;
};

PropertyScene SceneIn(ScratchFolder const& folder, std::string const& name, unsigned entries, bool isKept)
{
    PropertyScene scene{folder.Path() / (name + ".xml"), folder.Path() / (name + ".kvrproperty"), entries, isKept};
    DoInChildProcess([&] { WritePropertyScene(scene); });
    return scene;
}

template <class Figure>
double Median(std::vector<PropertyRound> const& rounds, Figure figure)
{
    std::vector<double> values;
    std::transform(rounds.begin(), rounds.end(), std::back_inserter(values), figure);
    auto const middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

// Prints a row, and answers what it makes of the goals.
std::vector<Goal> Report(std::string const& name, PropertyScene const& scene, std::vector<PropertyRound> const& rounds)
{
    double const mib = 1024.0 * 1024.0;
    double const ratio = Median(rounds, [](auto const& round) { return round.beginSeconds / round.parseSeconds; });
    double const extra = Median(rounds, [](auto const& round) { return round.extraBytes; }) / mib;
    fmt::print("{:<8} {:>9} {:>8.1f} {:>11.0f} {:>13.0f} {:>6.2f} {:>14.0f} {:>10.1f}\n", name, scene.entries,
               static_cast<double>(std::filesystem::file_size(scene.properties)) / 1e6,
               Median(rounds, [](auto const& round) { return round.parseSeconds; }) * 1e3,
               Median(rounds, [](auto const& round) { return round.beginSeconds; }) * 1e3, ratio,
               Median(rounds, [](auto const& round) { return round.keptBytes; }) / scene.entries, extra);
    return {{"BeginProcess / bare parse, " + name, "", kMostTime, ratio},
            {"peak beyond what is kept, " + name, " MiB", kMostExtraMiB, extra}};
}

void Run(Options const& options)
{
    ScratchFolder const folder;
    PropertyScene const smallest = SceneIn(folder, "smallest", 1, true);
    fmt::print("{:<8} {:>9} {:>8} {:>11} {:>13} {:>6} {:>14} {:>10}\n", "", "entries", "file MB", "bare ms",
               "BeginProcess", "ratio", "kept B/entry", "extra MiB");
    std::vector<Goal> goals;
    for (bool const isKept : {true, false})
    {
        std::string const name = isKept ? "kept" : "dropped";
        PropertyScene const scene = SceneIn(folder, name, options.entries, isKept);
        std::vector<PropertyRound> rounds;
        for (int i = 0; i < options.repeat; ++i)
            rounds.push_back(MeasureProperties(scene, smallest));
        std::vector<Goal> const reached = Report(name, scene, rounds);
        goals.insert(goals.end(), reached.begin(), reached.end());
    }
    fmt::print("{}", GoalsText(goals));
}

}  // namespace

int main(int argc, char** argv)
{
    try
    {
        Options options;
        CLI::App app("Measures the reading of properties beside a bare parse of the same file.");
        app.add_option("--entries", options.entries, "Properties in the file")
            ->check(CLI::Range(1, 100'000'000))
            ->capture_default_str();
        app.add_option("--repeat", options.repeat, "Rounds; the medians count")
            ->check(CLI::Range(1, 1000))
            ->capture_default_str();
        CLI11_PARSE(app, argc, argv);
        Run(options);
        return 0;
    }
    catch (std::exception const& exception)
    {
        std::fprintf(stderr, "kvr_bench_properties: %s\n", exception.what());
        return 1;
    }
}

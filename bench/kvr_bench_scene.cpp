// What the model of a scene costs beside the reading of the same scene, from ten thousand instances to a million, and
// what it takes to go through all occurrences and to ask for some by name.

#include <fmt/format.h>
#include <malloc.h>
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <iterator>
#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>
#include <xercesc/util/PlatformUtils.hpp>

#include "bench/ChildProcess.h"
#include "bench/Goals.h"
#include "bench/ProcessorTime.h"
#include "bench/SceneGenerator.h"
#include "bench/ScratchFolder.h"
#include "framework/api/IdSet.h"
#include "inspect/query/Query.h"
#include "producer/XMLProducer.h"
#include "scene/OccurrenceWalk.h"
#include "scene/SceneTotals.h"

namespace
{

using namespace KVR::Bench;

constexpr unsigned kSizes[] = {10'000, 100'000, 1'000'000};

struct Options
{
    unsigned max = 1'000'000;
    int repeat = 5;
    bool json = false;
};

double HeapBytes()
{
    struct mallinfo2 const info = mallinfo2();
    return static_cast<double>(info.uordblks) + static_cast<double>(info.hblkhd);
}

void Begin(KVR::IProducer& producer)
{
    producer.BeginProcess(KVR::IdSet(), nullptr, nullptr);
}

double WalkSeconds(KVR::Scene const& scene, unsigned long long occurrences)
{
    unsigned long long count = 0;
    double sum = 0.0;
    double const seconds = SecondsOf(
        [&]
        {
            for (KVR::OccurrenceWalk walk(scene); walk.Next(); ++count)
                sum += walk.Place()[3];
        });
    if (count != occurrences || !(sum == sum))
        throw std::runtime_error("The walk met another number of occurrences than the totals tell");
    return seconds;
}

double QuerySeconds(KVR::Scene const& scene)
{
    std::size_t count = 0;
    double const seconds =
        SecondsOf([&] { count = KVR::Query("part[name~\"*bolt*\" and not name=\"Shaft\"]").Find(scene).size(); });
    if (count == 0)
        throw std::runtime_error("The scene has no bolts");
    return seconds;
}

Figures Measure(std::filesystem::path const& smallest, std::filesystem::path const& path, unsigned instances)
{
    xercesc::XMLPlatformUtils::Initialize();
    {
        KVR::XMLProducer producer(KVR::UTF16String(smallest.wstring()), nullptr);
        Begin(producer);
        KVR::Scene const scene(producer, producer.RootObjectId().Id());
    }
    KVR::XMLProducer producer(KVR::UTF16String(path.wstring()), nullptr);
    double const begin = SecondsOf([&] { Begin(producer); });
    double const before = HeapBytes();
    std::optional<KVR::Scene> scene;
    double const build = SecondsOf([&] { scene.emplace(producer, producer.RootObjectId().Id()); });
    double const kept = HeapBytes() - before;
    KVR::SceneTotals totals;
    double const count = SecondsOf([&] { totals = KVR::SceneTotals::Of(*scene); });
    if (totals.instances != instances)
        throw std::runtime_error("The scene lacks instances");
    double const walk = WalkSeconds(*scene, totals.occurrences);
    return {{"begin", begin},
            {"build", build},
            {"ratio", build / begin},
            {"kept", kept / instances},
            {"totals", count},
            {"walk", static_cast<double>(totals.occurrences) / walk},
            {"query", QuerySeconds(*scene)}};
}

Figures Medians(std::vector<Figures> const& rounds)
{
    Figures medians;
    for (auto const& [name, ignored] : rounds.front())
    {
        std::vector<double> values;
        for (Figures const& round : rounds)
            values.push_back(round.at(name));
        auto const middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
        std::nth_element(values.begin(), middle, values.end());
        medians[name] = *middle;
    }
    return medians;
}

struct Size
{
    unsigned instances;
    Figures figures;
};

void Print(std::vector<Size> const& sizes, bool isJson)
{
    double ratio = 0.0;
    double kept = 0.0;
    double query = 0.0;
    for (Size const& size : sizes)
    {
        ratio = std::max(ratio, size.figures.at("ratio"));
        kept = std::max(kept, size.figures.at("kept"));
        query = std::max(query, size.figures.at("query"));
    }
    std::vector<Goal> const goals{{"building the scene / BeginProcess, worst size", "", 0.3, ratio},
                                  {"memory kept per instance, worst size", " B", 400.0, kept},
                                  {"a query by name, worst size", " ms", 1e3, query * 1e3}};
    if (isJson)
    {
        nlohmann::ordered_json json;
        for (Size const& size : sizes)
        {
            nlohmann::ordered_json entry{{"instances", size.instances}};
            for (auto const& [name, figure] : size.figures)
                entry[name] = figure;
            json["sizes"].push_back(entry);
        }
        for (Goal const& goal : goals)
            json["goals"].push_back({{"name", goal.name},
                                     {"atMost", goal.limit},
                                     {"measured", goal.reached},
                                     {"met", goal.reached <= goal.limit}});
        std::fputs((json.dump(2) + "\n").c_str(), stdout);
        return;
    }
    fmt::print("{:>10} {:>13} {:>11} {:>7} {:>12} {:>10} {:>18} {:>10}\n", "instances", "BeginProcess", "scene",
               "ratio", "kept", "totals", "occurrences", "query");
    fmt::print("{:>10} {:>13} {:>11} {:>7} {:>12} {:>10} {:>18} {:>10}\n", "", "ms", "ms", "", "B/instance", "ms",
               "walked per second", "ms");
    for (Size const& size : sizes)
        fmt::print("{:>10} {:>13.1f} {:>11.1f} {:>7.3f} {:>12.0f} {:>10.1f} {:>18.0f} {:>10.1f}\n", size.instances,
                   size.figures.at("begin") * 1e3, size.figures.at("build") * 1e3, size.figures.at("ratio"),
                   size.figures.at("kept"), size.figures.at("totals") * 1e3, size.figures.at("walk"),
                   size.figures.at("query") * 1e3);
    std::fputs(GoalsText(goals).c_str(), stdout);
}

void Run(Options const& options)
{
    ScratchFolder const folder;
    std::filesystem::path const smallest = folder.Path() / "1.xml";
    DoInChildProcess([&] { WriteScene(smallest, 1); });
    std::vector<Size> sizes;
    for (unsigned const instances : kSizes)
    {
        if (instances > options.max)
            continue;
        std::filesystem::path const path = folder.Path() / fmt::format("{}.xml", instances);
        DoInChildProcess([&] { WriteScene(path, instances); });
        std::vector<Figures> rounds;
        for (int round = 0; round < options.repeat; ++round)
            rounds.push_back(InChildProcess([&] { return Measure(smallest, path, instances); }));
        sizes.push_back({instances, Medians(rounds)});
        std::filesystem::remove(path);
    }
    Print(sizes, options.json);
}

}  // namespace

int main(int argc, char** argv)
{
    try
    {
        Options options;
        CLI::App app("Measures the model of a scene beside the reading of the same scene.");
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
        std::fprintf(stderr, "kvr_bench_scene: %s\n", exception.what());
        return 1;
    }
}

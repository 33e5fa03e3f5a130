// What a check of a scene costs beside the reading of the same scene: processor time and memory, in pairs.

#include <fmt/format.h>
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <nlohmann/json.hpp>
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
#include "inspect/Check.h"
#include "producer/XMLProducer.h"

namespace
{

using namespace KVR::Bench;

constexpr double kTimeGoal = 2.5;
constexpr double kMemoryGoal = 1.5;

struct Options
{
    unsigned instances = 1'000'000;
    int repeat = 5;
    bool account = false;
    bool json = false;
};

Figures Read(std::filesystem::path const& path)
{
    xercesc::XMLPlatformUtils::Initialize();
    KVR::XMLProducer producer(KVR::UTF16String(path.wstring()), nullptr);
    double const seconds = SecondsOf([&] { producer.BeginProcess(KVR::IdSet(), nullptr, nullptr); });
    return {{"seconds", seconds}, {"bytes", PeakResidentBytes()}};
}

Figures Check(std::filesystem::path const& path, Options const& options)
{
    xercesc::XMLPlatformUtils::Initialize();
    KVR::CheckOptions how;
    how.account = options.account;
    KVR::CheckResult result;
    double const seconds = SecondsOf([&] { result = KVR::CheckScene(path.string(), how); });
    if (!result.findings.empty())
        throw std::runtime_error("Something is found in the scene: " + std::string(result.findings[0].rule->id));
    return {{"seconds", seconds}, {"bytes", PeakResidentBytes()}};
}

double Median(std::vector<double> values)
{
    auto const middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

struct Pair
{
    Figures read;
    Figures check;

    double Ratio(char const* figure) const { return check.at(figure) / read.at(figure); }
};

double MedianRatio(std::vector<Pair> const& pairs, char const* figure)
{
    std::vector<double> ratios;
    for (Pair const& pair : pairs)
        ratios.push_back(pair.Ratio(figure));
    return Median(std::move(ratios));
}

void Print(std::vector<Pair> const& pairs, bool isJson)
{
    std::vector<Goal> const goals{
        {"time of the check / BeginProcess, median of pairs", "", kTimeGoal, MedianRatio(pairs, "seconds")},
        {"memory of the check / BeginProcess, median of pairs", "", kMemoryGoal, MedianRatio(pairs, "bytes")}};
    if (isJson)
    {
        nlohmann::ordered_json json;
        for (Pair const& pair : pairs)
            json["pairs"].push_back({{"read", pair.read}, {"check", pair.check}});
        for (Goal const& goal : goals)
            json["goals"].push_back({{"name", goal.name},
                                     {"atMost", goal.limit},
                                     {"measured", goal.reached},
                                     {"met", goal.reached <= goal.limit}});
        std::fputs((json.dump(2) + "\n").c_str(), stdout);
        return;
    }
    fmt::print("{:>13} {:>10} {:>7} {:>13} {:>10} {:>7}\n", "BeginProcess", "check", "ratio", "BeginProcess", "check",
               "ratio");
    fmt::print("{:>13} {:>10} {:>7} {:>13} {:>10} {:>7}\n", "ms", "ms", "", "MB", "MB", "");
    for (Pair const& pair : pairs)
        fmt::print("{:>13.0f} {:>10.0f} {:>7.2f} {:>13.0f} {:>10.0f} {:>7.2f}\n", pair.read.at("seconds") * 1e3,
                   pair.check.at("seconds") * 1e3, pair.Ratio("seconds"), pair.read.at("bytes") / 1e6,
                   pair.check.at("bytes") / 1e6, pair.Ratio("bytes"));
    std::fputs(GoalsText(goals).c_str(), stdout);
}

void Run(Options const& options)
{
    ScratchFolder const folder;
    std::filesystem::path const path = folder.Path() / "scene.xml";
    DoInChildProcess([&] { WriteScene(path, options.instances); });
    std::vector<Pair> pairs;
    for (int round = 0; round < options.repeat; ++round)
    {
        Pair& pair = pairs.emplace_back();
        pair.read = InChildProcess([&] { return Read(path); });
        pair.check = InChildProcess([&] { return Check(path, options); });
    }
    Print(pairs, options.json);
}

}  // namespace

int main(int argc, char** argv)
{
    try
    {
        Options options;
        CLI::App app("Measures the check of a scene beside the reading of the same scene.");
        app.add_option("--instances", options.instances, "The size of the scene")
            ->check(CLI::Range(1U, 10'000'000U))
            ->capture_default_str();
        app.add_option("--repeat", options.repeat, "Pairs of a reading and a check; the medians count")
            ->check(CLI::Range(1, 1000))
            ->capture_default_str();
        app.add_flag("--account", options.account, "Make accounts as well");
        app.add_flag("--json", options.json, "Print the figures as JSON");
        CLI11_PARSE(app, argc, argv);
        Run(options);
        return 0;
    }
    catch (std::exception const& exception)
    {
        std::fprintf(stderr, "kvr_bench_check: %s\n", exception.what());
        return 1;
    }
}

// How near the estimate of what reading a scene takes comes to what it takes, on the scenes of all benchmarks, and how
// long the estimate itself takes.

#include <fmt/format.h>
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <functional>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <vector>
#include <xercesc/util/PlatformUtils.hpp>

#include "bench/ChildProcess.h"
#include "bench/CloudGenerator.h"
#include "bench/Goals.h"
#include "bench/KernelGenerator.h"
#include "bench/MeshGenerator.h"
#include "bench/OrganisationGenerator.h"
#include "bench/ProcessorTime.h"
#include "bench/PropertyMeasures.h"
#include "bench/SceneFile.h"
#include "bench/SceneGenerator.h"
#include "bench/ScratchFolder.h"
#include "exchange/ImportModel.h"
#include "framework/api/IdSet.h"
#include "inspect/estimate/SceneCensus.h"
#include "producer/XMLProducer.h"

namespace
{

using namespace KVR::Bench;
namespace fs = std::filesystem;

constexpr double kErrorGoal = 0.25;
constexpr double kPassGoal = 1.0;  // seconds for a gigabyte

struct Options
{
    double scale = 1.0;
    int repeat = 3;
    bool json = false;
    std::vector<std::string> scenes;
};

struct Case
{
    std::string name;
    std::function<void(fs::path const& path)> write;
};

struct Result
{
    std::string name;
    KVR::SceneCensus census;
    Figures figures;
};

void WriteKernelScene(fs::path const& path, unsigned bodies)
{
    fs::path store = path;
    store += ".sab";
    WriteKernelStore({store.string(), {}}, bodies);
    SceneFile file(path);
    file.Put("<Scene><SatInfo Path=\"{}\"/><IPart ID=\"part\" Label=\"\"><ChildSet>\n", store.filename().string());
    for (unsigned i = 0; i < bodies; ++i)
        file.Put("<IBrep ID=\"body{}\" Label=\"\"/>\n", i);
    file.Put("</ChildSet></IPart></Scene>\n");
    file.Close();
}

void WriteProperties(fs::path const& path, unsigned entries, bool isKept)
{
    fs::path properties = path;
    WritePropertyScene({path, properties.replace_extension(".kvrproperty"), entries, isKept});
}

std::vector<Case> CasesOf(double scale)
{
    auto const scaled = [scale](double count) { return static_cast<unsigned>(std::max(1.0, count * scale)); };
    std::vector<Case> cases;
    for (double const size : {1e4, 1e5, 1e6})
        cases.push_back({fmt::format("{} instances", scaled(size)),
                         [count = scaled(size)](fs::path const& path) { WriteScene(path, count); }});
    for (OrganisationCase const& kind : OrganisationCases())
        cases.push_back(
            {std::string(kind.name), [kind, scaled](fs::path const& path) { kind.write(path, scaled(kind.count)); }});
    for (double const size : {1e6, 1e7})
        cases.push_back({fmt::format("cloud of {} points", scaled(size)),
                         [count = scaled(size)](fs::path const& path) { WriteCloud(path, count, 3); }});
    cases.push_back({"properties, kept", [n = scaled(1e6)](fs::path const& path) { WriteProperties(path, n, true); }});
    cases.push_back(
        {"properties, dropped", [n = scaled(1e6)](fs::path const& path) { WriteProperties(path, n, false); }});
    cases.push_back(
        {"one mesh", [n = scaled(5e6)](fs::path const& path) { WriteMeshScene(path, Grid::OfTriangles(n), 1); }});
    cases.push_back(
        {"small meshes", [n = scaled(1e5)](fs::path const& path) { WriteMeshScene(path, Grid::OfTriangles(50), n); }});
    cases.push_back({"bodies", [n = scaled(2000)](fs::path const& path) { WriteKernelScene(path, n); }});
    cases.push_back({"import of a STEP file", [](fs::path const& path)
                     {
                         if (auto const result = KVR::ImportModel(KVR_BENCH_MODEL, path.string());
                             result.outcome != KVR::Outcome::kDone)
                             throw std::runtime_error(result.failure);
                     }});
    return cases;
}

Figures MeasureReading(fs::path const& smallest, fs::path const& path)
{
    xercesc::XMLPlatformUtils::Initialize();
    {
        KVR::XMLProducer producer(KVR::UTF16String(smallest.wstring()), nullptr);
        producer.BeginProcess(KVR::IdSet(), nullptr, nullptr);
    }
    double const before = PeakResidentBytes();
    KVR::XMLProducer producer(KVR::UTF16String(path.wstring()), nullptr);
    double const seconds = SecondsOf([&] { producer.BeginProcess(KVR::IdSet(), nullptr, nullptr); });
    Figures figures{{"seconds", seconds}, {"bytes", PeakResidentBytes() - before}};
    producer.EndProcess();
    return figures;
}

Figures MeasurePass(fs::path const& path)
{
    return {{"pass", SecondsOf([&] { KVR::SceneCensus::Of(path.string()); })}};
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

Result ResultOf(std::string const& name, fs::path const& smallest, fs::path const& path, int repeat)
{
    std::vector<Figures> rounds;
    for (int i = 0; i < repeat; ++i)
    {
        rounds.push_back(InChildProcess([&] { return MeasureReading(smallest, path); }));
        rounds.back().merge(InChildProcess([&] { return MeasurePass(path); }));
    }
    return {name, KVR::SceneCensus::Of(path.string()), Medians(rounds)};
}

double TotalBytes(KVR::SceneCensus const& census)
{
    double bytes = static_cast<double>(census.documentBytes);
    for (KVR::SideFileCensus const& side : census.sideFiles)
        bytes += static_cast<double>(side.size.value_or(0));
    return bytes;
}

nlohmann::ordered_json JsonOf(Result const& result)
{
    KVR::SceneCensus const& census = result.census;
    KVR::ReadingCost const cost = census.Cost();
    nlohmann::ordered_json json{{"name", result.name},
                                {"documentBytes", census.documentBytes},
                                {"elements", census.document.elements},
                                {"objects", census.document.Objects()},
                                {"attributes", census.document.attributes},
                                {"attributeBytes", census.document.attributeBytes},
                                {"listBytes", census.document.listBytes},
                                {"longestAttribute", census.document.longestAttribute},
                                {"texts", census.document.texts},
                                {"textBytes", census.document.textBytes},
                                {"names", census.document.names},
                                {"estimatedBytes", cost.bytes},
                                {"estimatedSeconds", cost.seconds}};
    for (KVR::SideFileCensus const& side : census.sideFiles)
        json["sideFiles"].push_back({{"kind", KVR::NameOf(side.kind)},
                                     {"read", side.read},
                                     {"records", side.records.value_or(0)},
                                     {"kept", side.kept}});
    for (auto const& [name, figure] : result.figures)
        json[name] = figure;
    return json;
}

void Print(std::vector<Result> const& results)
{
    double worstBytes = 0.0;
    double worstSeconds = 0.0;
    double worstPass = 0.0;
    fmt::print("{:<26} {:>9} {:>10} {:>10} {:>6} {:>9} {:>9} {:>6} {:>8} {:>8}\n", "scene", "files MB", "memory MB",
               "estimate", "", "read ms", "estimate", "", "pass ms", "s/GB");
    for (Result const& result : results)
    {
        KVR::ReadingCost const cost = result.census.Cost();
        double const bytes = result.figures.at("bytes");
        double const seconds = result.figures.at("seconds");
        double const total = TotalBytes(result.census);
        double const pass = result.figures.at("pass") / total * 1e9;
        worstBytes = std::max(worstBytes, std::abs(cost.bytes / bytes - 1.0));
        worstSeconds = std::max(worstSeconds, std::abs(cost.seconds / seconds - 1.0));
        if (total > 1e8)
            worstPass = std::max(worstPass, pass);
        fmt::print("{:<26} {:>9.1f} {:>10.1f} {:>10.1f} {:>+5.0f}% {:>9.1f} {:>9.1f} {:>+5.0f}% {:>8.1f} {:>8.2f}\n",
                   result.name, total / 1e6, bytes / 1e6, cost.bytes / 1e6, (cost.bytes / bytes - 1.0) * 100,
                   seconds * 1e3, cost.seconds * 1e3, (cost.seconds / seconds - 1.0) * 100,
                   result.figures.at("pass") * 1e3, pass);
    }
    std::fputs(GoalsText({{"error of the estimated memory, worst scene", "", kErrorGoal, worstBytes},
                          {"error of the estimated time, worst scene", "", kErrorGoal, worstSeconds},
                          {"estimate of a gigabyte, worst scene beyond 100 MB", " s", kPassGoal, worstPass}})
                   .c_str(),
               stdout);
}

void Run(Options const& options)
{
    ScratchFolder const folder;
    fs::path const smallest = folder.Path() / "smallest.xml";
    DoInChildProcess([&] { WriteScene(smallest, 1); });
    std::vector<Result> results;
    for (std::string const& scene : options.scenes)
        results.push_back(ResultOf(fs::path(scene).filename().string(), smallest, scene, options.repeat));
    for (Case const& each : options.scenes.empty() ? CasesOf(options.scale) : std::vector<Case>())
    {
        ScratchFolder const own;
        fs::path const path = own.Path() / "scene.xml";
        DoInChildProcess([&] { each.write(path); });
        results.push_back(ResultOf(each.name, smallest, path, options.repeat));
    }
    if (!options.json)
        return Print(results);
    nlohmann::ordered_json json;
    for (Result const& result : results)
        json.push_back(JsonOf(result));
    std::fputs((json.dump(2) + "\n").c_str(), stdout);
}

}  // namespace

int main(int argc, char** argv)
{
    try
    {
        Options options;
        CLI::App app("Holds the estimate of what reading a scene takes against what it takes.");
        app.add_option("--scale", options.scale, "Sizes of the scenes, as a share of the full ones")
            ->check(CLI::Range(0.1, 10.0))
            ->capture_default_str();
        app.add_option("--repeat", options.repeat, "Rounds per scene; the medians count")
            ->check(CLI::Range(1, 1000))
            ->capture_default_str();
        app.add_option("scenes", options.scenes, "These scenes instead of those of the benchmarks");
        app.add_flag("--json", options.json, "Print the figures, and what the estimate is made of, as JSON");
        CLI11_PARSE(app, argc, argv);
        Run(options);
        return 0;
    }
    catch (std::exception const& exception)
    {
        std::fprintf(stderr, "kvr_bench_estimate: %s\n", exception.what());
        return 1;
    }
}

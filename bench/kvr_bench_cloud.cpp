// What a point cloud costs: reading it beside a bare parse of the same scene, and asking it for every point.

#include <fmt/format.h>
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <exception>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>
#include <xercesc/util/PlatformUtils.hpp>

#include "bench/BareParse.h"
#include "bench/ChildProcess.h"
#include "bench/CloudGenerator.h"
#include "bench/Goals.h"
#include "bench/ProcessorTime.h"
#include "bench/ScratchFolder.h"
#include "framework/api/IPointCloud.h"
#include "framework/api/IdSet.h"
#include "producer/XMLProducer.h"

namespace
{

using namespace KVR;
using namespace KVR::Bench;

struct Options
{
    std::size_t points = 10'000'000;
    int decimals = 3;
    int repeat = 3;
    bool json = false;
};

// The process ends with its document: taking it down is no part of the measurement.
Figures MeasureParse(std::filesystem::path const& scene)
{
    xercesc::XMLPlatformUtils::Initialize();
    double const memoryBefore = PeakResidentBytes();
    auto parser = std::make_unique<xercesc::XercesDOMParser>();
    double const seconds = SecondsOf([&] { ParseBare(*parser, scene); });
    static_cast<void>(parser.release());
    return {{"parse_s", seconds}, {"parse_bytes", PeakResidentBytes() - memoryBefore}};
}

double SumOfPoints(IPointCloud const& cloud)
{
    double sum = 0.0;
    for (std::size_t i = 0, count = cloud.PointCount(); i < count; ++i)
    {
        double x = 0.0;
        double y = 0.0;
        double z = 0.0;
        cloud.Point(i, &x, &y, &z);
        sum += x + y + z;
    }
    return sum;
}

Figures MeasureProducer(std::filesystem::path const& scene, std::size_t points)
{
    xercesc::XMLPlatformUtils::Initialize();
    double const memoryBefore = PeakResidentBytes();
    XMLProducer producer(UTF16String(scene.wstring()), nullptr);
    double const begin = SecondsOf([&] { producer.BeginProcess(IdSet(), nullptr, nullptr); });
    double const memory = PeakResidentBytes() - memoryBefore;
    auto const* const cloud = dynamic_cast<IPointCloud const*>(producer.Load("cloud"));
    if (!cloud || cloud->PointCount() != points)
        throw std::runtime_error("The producer lacks points of the scene");
    double sum = 0.0;
    double const walk = SecondsOf([&] { sum = SumOfPoints(*cloud); });
    double const end = SecondsOf([&] { producer.EndProcess(); });
    return {{"begin_s", begin}, {"begin_bytes", memory}, {"walk_s", walk}, {"end_s", end}, {"sum", sum}};
}

double Median(std::vector<double> values)
{
    auto const middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

void Print(Options const& options, std::vector<Figures> const& rounds)
{
    auto const median = [&](auto figure)
    {
        std::vector<double> values;
        for (Figures const& round : rounds)
            values.push_back(figure(round));
        return Median(std::move(values));
    };
    auto const named = [&](char const* name) { return median([&](Figures const& round) { return round.at(name); }); };
    auto const points = static_cast<double>(options.points);
    double const ratio = median([](Figures const& round) { return round.at("begin_s") / round.at("parse_s"); });
    double const extra =
        median([&](Figures const& round) { return (round.at("begin_bytes") - round.at("parse_bytes")) / points; });
    char const* const form =
        options.json ? "{{\"Points\": {}, \"Decimals\": {}, \"ParseSeconds\": {:.3f}, \"BeginSeconds\": "
                       "{:.3f}, \"Ratio\": {:.2f}, \"WalkPointsPerSecond\": {:.0f}, \"EndSeconds\": "
                       "{:.3f}, \"ExtraBytesPerPoint\": {:.1f}}}\n"
                     : "{} points of {} decimals\nbare parse {:.3f} s\nBeginProcess {:.3f} s, {:.2f} of the "
                       "bare parse\nwalk {:.0f} points/s\nEndProcess {:.3f} s\nbeyond the document's peak "
                       "{:.1f} bytes/point\n";
    fmt::print(fmt::runtime(form), options.points, options.decimals, named("parse_s"), named("begin_s"), ratio,
               points / named("walk_s"), named("end_s"), extra);
    if (!options.json)
        fmt::print("{}", GoalsText({{"BeginProcess / bare parse, cloud", "", 1.5, ratio},
                                    {"walk, for a point", " ns", 50.0, named("walk_s") / points * 1e9}}));
}

void Run(Options const& options)
{
    ScratchFolder const folder;
    std::filesystem::path const scene = folder.Path() / "cloud.xml";
    DoInChildProcess([&] { WriteCloud(scene, options.points, options.decimals); });
    std::vector<Figures> rounds;
    for (int i = 0; i < options.repeat; ++i)
    {
        Figures round = InChildProcess([&] { return MeasureParse(scene); });
        round.merge(InChildProcess([&] { return MeasureProducer(scene, options.points); }));
        rounds.push_back(std::move(round));
    }
    Print(options, rounds);
}

}  // namespace

int main(int argc, char** argv)
{
    try
    {
        Options options;
        CLI::App app("Measures the reading of a point cloud beside a bare parse, and a walk over its points.");
        app.add_option("--points", options.points, "Points of the cloud")->capture_default_str();
        app.add_option("--decimals", options.decimals, "Decimals of a coordinate")
            ->check(CLI::Range(0, 15))
            ->capture_default_str();
        app.add_option("--repeat", options.repeat, "Rounds; the medians count")
            ->check(CLI::Range(1, 1000))
            ->capture_default_str();
        app.add_flag("--json", options.json, "Print the figures as JSON");
        CLI11_PARSE(app, argc, argv);
        Run(options);
        return 0;
    }
    catch (std::exception const& exception)
    {
        std::fprintf(stderr, "kvr_bench_cloud: %s\n", exception.what());
        return 1;
    }
}

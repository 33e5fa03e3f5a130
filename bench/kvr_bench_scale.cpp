// How the reading of scenes grows with what is in them: instances, triangles of one mesh, side files in one folder, and
// labels of which no two are equal. Each size in a process of its own.

#include <fmt/format.h>
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>
#include <xercesc/util/PlatformUtils.hpp>

#include "bench/ChildProcess.h"
#include "bench/Goals.h"
#include "bench/MeshGenerator.h"
#include "bench/ProcessorTime.h"
#include "bench/SceneFile.h"
#include "bench/SceneGenerator.h"
#include "bench/ScratchFolder.h"
#include "framework/api/IdSet.h"
#include "producer/XMLProducer.h"

namespace
{

using namespace KVR::Bench;
namespace fs = std::filesystem;

constexpr double kGoal = 1.1;
// Below this many seconds, what every scene costs shows in the time per thing.
constexpr double kShortest = 0.02;

struct Options
{
    int repeat = 3;
    double scale = 1.0;
    std::string data;
};

struct Series
{
    char const* things;
    // So many of the fewest, and each size ten times the one before.
    std::uint64_t fewest;
    std::uint64_t most;
    void (*write)(fs::path const& scene, std::uint64_t count);
};

struct Point
{
    std::uint64_t count;
    double seconds;
    double bytes;

    double PerThing() const { return seconds / static_cast<double>(count); }
};

void WriteInstances(fs::path const& scene, std::uint64_t count)
{
    WriteScene(scene, static_cast<unsigned>(count));
}

void WriteTriangles(fs::path const& scene, std::uint64_t count)
{
    MeshStores const stores{scene.parent_path() / "a.mesh", scene.parent_path() / "a.seg"};
    WriteStores(stores, Grid::OfTriangles(count), 1);
    SceneFile file(scene);
    file.Put(
        "<Scene><MeshInfo GenerateMesh=\"True\" Path=\"a.mesh\"/><MeshSegmentInfo GenerateMeshSegment=\"True\" "
        "Path=\"a.seg\"/><IFile ID=\"file1\" IsRoot=\"1\"/></Scene>\n");
    file.Close();
}

void WriteFiles(fs::path const& scene, std::uint64_t count)
{
    SceneFile file(scene);
    file.Put("<Scene>\n");
    for (std::uint64_t i = 0; i < count; ++i)
    {
        std::string const name = fmt::format("{}.mesh", i);
        WriteStores({scene.parent_path() / name, {}}, Grid{3}, 1);
        file.Put("  <MeshInfo GenerateMesh=\"True\" Path=\"{}\"/>\n", name);
    }
    file.Put("  <IFile ID=\"file1\" IsRoot=\"1\"/>\n</Scene>\n");
    file.Close();
}

void WriteLabels(fs::path const& scene, std::uint64_t count)
{
    SceneFile file(scene);
    file.Put("<Scene>\n  <IFile ID=\"file1\" IsRoot=\"1\"/>\n");
    for (std::uint64_t i = 0; i < count; ++i)
        file.Put("  <IPart ID=\"part{}\" Label=\"Component {:016x} of its own\"/>\n", i, i * 0x9E3779B97F4A7C15);
    file.Put("</Scene>\n");
    file.Close();
}

constexpr Series kSeries[] = {
    {"instances", 1'000, 1'000'000, &WriteInstances},
    {"triangles", 10'000, 10'000'000, &WriteTriangles},
    {"files", 10, 10'000, &WriteFiles},
    {"labels", 1'000, 1'000'000, &WriteLabels},
};

void Begin(fs::path const& scene)
{
    KVR::XMLProducer producer(KVR::UTF16String(scene.wstring()), nullptr);
    producer.BeginProcess(KVR::IdSet(), nullptr, nullptr);
}

// What a process pays once is paid beforehand, on a scene of next to nothing.
Figures Measure(fs::path const& smallest, fs::path const& scene)
{
    xercesc::XMLPlatformUtils::Initialize();
    Begin(smallest);
    double const before = PeakResidentBytes();
    KVR::XMLProducer producer(KVR::UTF16String(scene.wstring()), nullptr);
    double const seconds = SecondsOf([&] { producer.BeginProcess(KVR::IdSet(), nullptr, nullptr); });
    return {{"seconds", seconds}, {"bytes", PeakResidentBytes() - before}};
}

double Median(std::vector<double> values)
{
    auto const middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

Point MeasureSize(Series const& series, std::uint64_t count, int repeat)
{
    ScratchFolder const folder;
    fs::path const scene = folder.Path() / "scene.xml";
    fs::path const smallest = folder.Path() / "smallest.xml";
    DoInChildProcess(
        [&]
        {
            series.write(scene, count);
            WriteScene(smallest, 1);
        });
    std::vector<double> seconds;
    std::vector<double> bytes;
    for (int round = 0; round < repeat; ++round)
    {
        Figures const figures = InChildProcess([&] { return Measure(smallest, scene); });
        seconds.push_back(figures.at("seconds"));
        bytes.push_back(figures.at("bytes"));
    }
    return {count, Median(std::move(seconds)), Median(std::move(bytes))};
}

// The most that the time per thing grows by from one size to the next.
double Growth(std::vector<Point> const& points)
{
    double growth = 0.0;
    for (std::size_t i = 1; i < points.size(); ++i)
        if (points[i - 1].seconds >= kShortest || i + 1 == points.size())
            growth = std::max(growth, points[i].PerThing() / points[i - 1].PerThing());
    return growth;
}

void Run(Options const& options)
{
    std::vector<Goal> goals;
    std::string data;
    fmt::print("{:>10} {:<10} {:>10} {:>12} {:>10} {:>9}\n", "", "", "ms", "µs/thing", "MB", "B/thing");
    for (Series const& series : kSeries)
    {
        std::vector<Point> points;
        auto const most = static_cast<std::uint64_t>(static_cast<double>(series.most) * options.scale);
        for (std::uint64_t count = series.fewest; count <= most; count *= 10)
        {
            Point const& point = points.emplace_back(MeasureSize(series, count, options.repeat));
            fmt::print("{:>10} {:<10} {:>10.1f} {:>12.3f} {:>10.1f} {:>9.0f}\n", count, series.things,
                       point.seconds * 1e3, point.PerThing() * 1e6, point.bytes / 1e6,
                       point.bytes / static_cast<double>(count));
            std::fflush(stdout);
            data += fmt::format("{} {} {}\n", count, point.seconds, point.bytes);
        }
        data += "\n\n";
        goals.push_back({fmt::format("growth of the time per thing, {}", series.things), "", kGoal, Growth(points)});
    }
    std::fputs(GoalsText(goals).c_str(), stdout);
    if (!options.data.empty())
    {
        SceneFile file(options.data);
        file.Put("{}", data);
        file.Close();
    }
}

}  // namespace

int main(int argc, char** argv)
{
    try
    {
        Options options;
        CLI::App app("Measures how the reading of scenes grows with their size.");
        app.add_option("--repeat", options.repeat, "Readings of each size; the medians count")
            ->check(CLI::Range(1, 1000))
            ->capture_default_str();
        app.add_option("--scale", options.scale, "The largest sizes, as a share of those that are usual")
            ->check(CLI::Range(0.01, 10.0))
            ->capture_default_str();
        app.add_option("--data", options.data, "Write the figures to this file, too, for bench/scale.gnuplot");
        CLI11_PARSE(app, argc, argv);
        Run(options);
        return 0;
    }
    catch (std::exception const& exception)
    {
        std::fprintf(stderr, "kvr_bench_scale: %s\n", exception.what());
        return 1;
    }
}

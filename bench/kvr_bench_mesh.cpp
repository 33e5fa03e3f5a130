// What the reading of mesh stores costs beside a bare read of the same bytes, and beside mesh importers that are
// packaged on this system.

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

#include "bench/BareRead.h"
#include "bench/ChildProcess.h"
#include "bench/Goals.h"
#include "bench/MeshGenerator.h"
#include "bench/MeshImporters.h"
#include "bench/ProcessorTime.h"
#include "bench/ScratchFolder.h"
#include "geometry/XMLCurve.h"
#include "mesh/SideStoreReader.h"
#include "mesh/XMLPolygonMesh.h"
#include "producer/XMLProducerImpl.h"

namespace
{

using namespace KVR::Bench;

constexpr std::uint64_t kLargeTriangles = 5'000'000;
constexpr std::uint64_t kSmallMeshes = 100'000;
constexpr std::uint64_t kSmallMeshTriangles = 50;
constexpr std::uint64_t kComparedTriangles = 2'000'000;

struct Options
{
    int repeat = 5;
    double scale = 1.0;
    bool json = false;
};

struct StoreCase
{
    std::string name;
    MeshStores stores;
    Grid grid;
    std::uint64_t meshCount = 1;
    std::vector<Figures> rounds;

    double Triangles() const { return static_cast<double>(grid.TriangleCount() * meshCount); }
    double Vertices() const { return static_cast<double>(grid.VertexCount() * meshCount); }
};

struct ImportCase
{
    MeshImporter importer;
    std::filesystem::path file;
    std::vector<Figures> rounds;
};

double SizeOf(std::filesystem::path const& path)
{
    return static_cast<double>(std::filesystem::file_size(path));
}

Figures MeasureStore(StoreCase const& measured)
{
    Figures figures;
    // Once unmeasured, so that the file is in the system's cache.
    ReadBare(measured.stores.meshes);
    double const memoryBefore = PeakResidentBytes();
    double const residentBefore = ResidentBytes();

    KVR::UTF16String const scene((measured.stores.meshes.parent_path() / "scene.xml").wstring());
    KVR::XMLProducerImpl producer(scene, nullptr);
    KVR::MeshStore meshes;
    KVR::CurveStore curves;
    figures["read"] = SecondsOf(
        [&]
        {
            KVR::SideStoreReader reader(scene, &producer, false);
            KVR::UTF16String const name(measured.stores.meshes.filename().wstring());
            if (!reader.ReadMeshStore(name, meshes, curves))
                throw std::runtime_error("The store was not read");
        });
    figures["memory"] = PeakResidentBytes() - memoryBefore;
    figures["stays"] = ResidentBytes() - residentBefore;
    double triangles = 0.0;
    for (auto const& entry : meshes)
        triangles += static_cast<double>(entry.second.object->PolygonCount());
    if (triangles != measured.Triangles())
        throw std::runtime_error("The store lost triangles");

    if (!measured.stores.segments.empty())
    {
        ReadBare(measured.stores.segments);
        double const residentWithout = ResidentBytes();
        figures["readSegments"] = SecondsOf(
            [&]
            {
                KVR::SideStoreReader reader(scene, &producer, false);
                if (!reader.ReadMeshSegmentStore(KVR::UTF16String(measured.stores.segments.wstring()), meshes))
                    throw std::runtime_error("The segments were not read");
            });
        figures["staysOfSegments"] = ResidentBytes() - residentWithout;
    }
    figures["free"] = SecondsOf([&] { meshes.clear(); });
    return figures;
}

// What any reader pays that keeps so much: the bytes are read, and memory is written to once. In a process of its own.
double SecondsOfFloor(std::filesystem::path const& path, double bytes, Figures& figures, std::string const& of)
{
    Figures const floor = InChildProcess(
        [&]
        {
            ReadBare(path);
            double const bare = SecondsOf([&] { ReadBare(path); });
            return Figures{{"bare", bare}, {"fresh", SecondsOfFreshMemory(bytes)}};
        });
    figures["bare" + of] = floor.at("bare");
    figures["fresh" + of] = floor.at("fresh");
    return floor.at("bare") + floor.at("fresh");
}

Figures MeasureRound(StoreCase const& measured)
{
    Figures figures = InChildProcess([&] { return MeasureStore(measured); });
    figures["floor"] = SecondsOfFloor(measured.stores.meshes, figures.at("stays"), figures, "");
    figures["everything"] = figures.at("read");
    if (measured.stores.segments.empty())
        return figures;
    figures["everything"] += figures.at("readSegments");
    figures["floorSegments"] =
        SecondsOfFloor(measured.stores.segments, figures.at("staysOfSegments"), figures, "Segments");
    return figures;
}

Figures MeasureImport(ImportCase const& measured, double triangles)
{
    ReadBare(measured.file);
    double const memoryBefore = PeakResidentBytes();
    Figures figures;
    unsigned long long read = 0;
    figures["read"] = SecondsOf([&] { read = measured.importer.read(measured.file); });
    figures["memory"] = PeakResidentBytes() - memoryBefore;
    if (static_cast<double>(read) != triangles)
        throw std::runtime_error(measured.importer.name + " lost triangles");
    return figures;
}

template <class Figure>
double MedianOf(std::vector<Figures> const& rounds, Figure figure)
{
    std::vector<double> values;
    for (Figures const& round : rounds)
        values.push_back(figure(round));
    auto const middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

double Median(std::vector<Figures> const& rounds, std::string const& name)
{
    return MedianOf(rounds, [&](Figures const& round) { return round.at(name); });
}

double MedianRatio(std::vector<Figures> const& rounds, std::string const& a, std::string const& b)
{
    return MedianOf(rounds, [&](Figures const& round) { return round.at(a) / round.at(b); });
}

// What the interface can answer of a triangle: three vertex and three normal indices, and its share of the coordinates.
double AnsweredBytes(StoreCase const& store)
{
    return 2 * 3 * sizeof(int) + 2 * 3 * sizeof(double) * store.Vertices() / store.Triangles();
}

std::vector<Goal> Goals(std::vector<StoreCase> const& stores, StoreCase const& compared,
                        std::vector<ImportCase> const& imports)
{
    std::vector<Goal> goals;
    for (StoreCase const& store : stores)
    {
        bool const isSmall = store.meshCount > 1;
        goals.push_back({store.name + ": read / bare read and first touch", "", isSmall ? 1.6 : 1.3,
                         MedianRatio(store.rounds, "read", "floor")});
        if (!isSmall)
            goals.push_back({store.name + ": segments / bare read", "", 1.5,
                             MedianRatio(store.rounds, "readSegments", "bareSegments")});
        goals.push_back({store.name + ": segments / bare read and first touch", "", isSmall ? 1.6 : 1.5,
                         MedianRatio(store.rounds, "readSegments", "floorSegments")});
        goals.push_back(
            {store.name + ": freeing / reading", "", 0.15, MedianRatio(store.rounds, "free", "everything")});
        goals.push_back({store.name + ": memory per triangle", " B", isSmall ? 70.0 : 1.6 * AnsweredBytes(store) + 24.0,
                         Median(store.rounds, "memory") / store.Triangles()});
    }
    StoreCase const& quarter = stores[0];
    StoreCase const& large = stores[1];
    goals.push_back(
        {"time per triangle, large / quarter of it", "", 1.2,
         Median(large.rounds, "read") / large.Triangles() / (Median(quarter.rounds, "read") / quarter.Triangles())});
    double const perTriangle = Median(compared.rounds, "read") / compared.Triangles();
    double const perByte = Median(compared.rounds, "read") / SizeOf(compared.stores.meshes);
    for (ImportCase const& imported : imports)
    {
        double const seconds = Median(imported.rounds, "read");
        if (imported.importer.name == "assimp")
            goals.push_back(
                {fmt::format("time per triangle beside {} {}", imported.importer.name, imported.importer.format), "",
                 1.0, perTriangle / (seconds / compared.Triangles())});
        else
            goals.push_back(
                {fmt::format("time per byte beside {} {}", imported.importer.name, imported.importer.format), "", 1.0,
                 perByte / (seconds / SizeOf(imported.file))});
    }
    return goals;
}

void PrintText(std::vector<StoreCase> const& stores, StoreCase const& compared, std::vector<ImportCase> const& imports)
{
    char const* const row = "{:<18} {:>9} {:>10} {:>13} {:>10} {:>12} {:>15} {:>10} {:>10} {:>12} {:>10}\n";
    fmt::print(fmt::runtime(row), "", "file", "bare read", "fresh memory", "read", "/ bare read", "/ bare and fresh",
               "segments", "free", "memory", "rate");
    fmt::print(fmt::runtime(row), "", "MB", "ms", "ms", "ms", "", "", "ms", "ms", "B/triangle", "Mtri/s");
    auto const ms = [](std::vector<Figures> const& rounds, char const* name)
    { return fmt::format("{:.1f}", Median(rounds, name) * 1e3); };
    auto const number = [](double value, int decimals) { return fmt::format("{:.{}f}", value, decimals); };
    auto const printStore = [&](StoreCase const& store)
    {
        std::vector<Figures> const& rounds = store.rounds;
        fmt::print(fmt::runtime(row), store.name, number(SizeOf(store.stores.meshes) / 1e6, 1), ms(rounds, "bare"),
                   ms(rounds, "fresh"), ms(rounds, "read"), number(MedianRatio(rounds, "read", "bare"), 2),
                   number(MedianRatio(rounds, "read", "floor"), 2),
                   store.stores.segments.empty() ? "" : ms(rounds, "readSegments"), ms(rounds, "free"),
                   number(Median(rounds, "memory") / store.Triangles(), 1),
                   number(store.Triangles() / Median(rounds, "read") / 1e6, 1));
    };
    for (StoreCase const& store : stores)
        printStore(store);
    printStore(compared);
    for (ImportCase const& imported : imports)
    {
        fmt::print(fmt::runtime(row), imported.importer.name + " " + imported.importer.format,
                   number(SizeOf(imported.file) / 1e6, 1), "", "", ms(imported.rounds, "read"), "", "", "", "",
                   number(Median(imported.rounds, "memory") / compared.Triangles(), 1),
                   number(compared.Triangles() / Median(imported.rounds, "read") / 1e6, 1));
    }
    std::fputs(GoalsText(Goals(stores, compared, imports)).c_str(), stdout);
}

nlohmann::ordered_json ToJson(StoreCase const& store)
{
    nlohmann::ordered_json json{
        {"name", store.name}, {"triangles", store.Triangles()}, {"fileBytes", SizeOf(store.stores.meshes)}};
    for (auto const& [name, ignored] : store.rounds.front())
        json[name] = Median(store.rounds, name);
    return json;
}

void PrintJson(std::vector<StoreCase> const& stores, StoreCase const& compared, std::vector<ImportCase> const& imports)
{
    nlohmann::ordered_json json;
    for (StoreCase const& store : stores)
        json["stores"].push_back(ToJson(store));
    json["stores"].push_back(ToJson(compared));
    for (ImportCase const& imported : imports)
        json["importers"].push_back({{"name", imported.importer.name},
                                     {"format", imported.importer.format},
                                     {"fileBytes", SizeOf(imported.file)},
                                     {"read", Median(imported.rounds, "read")},
                                     {"memory", Median(imported.rounds, "memory")}});
    for (Goal const& goal : Goals(stores, compared, imports))
        json["goals"].push_back({{"name", goal.name},
                                 {"atMost", goal.limit},
                                 {"measured", goal.reached},
                                 {"met", goal.reached <= goal.limit}});
    fmt::print("{}\n", json.dump(2));
}

void WriteGrid(std::filesystem::path const& path, std::string const& format, Grid const& grid)
{
    if (format == "glb")
        WriteBinaryGltf(path, grid);
    else if (format == "ply")
        WriteBinaryPly(path, grid);
    else
        WriteBinaryStl(path, grid);
}

void Run(Options const& options)
{
    ScratchFolder const folder;
    auto const scaled = [&](std::uint64_t count)
    { return std::max<std::uint64_t>(1, static_cast<std::uint64_t>(static_cast<double>(count) * options.scale)); };
    auto const makeStore = [&](std::string const& name, Grid const& grid, std::uint64_t meshCount, bool hasSegments)
    {
        StoreCase store{name, {folder.Path() / (name + ".mesh"), {}}, grid, meshCount, {}};
        if (hasSegments)
            store.stores.segments = folder.Path() / (name + ".segments");
        DoInChildProcess([&] { WriteStores(store.stores, grid, meshCount); });
        return store;
    };
    std::vector<StoreCase> stores;
    stores.push_back(makeStore("quarter", Grid::OfTriangles(scaled(kLargeTriangles / 4)), 1, true));
    stores.push_back(makeStore("large", Grid::OfTriangles(scaled(kLargeTriangles)), 1, true));
    stores.push_back(makeStore("small meshes", Grid::OfTriangles(kSmallMeshTriangles), scaled(kSmallMeshes), true));
    Grid const grid = Grid::OfTriangles(scaled(kComparedTriangles));
    StoreCase compared = makeStore("compared", grid, 1, false);
    std::vector<ImportCase> imports;
    for (MeshImporter const& importer : MeshImporters())
    {
        std::filesystem::path const file = folder.Path() / ("compared." + importer.format);
        if (!std::filesystem::exists(file))
            DoInChildProcess([&] { WriteGrid(file, importer.format, grid); });
        imports.push_back({importer, file, {}});
    }
    for (int round = 0; round < options.repeat; ++round)
    {
        for (StoreCase& store : stores)
            store.rounds.push_back(MeasureRound(store));
        compared.rounds.push_back(MeasureRound(compared));
        for (ImportCase& imported : imports)
            imported.rounds.push_back(InChildProcess([&] { return MeasureImport(imported, compared.Triangles()); }));
        fmt::print(stderr, "round {} done\n", round + 1);
    }
    if (options.json)
        PrintJson(stores, compared, imports);
    else
        PrintText(stores, compared, imports);
}

}  // namespace

int main(int argc, char** argv)
{
    try
    {
        Options options;
        CLI::App app("Measures the reading of mesh stores beside a bare read of the same bytes.");
        app.add_option("--repeat", options.repeat, "Rounds; the medians count")
            ->check(CLI::Range(1, 1000))
            ->capture_default_str();
        app.add_option("--scale", options.scale, "Sizes of the stores, as a share of the full ones")
            ->check(CLI::Range(0.0001, 10.0))
            ->capture_default_str();
        app.add_flag("--json", options.json, "Print the figures as JSON");
        CLI11_PARSE(app, argc, argv);
        Run(options);
        return 0;
    }
    catch (std::exception const& exception)
    {
        std::fprintf(stderr, "kvr_bench_mesh: %s\n", exception.what());
        return 1;
    }
}

// What the persistent ids and the assets of a scene cost beside a bare parse, or a bare read, of their files.

#include <fmt/format.h>
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <exception>
#include <functional>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>
#include <xercesc/util/PlatformUtils.hpp>

#include "authoring/SubObjectPersistentIdWriter.h"
#include "authoring/VitreolAssetWriter.h"
#include "bench/BareParse.h"
#include "bench/BareRead.h"
#include "bench/ChildProcess.h"
#include "bench/Goals.h"
#include "bench/ProcessorTime.h"
#include "bench/ScratchFolder.h"
#include "framework/api/DataIdToPersistentIdMap.h"
#include "framework/api/VitreolSerializedAsset.h"
#include "framework/xml_util/SubObjectPersistentIdReader.h"
#include "framework/xml_util/VitreolBlobExternalFileReader.h"

namespace
{

using namespace KVR;
using namespace KVR::Bench;

constexpr unsigned kObjects = 10'000;
constexpr unsigned kIdsPerObject = 50;
constexpr unsigned kAssets = 2'000;
constexpr std::size_t kAssetSize = 100'000;

UTF8String Numbered(char const* text, unsigned number)
{
    return UTF8String(fmt::format("{}{}", text, number));
}

void WriteIds(std::filesystem::path const& path, unsigned objects)
{
    Authoring::SubObjectPersistentIdWriter writer(UTF16String(path.wstring()));
    for (unsigned object = 0; object < objects; ++object)
    {
        EditableDataIdToPersistentIdMap ids;
        for (unsigned i = 0; i < kIdsPerObject; ++i)
            ids.Add(Numbered("", i), UTF8String(fmt::format("body{}:face{}", object, i)));
        writer.Object(Numbered("body", object), ids);
    }
    writer.Finish();
}

void WriteAssets(std::filesystem::path const& path, unsigned assets)
{
    Authoring::VitreolAssetWriter writer(UTF16String(path.wstring()));
    std::vector<unsigned char> content(kAssetSize);
    for (std::size_t i = 0; i < content.size(); ++i)
        content[i] = static_cast<unsigned char>(i * 31);
    for (unsigned i = 0; i < assets; ++i)
        writer.Asset(Numbered("style", i), "SerializedAsset", content);
    writer.Finish();
}

// The process ends with what was read in it: taking it down is no part of the measurement.
double SecondsOfIds(std::filesystem::path const& path, unsigned objects)
{
    std::map<UTF8String, EditableDataIdToPersistentIdMap*> maps;
    double const seconds = SecondsOf(
        [&]
        {
            if (!SubObjectPersistentIdReader().LoadSubObjectPersistentIds(UTF16String(path.wstring()), maps))
                throw std::runtime_error("The ids were not read");
        });
    if (maps.size() != objects)
        throw std::runtime_error("The file lost objects");
    return seconds;
}

double SecondsOfAssets(std::filesystem::path const& path, unsigned assets)
{
    std::map<UTF8String, VitreolSerializedAsset*> held;
    double const seconds = SecondsOf(
        [&]
        {
            if (!VitreolBlobExternalFileReader(UTF16String(path.wstring())).LoadVitreolFromExternalFile(held))
                throw std::runtime_error("The assets were not read");
        });
    if (held.size() != assets)
        throw std::runtime_error("The file lost assets");
    return seconds;
}

struct Case
{
    std::string name;
    double goal;
    std::filesystem::path smallest;
    std::filesystem::path file;
    std::function<void(std::filesystem::path const&)> floor;
    // Reads a file of so many things, and answers how long it took.
    std::function<double(std::filesystem::path const&, unsigned)> read;
    unsigned count;
    // What is written to once belongs to the floor of a bare read, which keeps nothing.
    bool keepsBytes;
};

// What a process pays once is paid on a file of next to nothing beforehand.
Figures Measure(Case const& measured, bool isFloor)
{
    xercesc::XMLPlatformUtils::Initialize();
    measured.floor(measured.file);
    measured.read(measured.smallest, 1);
    double const before = ResidentBytes();
    double const seconds =
        isFloor ? SecondsOf([&] { measured.floor(measured.file); }) : measured.read(measured.file, measured.count);
    return {{"seconds", seconds}, {"stays", ResidentBytes() - before}};
}

double Median(std::vector<double> values)
{
    auto const middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

Goal Report(Case const& measured, int repeat)
{
    std::vector<double> floors;
    std::vector<double> reads;
    std::vector<double> ratios;
    for (int round = 0; round < repeat; ++round)
    {
        Figures const read = InChildProcess([&] { return Measure(measured, false); });
        double floor = InChildProcess([&] { return Measure(measured, true); }).at("seconds");
        if (measured.keepsBytes)
            floor += InChildProcess(
                         [&] {
                             return Figures{{"seconds", SecondsOfFreshMemory(read.at("stays"))}};
                         })
                         .at("seconds");
        floors.push_back(floor);
        reads.push_back(read.at("seconds"));
        ratios.push_back(reads.back() / floors.back());
    }
    fmt::print("{:<16} {:>9.1f} {:>10.1f} {:>10.1f} {:>6.2f}\n", measured.name,
               static_cast<double>(std::filesystem::file_size(measured.file)) / 1e6, Median(floors) * 1e3,
               Median(reads) * 1e3, Median(ratios));
    return {fmt::format("{} / bare {}", measured.name, measured.keepsBytes ? "read and first touch" : "parse"), "",
            measured.goal, Median(ratios)};
}

void Run(int repeat)
{
    ScratchFolder const folder;
    std::vector<Case> cases = {
        {"persistent ids", 1.3, folder.Path() / "one.ids", folder.Path() / "all.ids", &StreamBare, &SecondsOfIds,
         kObjects, false},
        {"assets", 1.2, folder.Path() / "one.assets", folder.Path() / "all.assets", &ReadBare, &SecondsOfAssets,
         kAssets, true},
    };
    DoInChildProcess(
        [&]
        {
            WriteIds(cases[0].smallest, 1);
            WriteIds(cases[0].file, kObjects);
            WriteAssets(cases[1].smallest, 1);
            WriteAssets(cases[1].file, kAssets);
        });
    fmt::print("{:<16} {:>9} {:>10} {:>10} {:>6}\n", "", "file MB", "floor ms", "read ms", "ratio");
    std::vector<Goal> goals;
    for (Case const& measured : cases)
        goals.push_back(Report(measured, repeat));
    fmt::print("{}", GoalsText(goals));
}

}  // namespace

int main(int argc, char** argv)
{
    try
    {
        int repeat = 5;
        CLI::App app("Measures the reading of persistent ids and assets beside a bare parse or read of their files.");
        app.add_option("--repeat", repeat, "Rounds; the medians count")
            ->check(CLI::Range(1, 1000))
            ->capture_default_str();
        CLI11_PARSE(app, argc, argv);
        Run(repeat);
        return 0;
    }
    catch (std::exception const& exception)
    {
        std::fprintf(stderr, "kvr_bench_attached: %s\n", exception.what());
        return 1;
    }
}

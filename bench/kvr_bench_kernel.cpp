// What restoring a kernel store costs beside Open CASCADE's own reading of the same shapes.

#include <fmt/format.h>
#include <BRepTools.hxx>
#include <BRep_Builder.hxx>
#include <BinTools.hxx>
#include <CLI/CLI.hpp>
#include <TopoDS_Shape.hxx>
#include <algorithm>
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/ChildProcess.h"
#include "bench/Goals.h"
#include "bench/KernelGenerator.h"
#include "bench/ProcessorTime.h"
#include "bench/ScratchFolder.h"
#include "framework/kernel/entity.h"
#include "framework/kernel/entity_list.h"
#include "framework/kernel/global_data.h"
#include "framework/kernel/history_stream.h"
#include "framework/kernel/restore.h"

namespace
{

using namespace KVR::Bench;

Figures ReadWithOpenCascade(KernelStoreFiles const& files)
{
    double const before = PeakResidentBytes();
    TopoDS_Shape shape;
    double const seconds = SecondsOf(
        [&]
        {
            BRep_Builder builder;
            if (!(files.isText ? BRepTools::Read(shape, files.shapes.c_str(), builder)
                               : BinTools::Read(shape, files.shapes.c_str())))
                throw std::runtime_error("Open CASCADE did not read its shapes");
        });
    return {{"seconds", seconds}, {"memory", PeakResidentBytes() - before}};
}

Figures Restore(KernelStoreFiles const& files, unsigned bodies)
{
    double const before = PeakResidentBytes();
    KVR::HISTORY_STREAM stream;
    KVR::ActiveStreamScope const active(&stream);
    KVR::ENTITY_LIST entities(false);
    double const seconds = SecondsOf(
        [&]
        {
            std::FILE* const file = std::fopen(files.store.c_str(), "rb");
            KVR::outcome const result = KVR::GKI_RESTORE(file, files.isText, -1).execute_restore(entities);
            std::fclose(file);
            if (!result.ok())
                throw std::runtime_error(result.message());
        });
    if (entities.count() != static_cast<int>(bodies))
        throw std::runtime_error("The store lost bodies");
    return {{"seconds", seconds}, {"memory", PeakResidentBytes() - before}};
}

template <class Figure>
double Median(std::vector<Figures> const& a, std::vector<Figures> const& b, Figure figure)
{
    std::vector<double> values;
    for (std::size_t i = 0; i < a.size(); ++i)
        values.push_back(figure(a[i], b[i]));
    auto const middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

// Prints the rows of one form, and answers what they make of the goals.
std::vector<Goal> Report(KernelStoreFiles const& files, unsigned bodies, int repeat)
{
    std::vector<Figures> theirs;
    std::vector<Figures> ours;
    for (int i = 0; i < repeat; ++i)
    {
        theirs.push_back(InChildProcess([&] { return ReadWithOpenCascade(files); }));
        ours.push_back(InChildProcess([&] { return Restore(files, bodies); }));
    }
    auto const of = [&](std::vector<Figures> const& rounds, char const* name)
    { return Median(rounds, rounds, [&](Figures const& a, Figures const&) { return a.at(name); }); };
    auto const ratio = [&](char const* name)
    { return Median(ours, theirs, [&](Figures const& a, Figures const& b) { return a.at(name) / b.at(name); }); };
    char const* const reader = files.isText ? "BRepTools::Read" : "BinTools::Read";
    fmt::print("{:<28} {:>10.1f} {:>12.1f}\n", reader, of(theirs, "seconds") * 1e3, of(theirs, "memory") / 1e6);
    fmt::print("{:<28} {:>10.1f} {:>12.1f}\n", "restore of the store", of(ours, "seconds") * 1e3,
               of(ours, "memory") / 1e6);
    return {{fmt::format("time, restore / {}", reader), "", files.isText ? 1.1 : 1.03, ratio("seconds")},
            {fmt::format("memory, restore / {}", reader), "", 1.2, ratio("memory")}};
}

void Run(unsigned bodies, int repeat)
{
    ScratchFolder const folder;
    fmt::print("{:<28} {:>10} {:>12}\n", fmt::format("{} bodies", bodies), "ms", "MB");
    std::vector<Goal> goals;
    for (bool const isText : {false, true})
    {
        KernelStoreFiles const files{(folder.Path() / (isText ? "s.sat" : "s.sab")).string(),
                                     (folder.Path() / (isText ? "s.brep" : "s.bin")).string(), isText};
        DoInChildProcess([&] { WriteKernelStore(files, bodies); });
        std::vector<Goal> const reached = Report(files, bodies, repeat);
        goals.insert(goals.end(), reached.begin(), reached.end());
    }
    std::fputs(GoalsText(goals).c_str(), stdout);
}

}  // namespace

int main(int argc, char** argv)
{
    try
    {
        unsigned bodies = 2000;
        int repeat = 5;
        CLI::App app("Measures the restoring of kernel stores beside Open CASCADE's reading of the same shapes.");
        app.add_option("--bodies", bodies, "Bodies in the store")->check(CLI::Range(1, 100'000))->capture_default_str();
        app.add_option("--repeat", repeat, "Rounds; the medians count")
            ->check(CLI::Range(1, 1000))
            ->capture_default_str();
        CLI11_PARSE(app, argc, argv);
        Run(bodies, repeat);
        return 0;
    }
    catch (std::exception const& exception)
    {
        std::fprintf(stderr, "kvr_bench_kernel: %s\n", exception.what());
        return 1;
    }
}

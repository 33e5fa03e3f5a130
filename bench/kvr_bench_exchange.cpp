// What importing a model and exporting its scene cost beside Open CASCADE's own reading, meshing and writing.

#include <fmt/format.h>
#include <sys/resource.h>
#include <CLI/CLI.hpp>
#include <Message.hxx>
#include <Message_Messenger.hxx>
#include <Message_Printer.hxx>
#include <Message_ProgressRange.hxx>
#include <RWGltf_CafWriter.hxx>
#include <STEPCAFControl_Writer.hxx>
#include <TColStd_IndexedDataMapOfStringString.hxx>
#include <TDocStd_Document.hxx>
#include <chrono>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <stdexcept>
#include <string>

#include "bench/ChildProcess.h"
#include "bench/Goals.h"
#include "bench/HeldScene.h"
#include "bench/OpenCascadeModel.h"
#include "bench/Pairs.h"
#include "bench/ScratchFolder.h"
#include "exchange/ExportScene.h"
#include "exchange/ImportModel.h"
#include "exchange/export/ExportTask.h"
#include "exchange/export/ShapeDocumentBuilder.h"
#include "scene/Scene.h"

namespace
{

using namespace KVR::Bench;

template <class Work>
double WallSecondsOf(Work work)
{
    auto const start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// What a work took: time by the clock, since both sides may use several processors, and the peak of memory after it.
template <class Work>
Figures Took(Work work)
{
    double const seconds = WallSecondsOf(work);
    return {{"seconds", seconds}, {"peak", PeakResidentBytes()}};
}

// Of this process and the children that it has waited for, all threads together.
double ProcessorSecondsOfAll()
{
    auto const of = [](int who)
    {
        rusage usage{};
        getrusage(who, &usage);
        auto const seconds = [](timeval const& time)
        { return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec); };
        return seconds(usage.ru_utime) + seconds(usage.ru_stime);
    };
    return of(RUSAGE_SELF) + of(RUSAGE_CHILDREN);
}

Figures ReadWithOpenCascade(std::string const& path)
{
    double const before = ProcessorSecondsOfAll();
    Figures figures = Took([&] { MeshBodies(ReadStep(path)); });
    figures["processor"] = ProcessorSecondsOfAll() - before;
    return figures;
}

Figures WriteGlbWithOpenCascade(std::string const& path, std::string const& glb)
{
    Handle(TDocStd_Document) const document = ReadStep(path);
    MeshBodies(document);
    return Took(
        [&]
        {
            RWGltf_CafWriter writer(glb.c_str(), true);
            if (!writer.Perform(document, TColStd_IndexedDataMapOfStringString(), Message_ProgressRange()))
                throw std::runtime_error("Open CASCADE did not write " + glb);
        });
}

// Of the document that an export makes of the scene.
Figures WriteStepWithOpenCascade(std::string const& path, std::string const& step)
{
    HeldScene held(path);
    KVR::Scene const scene(held.Producer(), held.RootId());
    KVR::ExportOptions const options;
    KVR::ExportTask task(held.Producer(), scene, options, step, {}, {}, {});
    KVR::ShapeDocument const content = KVR::ShapeDocumentBuilder(task, true).Build();
    Message::DefaultMessenger()->ChangePrinters().Clear();
    Figures figures = Took(
        [&]
        {
            STEPCAFControl_Writer writer;
            if (!writer.Transfer(content.document, STEPControl_AsIs) || writer.Write(step.c_str()) != IFSelect_RetDone)
                throw std::runtime_error("Open CASCADE did not write " + step);
        });
    figures["size"] = static_cast<double>(std::filesystem::file_size(step));
    return figures;
}

template <class Result>
void Expect(Result const& result)
{
    if (result.outcome != KVR::Outcome::kDone)
        throw std::runtime_error(result.failure);
}

// With the memory of the process that did the work.
Figures Import(std::string const& path, std::string const& scene)
{
    double const before = ProcessorSecondsOfAll();
    Figures figures = Took([&] { Expect(KVR::ImportModel(path, scene)); });
    rusage usage{};
    getrusage(RUSAGE_CHILDREN, &usage);
    figures["peak"] = static_cast<double>(usage.ru_maxrss) * 1024.0;
    figures["processor"] = ProcessorSecondsOfAll() - before;
    return figures;
}

double ExportSeconds(std::string const& scene, std::string const& path)
{
    KVR::SceneOptions options;
    options.path = scene;
    return WallSecondsOf([&] { Expect(KVR::ExportScene(options, path)); });
}

// Of a scene that the producer holds.
Figures Write(std::string const& scene, std::string const& path)
{
    HeldScene held(scene);
    Figures figures = Took([&] { Expect(KVR::ExportScene(held.Producer(), held.RootId(), path)); });
    figures["size"] = static_cast<double>(std::filesystem::file_size(path));
    return figures;
}

void Run(std::string const& path, int repeat)
{
    ScratchFolder const folder;
    auto const at = [&](char const* name) { return (folder.Path() / name).string(); };
    std::string const scene = at("scene.xml");
    Pairs imports;
    Pairs glb;
    Pairs step;
    Pairs whole;
    for (int i = 0; i < repeat; ++i)
    {
        Figures const theirs = InChildProcess([&] { return ReadWithOpenCascade(path); });
        imports.Add(InChildProcess([&] { return Import(path, scene); }), theirs);
        Figures const theirGlb = InChildProcess([&] { return WriteGlbWithOpenCascade(path, at("theirs.glb")); });
        glb.Add(InChildProcess([&] { return Write(scene, at("ours.glb")); }), theirGlb);
        Figures const theirStep = InChildProcess([&] { return WriteStepWithOpenCascade(scene, at("theirs.stp")); });
        step.Add(InChildProcess([&] { return Write(scene, at("ours.stp")); }), theirStep);
        double const seconds = ExportSeconds(scene, at("ours.glb"));
        whole.Add({{"seconds", seconds}}, theirGlb);
    }
    fmt::print("{:<52} {:>10} {:>10}\n", path, "ms", "MB");
    fmt::print("processor time: Open CASCADE {:.1f} ms, import {:.1f} ms, ratio {:.2f}\n",
               imports.Theirs("processor") * 1e3, imports.Ours("processor") * 1e3, imports.Ratio("processor"));
    auto const line = [](char const* name, double seconds, double bytes)
    { fmt::print("{:<52} {:>10.1f} {:>10.1f}\n", name, seconds * 1e3, bytes / 1e6); };
    line("Open CASCADE: read and mesh; peak", imports.Theirs("seconds"), imports.Theirs("peak"));
    line("import: read, mesh and write the scene; peak", imports.Ours("seconds"), imports.Ours("peak"));
    line("Open CASCADE: write GLB of the document in memory", glb.Theirs("seconds"), glb.Theirs("peak"));
    line("export: write GLB of the scene in memory", glb.Ours("seconds"), glb.Ours("peak"));
    line("export: read the scene and write GLB", whole.Ours("seconds"), 0.0);
    line("Open CASCADE: write STEP of the document; file", step.Theirs("seconds"), step.Theirs("size"));
    line("export: write STEP of the scene in memory; file", step.Ours("seconds"), step.Ours("size"));
    std::fputs(GoalsText({{"import / Open CASCADE's reading and meshing", "", 0.8, imports.Ratio("seconds")},
                          {"import / Open CASCADE's, memory", "", 1.0, imports.Ratio("peak")},
                          {"writing GLB / Open CASCADE's glTF writer", "", 1.0, glb.Ratio("seconds")},
                          {"writing STEP / Open CASCADE's writer", "", 1.3, step.Ratio("seconds")},
                          {"writing STEP / Open CASCADE's, size", "", 1.05, step.Ratio("size")}})
                   .c_str(),
               stdout);
}

}  // namespace

int main(int argc, char** argv)
{
    try
    {
        CLI::App app("Measures import and export beside Open CASCADE, in one run.");
        std::string model = KVR_BENCH_MODEL;
        int repeat = 5;
        app.add_option("model", model, "A STEP file")->capture_default_str();
        app.add_option("--repeat", repeat, "Rounds, of which the median counts")->check(CLI::PositiveNumber);
        CLI11_PARSE(app, argc, argv);
        Run(model, repeat);
        return 0;
    }
    catch (std::exception const& error)
    {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}

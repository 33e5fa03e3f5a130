// What importing a model and exporting its scene cost beside Open CASCADE's own reading, meshing and writing.

#include <fmt/format.h>
#include <BRepMesh_IncrementalMesh.hxx>
#include <CLI/CLI.hpp>
#include <Message.hxx>
#include <Message_Messenger.hxx>
#include <Message_Printer.hxx>
#include <Message_ProgressRange.hxx>
#include <RWGltf_CafWriter.hxx>
#include <STEPCAFControl_Reader.hxx>
#include <TColStd_IndexedDataMapOfStringString.hxx>
#include <TDocStd_Document.hxx>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/ChildProcess.h"
#include "bench/Goals.h"
#include "bench/ScratchFolder.h"
#include "exchange/ExportScene.h"
#include "exchange/ImportModel.h"
#include "exchange/import/ModelBox.h"
#include "exchange/import/ProductPlan.h"
#include "exchange/source/SceneFile.h"
#include "exchange/source/SceneReading.h"
#include "framework/api/UTF8String.h"

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

// As Open CASCADE's own reader does it, with all that it can read.
Handle(TDocStd_Document) Read(std::string const& path)
{
    Message::DefaultMessenger()->ChangePrinters().Clear();
    Handle(TDocStd_Document) document = new TDocStd_Document("BinXCAF");
    STEPCAFControl_Reader reader;
    reader.SetColorMode(true);
    reader.SetNameMode(true);
    reader.SetLayerMode(true);
    reader.SetPropsMode(true);
    reader.SetMatMode(true);
    reader.SetSHUOMode(true);
    reader.SetGDTMode(true);
    reader.SetViewMode(true);
    Handle(TDocStd_Document) target = document;
    if (reader.ReadFile(path.c_str()) != IFSelect_RetDone || !reader.Transfer(target))
        throw std::runtime_error("Open CASCADE did not read " + path);
    return document;
}

// As it does that when asked for nothing else: one thread.
void Mesh(Handle(TDocStd_Document) const& document)
{
    KVR::ProductPlan const plan(document);
    double const deflection = KVR::DiagonalOfModel(plan) * KVR::Deflection().value;
    for (KVR::ComponentPlan const& component : plan.components)
        if (!component.shape.IsNull())
            BRepMesh_IncrementalMesh(component.shape, deflection, false, 0.5, false);
}

// Times of Open CASCADE alone, in the order of its work.
Figures OpenCascade(std::string const& path, std::string const& glb)
{
    Handle(TDocStd_Document) document;
    double const read = WallSecondsOf(
        [&]
        {
            document = Read(path);
            Mesh(document);
        });
    double const write = WallSecondsOf(
        [&]
        {
            RWGltf_CafWriter writer(glb.c_str(), true);
            if (!writer.Perform(document, TColStd_IndexedDataMapOfStringString(), Message_ProgressRange()))
                throw std::runtime_error("Open CASCADE did not write " + glb);
        });
    return {{"read", read}, {"write", write}};
}

template <class Result>
void Expect(Result const& result)
{
    if (result.outcome != KVR::Outcome::kDone)
        throw std::runtime_error(result.failure);
}

double ImportSeconds(std::string const& path, std::string const& scene)
{
    return WallSecondsOf([&] { Expect(KVR::ImportModel(path, scene)); });
}

double ExportSeconds(std::string const& scene, std::string const& glb)
{
    KVR::SceneOptions options;
    options.path = scene;
    return WallSecondsOf([&] { Expect(KVR::ExportScene(options, glb)); });
}

// Of a scene that the producer holds.
double WriteSeconds(std::string const& scene, std::string const& glb)
{
    KVR::SceneOptions options;
    options.path = scene;
    KVR::SceneFile file(options);
    KVR::SceneReading const reading = KVR::SceneReading::Of(file.Producer());
    if (!reading.rootId)
        throw std::runtime_error("The scene cannot be read");
    return WallSecondsOf([&] { Expect(KVR::ExportScene(file.Producer(), *reading.rootId, glb)); });
}

double Median(std::vector<double> values)
{
    auto const middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

void Run(std::string const& path, int repeat)
{
    ScratchFolder const folder;
    std::string const scene = (folder.Path() / "scene.xml").string();
    std::vector<double> reads;
    std::vector<double> imports;
    std::vector<double> importRatios;
    std::vector<double> writes;
    std::vector<double> exports;
    std::vector<double> ourWrites;
    std::vector<double> writeRatios;
    for (int i = 0; i < repeat; ++i)
    {
        Figures const theirs =
            InChildProcess([&] { return OpenCascade(path, (folder.Path() / "theirs.glb").string()); });
        reads.push_back(theirs.at("read"));
        writes.push_back(theirs.at("write"));
        imports.push_back(ImportSeconds(path, scene));
        exports.push_back(ExportSeconds(scene, (folder.Path() / "ours.glb").string()));
        importRatios.push_back(imports.back() / reads.back());
        ourWrites.push_back(
            InChildProcess(
                [&] {
                    return Figures{{"write", WriteSeconds(scene, (folder.Path() / "ours.glb").string())}};
                })
                .at("write"));
        writeRatios.push_back(ourWrites.back() / writes.back());
    }
    fmt::print("{:<52} {:>10}\n", path, "ms");
    auto const line = [](char const* name, std::vector<double> const& seconds)
    { fmt::print("{:<52} {:>10.1f}\n", name, Median(seconds) * 1e3); };
    line("Open CASCADE: read and mesh", reads);
    line("import: read, mesh and write the scene", imports);
    line("Open CASCADE: write GLB of the document in memory", writes);
    line("export: write GLB of the scene in memory", ourWrites);
    line("export: read the scene and write GLB", exports);
    std::fputs(GoalsText({{"import / Open CASCADE's reading and meshing", "", 0.9, Median(importRatios)},
                          {"writing GLB / Open CASCADE's glTF writer", "", 1.0, Median(writeRatios)}})
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

// What opening the scene of a whole product costs, bodies, meshes, styles and structure, beside Open CASCADE opening
// the same document from its own binary format, and assimp reading a GLB of it.

#include <fmt/format.h>
#include <BinXCAFDrivers.hxx>
#include <CLI/CLI.hpp>
#include <PCDM_ReaderStatus.hxx>
#include <PCDM_StoreStatus.hxx>
#include <TDocStd_Application.hxx>
#include <TDocStd_Document.hxx>
#include <assimp/Importer.hpp>
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
#include "bench/ProcessorTime.h"
#include "bench/ScratchFolder.h"
#include "exchange/ExportScene.h"
#include "exchange/ImportModel.h"

namespace
{

using namespace KVR::Bench;

/// The product in each form.
struct Files
{
    std::string scene;
    std::string document;
    std::string glb;
};

template <class Result>
void Expect(Result const& result)
{
    if (result.outcome != KVR::Outcome::kDone)
        throw std::runtime_error(result.failure);
}

void WriteDocument(std::string const& model, std::string const& path)
{
    Handle(TDocStd_Document) const document = ReadStep(model);
    MeshBodies(document);
    Handle(TDocStd_Application) const application = new TDocStd_Application;
    BinXCAFDrivers::DefineFormat(application);
    static_cast<CDF_Application&>(*application).Open(document);
    if (application->SaveAs(document, path.c_str()) != PCDM_SS_OK)
        throw std::runtime_error("Open CASCADE did not write " + path);
}

// What opening takes from a fresh process on: what it keeps is there to its end.
template <class Open>
Figures MeasureOpening(Open open)
{
    double const before = PeakResidentBytes();
    double const seconds = SecondsOf(open);
    return {{"seconds", seconds}, {"memory", PeakResidentBytes() - before}};
}

Figures OpenScene(Files const& files)
{
    return MeasureOpening([&] { new HeldScene(files.scene); });
}

Figures OpenDocument(Files const& files)
{
    return MeasureOpening(
        [&]
        {
            auto* const application = new Handle(TDocStd_Application)(new TDocStd_Application);
            BinXCAFDrivers::DefineFormat(*application);
            auto* const document = new Handle(TDocStd_Document);
            if ((*application)->Open(files.document.c_str(), *document) != PCDM_RS_OK)
                throw std::runtime_error("Open CASCADE did not read " + files.document);
        });
}

Figures OpenGlb(Files const& files)
{
    return MeasureOpening(
        [&]
        {
            auto* const importer = new Assimp::Importer;
            if (!importer->ReadFile(files.glb, 0))
                throw std::runtime_error(importer->GetErrorString());
        });
}

void Run(std::string const& model, int repeat)
{
    ScratchFolder const folder;
    auto const at = [&](char const* name) { return (folder.Path() / name).string(); };
    Files const files{at("scene.xml"), at("document.xbf"), at("scene.glb")};
    Expect(KVR::ImportModel(model, files.scene));
    KVR::SceneOptions source;
    source.path = files.scene;
    Expect(KVR::ExportScene(source, files.glb));
    DoInChildProcess([&] { WriteDocument(model, files.document); });
    Pairs documents;
    Pairs glbs;
    for (int i = 0; i < repeat; ++i)
    {
        Figures const ours = InChildProcess([&] { return OpenScene(files); });
        documents.Add(ours, InChildProcess([&] { return OpenDocument(files); }));
        glbs.Add(ours, InChildProcess([&] { return OpenGlb(files); }));
    }
    fmt::print("{:<52} {:>10} {:>10}\n", model, "ms", "MB");
    auto const line = [](char const* name, double seconds, double bytes)
    { fmt::print("{:<52} {:>10.1f} {:>10.1f}\n", name, seconds * 1e3, bytes / 1e6); };
    line("scene", documents.Ours("seconds"), documents.Ours("memory"));
    line("Open CASCADE: BinXCAF document", documents.Theirs("seconds"), documents.Theirs("memory"));
    line("assimp: GLB", glbs.Theirs("seconds"), glbs.Theirs("memory"));
    std::fputs(GoalsText({{"opening / Open CASCADE's document", "", 1.0, documents.Ratio("seconds")},
                          {"opening / Open CASCADE's document, memory", "", 1.0, documents.Ratio("memory")},
                          {"opening / assimp's GLB", "", 1.5, glbs.Ratio("seconds")}})
                   .c_str(),
               stdout);
}

}  // namespace

int main(int argc, char** argv)
{
    try
    {
        CLI::App app("Measures the opening of a whole product beside Open CASCADE and assimp.");
        std::string model = KVR_BENCH_MODEL;
        int repeat = 5;
        app.add_option("model", model, "A STEP file")->capture_default_str();
        app.add_option("--repeat", repeat, "Pairs; the medians count")
            ->check(CLI::Range(1, 1000))
            ->capture_default_str();
        CLI11_PARSE(app, argc, argv);
        Run(model, repeat);
        return 0;
    }
    catch (std::exception const& exception)
    {
        std::fprintf(stderr, "kvr_bench_product: %s\n", exception.what());
        return 1;
    }
}

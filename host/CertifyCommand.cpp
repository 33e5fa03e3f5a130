#include "host/CertifyCommand.h"
#include "framework/api/LengthUnits.h"

#include <unistd.h>
#include <Standard_Failure.hxx>

#include <CLI/CLI.hpp>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <stdexcept>
#include <system_error>

#include "exchange/certify/Certificate.h"
#include "exchange/certify/FactReaders.h"
#include "exchange/export/Export.h"
#include "exchange/import/Import.h"
#include "exchange/import/ModelBox.h"
#include "exchange/import/ProductPlan.h"
#include "exchange/model/ModelDocument.h"
#include "exchange/model/ModelError.h"
#include "exchange/model/ModelFormat.h"
#include "exchange/run/ChildProcess.h"
#include "exchange/source/SceneFile.h"
#include "exchange/source/SceneReading.h"
#include "framework/api/UTF8String.h"
#include "host/CommonOptions.h"
#include "output/Output.h"
#include "output/SafeText.h"

namespace KVR
{

namespace
{

namespace fs = std::filesystem;

class ScratchFolder
{
public:
    ScratchFolder()
    {
        std::string path = (fs::temp_directory_path() / "kvr-certify-XXXXXX").string();
        if (!mkdtemp(path.data()))
            throw std::system_error(errno, std::generic_category(), path);
        m_path = path;
    }
    ~ScratchFolder()
    {
        std::error_code ignored;
        fs::remove_all(m_path, ignored);
    }
    ScratchFolder(ScratchFolder const&) = delete;
    ScratchFolder& operator=(ScratchFolder const&) = delete;

    std::string File(char const* name) const { return (m_path / name).string(); }

private:
    fs::path m_path;
};

// The user has ended the program.
struct Interrupted
{
};

// Facts that a child process finds, since what finds them may crash. A failure is told by its cause.
ModelFacts FactsInChild(std::string const& what, std::function<ModelFacts()> const& find)
{
    constexpr char kFailure = '!';
    ChildResult const child = RunInChild(
        [&]() -> std::string
        {
            try
            {
                return find().Text();
            }
            catch (std::exception const& error)
            {
                return kFailure + std::string(error.what());
            }
            catch (Standard_Failure const& failure)
            {
                return kFailure + std::string("Open CASCADE failed: ") + failure.GetMessageString();
            }
        });
    if (child.isInterrupted)
        throw Interrupted();
    if (!child.answer)
        throw std::runtime_error(what + ": its reader ended (" + SignalText(child.signal) + ")");
    if (child.answer->starts_with(kFailure))
        throw std::runtime_error(what + ": " + child.answer->substr(1));
    return ModelFacts::Of(*child.answer);
}

// The triangles of all are made at one measure, that of the model.
ModelFacts FactsOfModel(std::string const& path, bool withAnnotations, std::string const& stem,
                        double deflectionInMillimetres)
{
    std::optional<ModelFormat> const format = FormatOfModel(path);
    ModelReadOptions options;
    options.withAnnotations = withAnnotations;
    ModelDocument const model = ModelDocument::Read(path, format.value(), options);
    double const deflection = deflectionInMillimetres > 0.0
                                  ? deflectionInMillimetres / (MetresOf(model.unit) * 1e3)
                                  : DiagonalOfModel(ProductPlan(model.document)) * Deflection().value;
    return FactsOfDocument(model, deflection, stem);
}

ModelFacts FactsOfSceneFile(std::string const& path)
{
    SceneOptions options;
    options.path = path;
    SceneFile file(options);
    SceneReading const reading = SceneReading::Of(file.Producer());
    if (!reading.rootId)
        throw std::runtime_error("it has no root");
    return FactsOfScene(file.Producer(), *reading.rootId);
}

bool HasBodies(ModelFacts const& facts)
{
    return facts.bodies.has_value() || facts.edges.value_or(0) > 0;
}

// Adds remarks; throws when the export failed.
void ExportTo(std::string const& scenePath, std::string const& path, std::vector<std::string>& remarks)
{
    SceneOptions scene;
    scene.path = scenePath;
    ExportOptions options;
    options.path = path;
    ExportResult const result = ExportScene(scene, options);
    if (result.isInterrupted)
        throw Interrupted();
    if (!result.isGood)
        throw std::runtime_error(result.sentence);
    for (std::string const& remark : result.remarks)
        remarks.push_back(fs::path(path).filename().string() + remark.substr(path.size()));
}

}  // namespace

CertifyCommand::CertifyCommand(CLI::App& program)
    : Command(
          program, "certify",
          "Make a scene of a model, export it to STEP and GLB, read all of them back, and show whether they hold the "
          "same. The exit status is 1 when they do not")
{
    Arguments().add_option("model", m_model, "The model's file")->required()->type_name("MODEL");
    AddJsonOption(Arguments(), m_asJson);
    Arguments().add_flag("--quiet", m_isQuiet, "Show no progress and no remarks");
}

ExitStatus CertifyCommand::Run()
{
    try
    {
        ScratchFolder const folder;
        ImportOptions import;
        import.modelPath = m_model;
        import.scenePath = folder.File("scene.xml");
        import.isQuiet = m_isQuiet;
        ImportResult const imported = ImportModel(import);
        if (!imported.isGood)
        {
            Complain(imported.sentence);
            return imported.isInterrupted ? kExit_Interrupted : kExit_Failed;
        }
        std::vector<std::string> remarks = imported.remarks;
        std::vector<Certificate::Stage> stages;
        stages.push_back(
            {"source",
             FactsInChild(m_model,
                          [&] { return FactsOfModel(m_model, imported.hasAnnotations, folder.File("source"), 0.0); })});
        stages.push_back({"scene", FactsInChild("the scene", [&] { return FactsOfSceneFile(import.scenePath); })});
        if (HasBodies(stages.back().facts))
        {
            std::string const step = folder.File("scene.step");
            ExportTo(import.scenePath, step, remarks);
            ModelFacts facts = FactsInChild(
                "the exported STEP file",
                [&] { return FactsOfModel(step, true, folder.File("step"), imported.deflectionInMillimetres); });
            // Its bodies are meshed anew, which says nothing of them.
            facts.triangles.reset();
            facts.mesh.reset();
            stages.push_back({"STEP", std::move(facts)});
        }
        std::string const glb = folder.File("scene.glb");
        ExportTo(import.scenePath, glb, remarks);
        stages.push_back({"GLB", FactsInChild("the exported GLB file", [&] { return FactsOfGlb(glb); })});
        Certificate const certificate(std::move(stages));
        if (!m_isQuiet && !m_asJson)
            for (std::string const& remark : remarks)
                Complain(Escaped(m_model) + ": " + Escaped(remark));
        Output out(STDOUT_FILENO);
        out.Put(m_asJson ? certificate.Json(m_model, remarks) : certificate.Table());
        out.Flush();
        return certificate.IsGood() ? kExit_Good : kExit_Failed;
    }
    catch (Interrupted const&)
    {
        Complain("interrupted");
        return kExit_Interrupted;
    }
}

}  // namespace KVR

#include "exchange/CertifyModel.h"

#include <filesystem>
#include <functional>
#include <stdexcept>

#include "exchange/ExportScene.h"
#include "exchange/ImportModel.h"
#include "exchange/certify/Certificate.h"
#include "exchange/certify/FactReaders.h"
#include "exchange/model/ModelDocument.h"
#include "exchange/model/ModelFormat.h"
#include "exchange/run/ChildProcess.h"
#include "exchange/run/Heard.h"
#include "exchange/run/ScratchFolder.h"
#include "exchange/source/SceneFile.h"
#include "exchange/source/SceneReading.h"
#include "framework/api/LengthUnits.h"
#include "framework/api/UTF8String.h"
#include "output/SafeText.h"

namespace KVR
{

namespace
{

constexpr char kStage_Comparing[] = "comparing";

// The caller does not want to go on.
struct Cancelled
{
};

// A failure that is a sentence for a terminal already.
class CertifyError : public std::runtime_error
{
public:
    using runtime_error::runtime_error;
};

// How finely bodies are meshed: as the import did, so that triangles can be compared.
struct Measure
{
    double deflection;
    UnitTypeEnum unit;

    double In(UnitTypeEnum other) const
    {
        return unit == other ? deflection : deflection * MetresOf(unit) / MetresOf(other);
    }
};

ModelFacts FactsOfModel(std::string const& path, bool withAnnotations, Measure const& measure)
{
    ModelReadOptions options;
    options.withAnnotations = withAnnotations;
    ModelDocument const model = ModelDocument::Read(path, FormatOfModel(path).value(), options);
    return FactsOfDocument(model, measure.In(model.unit));
}

ModelFacts FactsOfSceneFile(std::string const& path)
{
    SceneOptions options;
    options.path = path;
    options.strict = true;
    SceneFile file(options);
    SceneReading const reading = SceneReading::Of(file);
    if (!reading.rootId)
        throw std::runtime_error("it has no root");
    return FactsOfScene(file.Producer(), *reading.rootId);
}

bool HasBodies(ModelFacts const& facts)
{
    return facts.bodies.has_value() || facts.edges.value_or(0) > 0;
}

// A comparison on its way.
class Certifier
{
public:
    Certifier(std::string const& model, Progress const& progress)
        : m_model(model), m_progress(progress), m_folder(std::filesystem::temp_directory_path(), "kvr-certify-")
    {
    }

    CertifyResult Certify()
    {
        std::string const scene = File("scene.xml");
        ImportResult const imported = ImportModel(m_model, scene, {}, m_progress);
        Expect(imported.outcome, imported.failure);
        m_result.remarks = imported.remarks;
        Measure const measure{imported.deflection, imported.unit};
        AddStage("source", m_model, [&] { return FactsOfModel(m_model, imported.hasAnnotations, measure); });
        AddStage("scene", "the scene", [&] { return FactsOfSceneFile(scene); });
        if (HasBodies(m_stages.back().facts))
        {
            std::string const step = Exported(scene, "scene.step");
            AddStage("STEP", "the exported STEP file", [&] { return FactsOfModel(step, true, measure); });
            // Its bodies are meshed anew, which says nothing of them.
            m_stages.back().facts.triangles.reset();
            m_stages.back().facts.mesh.reset();
        }
        std::string const glb = Exported(scene, "scene.glb");
        AddStage("GLB", "the exported GLB file", [&] { return FactsOfGlb(glb); });
        Certificate const certificate(m_stages);
        m_result.outcome = Outcome::kDone;
        m_result.rows = certificate.Rows();
        m_result.isEqual = certificate.IsGood();
        return std::move(m_result);
    }

private:
    std::string File(char const* name) const { return (m_folder.Path() / name).string(); }

    static void Expect(Outcome outcome, std::string const& failure)
    {
        if (outcome == Outcome::kCancelled)
            throw Cancelled();
        if (outcome == Outcome::kFailed)
            throw CertifyError(failure);
    }

    std::string Exported(std::string const& scenePath, char const* name)
    {
        SceneOptions scene;
        scene.path = scenePath;
        std::string path = File(name);
        ExportResult const exported = ExportScene(scene, path, {}, m_progress);
        Expect(exported.outcome, exported.failure);
        for (std::string const& remark : exported.remarks)
            m_result.remarks.push_back(std::string(name) + ": " + remark);
        return path;
    }

    // Facts that a child process finds, since what finds them may crash.
    void AddStage(char const* name, std::string const& what, std::function<ModelFacts()> const& find)
    {
        if (!Begin(m_progress, kStage_Comparing))
            throw Cancelled();
        ChildResult const child = RunInChild([&](ChildVoice const&) { return find().Text(); }, m_progress);
        if (child.isCancelled)
            throw Cancelled();
        if (!child.answer)
            throw std::runtime_error(what + ": " + child.failure.value_or("its reader ended " + child.EndText()));
        m_stages.push_back({name, ModelFacts::Of(*child.answer)});
        m_result.stages.emplace_back(name);
    }

    std::string m_model;
    Progress const& m_progress;
    ScratchFolder m_folder;
    std::vector<Certificate::Stage> m_stages;
    CertifyResult m_result;
};

CertifyResult Certified(std::string const& model, Progress const& progress)
{
    try
    {
        return Certifier(model, progress).Certify();
    }
    catch (Cancelled const&)
    {
        return Ended<CertifyResult>(Outcome::kCancelled);
    }
    catch (std::bad_alloc const&)
    {
        throw;
    }
    catch (CertifyError const& error)
    {
        return Ended<CertifyResult>(Outcome::kFailed, error.what());
    }
    catch (std::exception const& error)
    {
        return Ended<CertifyResult>(Outcome::kFailed, Escaped(error.what()));
    }
}

}  // namespace

CertifyResult CertifyModel(std::string const& modelPath, Progress const& progress)
{
    return Heard(progress, [&](Progress const& heard) { return Certified(modelPath, heard); });
}

}  // namespace KVR

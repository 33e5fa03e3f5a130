#include "exchange/CertifyModel.h"

#include <algorithm>
#include <deque>
#include <filesystem>
#include <functional>
#include <stdexcept>

#include "exchange/ExportScene.h"
#include "exchange/ImportModel.h"
#include "exchange/certify/Certificate.h"
#include "exchange/certify/FactReaders.h"
#include "exchange/certify/Picture.h"
#include "exchange/certify/SourceFormat.h"
#include "exchange/run/ChildProcess.h"
#include "exchange/run/Heard.h"
#include "exchange/run/ScratchFolder.h"
#include "exchange/run/StagePlan.h"
#include "output/SafeText.h"

namespace KVR
{

namespace
{

using namespace Certification;

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

// Files that state no unit are in this.
constexpr double kMillimetres = 1.0;

bool HasBodies(ModelFacts const& facts)
{
    return std::any_of(facts.occurrences.begin(), facts.occurrences.end(),
                       [](ModelFacts::Occurrence const& occurrence)
                       { return occurrence.faces > 0 || occurrence.bodies.length > 0.0; });
}

// A comparison on its way. Facts are found in child processes, since what finds them may crash, and while other work
// goes on.
class Certifier
{
public:
    Certifier(std::string const& model, CertifyOptions const& options, Progress const& progress)
        : m_model(model),
          m_options(options),
          m_progress(progress),
          m_folder(std::filesystem::temp_directory_path(), "kvr-certify-")
    {
    }

    CertifyResult Certify()
    {
        std::string const scene = File("scene.xml");
        Find("source", m_model, m_model, [this] { return FactsOfFile(m_model, kMillimetres); });
        ImportOptions importing;
        importing.timeout = m_options.timeout;
        ImportResult const imported = ImportModel(m_model, scene, importing, m_progress);
        Expect(imported.outcome, imported.failure);
        m_result.remarks = imported.remarks;
        Find("scene", "the scene", scene, [scene] { return FactsOfSceneFile(scene); });
        std::string const glb = Exported(scene, "scene.glb");
        Take();
        Take();
        if (HasBodies(m_stages.back().facts))
        {
            std::string const step = Exported(scene, "scene.step");
            Find("STEP", "the exported STEP file", step, [step] { return FactsOfStep(step); });
        }
        Find("GLB", "the exported GLB file", glb, [glb] { return FactsOfGltf(glb); });
        Draw("source", m_model);
        Draw("GLB", glb);
        return Compared();
    }

    CertifyResult CertifyAgainst(std::string const& other)
    {
        Find("source", m_model, m_model, [this] { return FactsOfFile(m_model, kMillimetres); });
        Find("other", other, other, [other] { return FactsOfFile(other, kMillimetres); });
        Draw("source", m_model);
        Draw("other", other);
        return Compared();
    }

private:
    // Facts that are being found.
    struct Search
    {
        std::string stage;
        std::string what;
        ChildWork work;
    };

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
        ExportOptions exporting;
        exporting.timeout = m_options.timeout;
        std::string path = File(name);
        ExportResult const exported = ExportScene(scene, path, exporting, m_progress);
        Expect(exported.outcome, exported.failure);
        for (std::string const& remark : exported.remarks)
            m_result.remarks.push_back(std::string(name) + ": " + remark);
        return path;
    }

    void Find(char const* stage, std::string const& what, std::string const& file,
              std::function<ModelFacts()> const& find)
    {
        m_searches.push_back({stage, what,
                              ChildWork([&](ChildVoice const&) { return find().Text(); },
                                        ChildLimits::For({file, m_model}, m_options.timeout))});
    }

    // Waits for the first search.
    void Take()
    {
        if (!Begin(m_progress, kStage_Comparing))
            throw Cancelled();
        Search search = std::move(m_searches.front());
        m_searches.pop_front();
        ChildResult const child = search.work.Finish(m_progress);
        if (child.isCancelled)
            throw Cancelled();
        if (!child.answer)
            throw std::runtime_error(search.what + ": " +
                                     child.failure.value_or("its reader ended " + child.EndText()));
        m_stages.push_back({search.stage, ModelFacts::Of(*child.answer)});
        m_result.stages.push_back(search.stage);
    }

    void Draw(char const* stage, std::string const& path)
    {
        if (m_options.withPictures)
            m_result.pictures.emplace_back(stage, PictureOf(path, File((std::string(stage) + ".png").c_str())));
    }

    CertifyResult Compared()
    {
        while (!m_searches.empty())
            Take();
        Certificate const certificate(std::move(m_stages));
        m_result.outcome = Outcome::kDone;
        m_result.rows = certificate.Rows();
        m_result.absences = certificate.Absences();
        m_result.isEqual = certificate.IsGood();
        return std::move(m_result);
    }

    std::string m_model;
    CertifyOptions m_options;
    Progress const& m_progress;
    ScratchFolder m_folder;
    std::deque<Search> m_searches;
    std::vector<Certificate::Stage> m_stages;
    CertifyResult m_result;
};

CertifyResult Certified(std::function<CertifyResult()> const& certify)
{
    try
    {
        return certify();
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

CertifyResult CertifyModel(std::string const& modelPath, CertifyOptions const& options, Progress const& progress)
{
    auto const work = [&](Progress const& heard)
    {
        // Import, export to GLB, facts of source and scene, export to STEP, facts of both files.
        Progress const planned = Planned(heard, {{"reading", 8},
                                                 {"transferring", 14},
                                                 {"meshing", 6},
                                                 {"writing", 5},
                                                 {"reading", 1},
                                                 {"writing", 3},
                                                 {kStage_Comparing, 30},
                                                 {"reading", 1},
                                                 {"transferring", 5},
                                                 {"writing", 5},
                                                 {kStage_Comparing, 22}});
        return Certified([&] { return Certifier(modelPath, options, planned).Certify(); });
    };
    return Heard(progress, work);
}

CertifyResult CertifyAgainst(std::string const& modelPath, std::string const& otherPath, CertifyOptions const& options,
                             Progress const& progress)
{
    return Heard(progress, [&](Progress const& heard)
                 { return Certified([&] { return Certifier(modelPath, options, heard).CertifyAgainst(otherPath); }); });
}

}  // namespace KVR

#include "exchange/CertifyModel.h"

#include <algorithm>
#include <filesystem>
#include <functional>
#include <optional>
#include <stdexcept>

#include "exchange/ExportScene.h"
#include "exchange/ImportModel.h"
#include "exchange/certify/Certificate.h"
#include "exchange/certify/Picture.h"
#include "exchange/certify/PlainModel.h"
#include "exchange/certify/SourceFormat.h"
#include "exchange/run/ChildProcess.h"
#include "exchange/run/Heard.h"
#include "exchange/run/StagePlan.h"
#include "output/SafeText.h"
#include "output/ScratchFolder.h"

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
        : m_path(model),
          m_options(options),
          m_progress(progress),
          m_folder(std::filesystem::temp_directory_path(), "kvr-certify-")
    {
    }

    CertifyResult Certify()
    {
        std::string const scene = File("scene.xml");
        PlainModel const model = Taken(m_path);
        m_model = model.Plain();
        ImportOptions importing;
        importing.timeout = m_options.timeout;
        ImportResult const imported = ImportModel(model.Given(), scene, importing, m_progress);
        Expect(imported.outcome, imported.failure);
        m_result.remarks = imported.remarks;
        // Import takes all processors, and what comes now one for each search.
        FindFile("source", m_path, model);
        Find("scene", "the scene", scene, [scene](TellFraction const&) { return FactsOfSceneFile(scene); });
        std::string const glb = Exported(scene, "scene.glb");
        Find("GLB", "the exported GLB file", glb, [glb](TellFraction const&) { return FactsOfGltf(glb); });
        // Whether there are bodies tells the scene, while the model, which takes longer, is still looked at.
        Take(kSearch_Scene, m_progress);
        if (HasBodies(m_searches[kSearch_Scene].facts.value()))
        {
            std::string const step = Exported(scene, "scene.step");
            Find("STEP", "the exported STEP file", step,
                 [step](TellFraction const& tell) { return WithoutIds(FactsOfStep(step, tell)); });
            // The order of the table.
            std::swap(m_searches.back(), m_searches[m_searches.size() - 2]);
        }
        Draw("source", model.Plain());
        Draw("GLB", glb);
        for (std::size_t i = 0; i < m_searches.size(); ++i)
            if (i != kSearch_Scene)
                Take(i, m_progress);
        return Compared();
    }

    CertifyResult CertifyAgainst(std::string const& other)
    {
        PlainModel const model = Taken(m_path);
        PlainModel const made = Taken(other);
        m_model = model.Plain();
        FindFile("source", m_path, model);
        FindFile("other", other, made);
        Draw("source", model.Plain());
        Draw("other", made.Plain());
        // Time goes with size.
        double const all = SizeOf(model.Plain()) + SizeOf(made.Plain());
        double const share = all > 0.0 ? SizeOf(model.Plain()) / all : 0.5;
        Progress const first = PartOf(m_progress, 0.0, share);
        Take(0, Planned(first, {{kStage_Comparing, 1.0}}));
        Progress const second = PartOf(m_progress, share, 1.0);
        Take(1, Planned(second, {{kStage_Comparing, 1.0}}));
        for (Search& search : m_searches)
            search.facts = WithoutIds(std::move(search.facts).value());
        return Compared();
    }

private:
    // Facts that are being found, or are there.
    struct Search
    {
        std::string stage;
        std::string what;
        ChildWork work;
        std::optional<ModelFacts> facts = {};
    };
    // The place of the scene among those of a model.
    static constexpr std::size_t kSearch_Scene = 1;

    std::string File(char const* name) const { return (m_folder.Path() / name).string(); }

    // What a file calls its faces no other file does.
    static ModelFacts WithoutIds(ModelFacts facts)
    {
        facts.tables.erase(kTable_FaceIds);
        return facts;
    }

    static double SizeOf(std::string const& path)
    {
        std::error_code error;
        auto const size = std::filesystem::file_size(path, error);
        return error ? 0.0 : static_cast<double>(size);
    }

    PlainModel Taken(std::string const& path) const
    {
        PlainModel model(path, m_folder.Path(), path == m_path ? "standard input" : "other", m_progress);
        if (model.IsCancelled())
            throw Cancelled();
        return model;
    }

    void FindFile(char const* stage, std::string const& what, PlainModel const& model)
    {
        bool const isModel = m_searches.empty();
        Find(stage, what, model.Plain(),
             [path = model.Plain(), isModel](TellFraction const& tell)
             { return FactsOfFile(path, kMillimetres, isModel, tell); });
    }

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

    // What is found in a file takes as long as that one or the model allows.
    void Find(char const* stage, std::string const& what, std::string const& file,
              std::function<ModelFacts(TellFraction const& tell)> const& find)
    {
        auto const work = [&](ChildVoice const& voice) {
            return find([&](double fraction) { voice.Progress({kStage_Comparing, fraction}); }).Text();
        };
        m_searches.push_back({stage, what, ChildWork(work, ChildLimits::For({file, m_model}, m_options.timeout))});
    }

    // Waits for a search.
    void Take(std::size_t place, Progress const& progress)
    {
        if (!Begin(progress, kStage_Comparing))
            throw Cancelled();
        Search& search = m_searches[place];
        ChildResult const child = search.work.Finish(progress);
        if (child.isCancelled)
            throw Cancelled();
        if (!child.answer)
            throw std::runtime_error(search.what + ": " +
                                     child.failure.value_or("its reader ended " + child.EndText()));
        search.facts = ModelFacts::Of(*child.answer);
    }

    void Draw(char const* stage, std::string const& path)
    {
        if (m_options.withPictures)
            m_result.pictures.emplace_back(stage, PictureOf(path, File((std::string(stage) + ".png").c_str())));
    }

    CertifyResult Compared()
    {
        std::vector<Certificate::Stage> stages;
        for (Search& search : m_searches)
        {
            m_result.stages.push_back(search.stage);
            stages.push_back({std::move(search.stage), std::move(search.facts).value()});
        }
        Certificate const certificate(std::move(stages));
        m_result.outcome = Outcome::kDone;
        m_result.rows = certificate.Rows();
        m_result.absences = certificate.Absences();
        m_result.isEqual = certificate.IsGood();
        return std::move(m_result);
    }

    std::string m_path;
    // The file of it that is read.
    std::string m_model;
    CertifyOptions m_options;
    Progress const& m_progress;
    ScratchFolder m_folder;
    // In the order of the table.
    std::vector<Search> m_searches;
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

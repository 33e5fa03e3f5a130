#include "tests/exchange/breaks/BreakBench.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <stdexcept>

#include "exchange/ExportScene.h"
#include "exchange/certify/FactReaders.h"
#include "exchange/certify/SourceFormat.h"

namespace KVR::Test
{

using namespace Certification;

namespace
{

// Breaks that are in force for as long as it lives.
class InForce
{
public:
    explicit InForce(Breaks const& breaks) { TheBreaks() = breaks; }
    ~InForce() { TheBreaks() = {}; }
    InForce(InForce const&) = delete;
    InForce& operator=(InForce const&) = delete;
};

Breaks Set(NamedBreak const& broken)
{
    Breaks breaks;
    broken.set(breaks);
    return breaks;
}

}  // namespace

BreakBench::BreakBench(std::string const& model, ImportOptions const& options)
    : m_model(std::filesystem::path(model).is_absolute() ? model : std::string(KVR_EXAMPLES_DIR) + "/models/" + model),
      m_options(options),
      m_source(FactsOfFile(m_model, 1.0, true)),
      m_scenePath(Scene({}, "whole.xml"))
{
    m_scene = FactsOfSceneFile(m_scenePath);
}

std::string BreakBench::Scene(Breaks const& breaks, char const* name) const
{
    InForce const inForce(breaks);
    std::string const path = m_folder.NarrowPathOf(name);
    ImportResult const imported = ImportModel(m_model, path, m_options);
    if (imported.outcome != Outcome::kDone)
        throw std::runtime_error(imported.failure);
    return path;
}

std::string BreakBench::Exported(char const* extension) const
{
    SceneOptions scene;
    scene.path = m_scenePath;
    std::string path = m_folder.NarrowPathOf(std::string("out") + extension);
    ExportResult const exported = ExportScene(scene, path);
    if (exported.outcome != Outcome::kDone)
        throw std::runtime_error(exported.failure);
    return path;
}

bool BreakBench::IsGood(std::string const& row, ModelFacts const& last, char const* stage, bool afterScene) const
{
    std::vector<Certificate::Stage> stages{{"source", m_source}};
    if (afterScene)
        stages.push_back({"scene", m_scene});
    stages.push_back({stage, last});
    Certificate const certificate(std::move(stages));
    for (Certificate::Row const& entry : certificate.Rows())
        if (entry.name == row)
            return entry.isGood;
    // There is nothing of it anywhere.
    return true;
}

bool BreakBench::IsGoodAfterImport(NamedBreak const& broken) const
{
    return IsGood(broken.row, FactsOfSceneFile(Scene(Set(broken), "broken.xml")), "scene", false);
}

bool BreakBench::IsGoodAfterExport(NamedBreak const& broken, char const* extension) const
{
    InForce const inForce(Set(broken));
    ModelFacts facts = FactsOfFile(Exported(extension), 1.0, false);
    facts.tables.erase(kTable_FaceIds);
    return IsGood(broken.row, facts, "file", true);
}

void BreakBench::ExpectCaughtInImport(std::vector<NamedBreak> const& breaks) const
{
    for (NamedBreak const& broken : breaks)
    {
        SCOPED_TRACE(broken.name);
        EXPECT_TRUE(IsGood(broken.row, m_scene, "scene", false)) << broken.row;
        EXPECT_FALSE(IsGoodAfterImport(broken)) << broken.row;
    }
}

void BreakBench::ExpectCaughtInExport(std::vector<NamedBreak> const& breaks, char const* extension) const
{
    ModelFacts whole = FactsOfFile(Exported(extension), 1.0, false);
    whole.tables.erase(kTable_FaceIds);
    for (NamedBreak const& broken : breaks)
    {
        SCOPED_TRACE(broken.name);
        EXPECT_TRUE(IsGood(broken.row, whole, "file", true)) << broken.row;
        EXPECT_FALSE(IsGoodAfterExport(broken, extension)) << broken.row;
    }
}

}  // namespace KVR::Test

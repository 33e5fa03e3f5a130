#pragma once

#include <functional>
#include <string>
#include <vector>

#include "exchange/ImportModel.h"
#include "exchange/certify/Certificate.h"
#include "tests/exchange/breaks/Breaks.h"
#include "tests/support/TempFolder.h"

namespace KVR::Test
{

/// Something that is wrong, and the row of the certificate that tells of it.
struct NamedBreak
{
    std::string name;
    std::function<void(Breaks&)> set;
    std::string row;
};

/// A model with its scene, as import makes it when nothing is wrong.
class BreakBench
{
public:
    /// One of the models of the examples, or a path.
    explicit BreakBench(std::string const& model, ImportOptions const& options = {});

    /// Whether that row of the certificate is good when import, or export to a file of that extension, is so.
    bool IsGoodAfterImport(NamedBreak const& broken) const;
    bool IsGoodAfterExport(NamedBreak const& broken, char const* extension) const;
    /// Each is caught, and the row is good without it.
    void ExpectCaughtInImport(std::vector<NamedBreak> const& breaks) const;
    void ExpectCaughtInExport(std::vector<NamedBreak> const& breaks, char const* extension) const;
    /// The file as it is exported when nothing is wrong.
    std::string Exported(char const* extension) const;

private:
    using ModelFacts = Certification::ModelFacts;
    std::string Scene(Breaks const& breaks, char const* name) const;
    bool IsGood(std::string const& row, ModelFacts const& last, char const* stage, bool afterScene) const;

    std::string m_model;
    ImportOptions m_options;
    TempFolder m_folder;
    ModelFacts m_source;
    ModelFacts m_scene;
    std::string m_scenePath;
};

}  // namespace KVR::Test

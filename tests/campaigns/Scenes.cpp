#include "tests/campaigns/Scenes.h"

#include <algorithm>
#include <filesystem>
#include <stdexcept>

#include "exchange/ImportModel.h"
#include "tests/campaigns/Campaign.h"
#include "tests/campaigns/ModelFiles.h"
#include "tests/support/FullScene.h"

namespace KVR::Campaigns
{

namespace fs = std::filesystem;

namespace
{

constexpr char kSceneName[] = "scene.xml";

}  // namespace

SceneCopies::SceneCopies() : m_model(std::make_unique<Test::TempFolder>())
{
    std::string const model = m_model->NarrowPathOf("box.brep");
    WriteBytes(model, ModelFiles::Brep());
    ImportOptions options;
    options.asText = true;
    ImportResult const result = ImportModel(model, m_model->NarrowPathOf(kSceneName), options);
    if (result.outcome != Outcome::kDone)
        throw std::runtime_error(result.failure);
    fs::remove(model);
}

SceneCopies::~SceneCopies() = default;

std::string SceneCopies::Make(Kind kind)
{
    Test::TempFolder const& folder = *m_folders.emplace_back(std::make_unique<Test::TempFolder>());
    if (kind == Kind::kFull)
    {
        folder.Write(kSceneName, Test::FullScene());
        Test::WriteSideFiles(folder);
        return folder.NarrowPathOf(kSceneName);
    }
    fs::path const source =
        kind == Kind::kComplete ? fs::path(KVR_EXAMPLES_DIR) / "complete" : fs::path(m_model->Path());
    for (std::string const& name : Files(kind))
        fs::copy_file(source / name, fs::path(folder.Path()) / name);
    return folder.NarrowPathOf(kind == Kind::kComplete ? "complete.xml" : kSceneName);
}

std::vector<std::string> SceneCopies::Files(Kind kind) const
{
    if (kind == Kind::kFull)
        return {kSceneName, "blob.bin", "scene.kvrproperty", "assets.bin", "ids.xml"};
    fs::path const source =
        kind == Kind::kComplete ? fs::path(KVR_EXAMPLES_DIR) / "complete" : fs::path(m_model->Path());
    std::vector<std::string> names;
    for (fs::directory_entry const& entry : fs::directory_iterator(source))
        if (std::string const name = entry.path().filename().string();
            entry.is_regular_file() && !name.ends_with(".json") && !name.ends_with(".cpp"))
            names.push_back(name);
    std::sort(names.begin(), names.end());
    return names;
}

}  // namespace KVR::Campaigns

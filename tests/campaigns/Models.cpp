// Mutants of models in every format: always a scene or one sentence, within the limits, and nothing left over.

#include <algorithm>
#include <filesystem>

#include "exchange/ImportModel.h"
#include "tests/campaigns/Campaign.h"
#include "tests/campaigns/ModelFiles.h"
#include "tests/campaigns/Mutation.h"
#include "tests/support/TempFolder.h"

namespace KVR::Campaigns
{

namespace
{

namespace fs = std::filesystem;

// Imports what stands at a path; empty, or what is wrong with the outcome.
std::string Import(Test::TempFolder const& folder, std::string const& model)
{
    ImportOptions options;
    options.timeout = 5;
    options.isLenient = model.size() % 2 == 0;
    std::string const scene = folder.NarrowPathOf("out.xml");
    ImportResult const result = ImportModel(model, scene, options);
    bool const isSentence =
        result.outcome == Outcome::kFailed && !result.failure.empty() && result.failure.find('\n') == std::string::npos;
    if (result.outcome != Outcome::kDone && !isSentence)
        return "neither a scene nor a sentence: " + result.failure;
    if (fs::exists(scene) != (result.outcome == Outcome::kDone))
        return "a scene that does not fit the outcome";
    std::string wrong;
    for (fs::directory_entry const& entry : fs::directory_iterator(folder.Path()))
    {
        std::string const name = entry.path().filename().string();
        if (name.starts_with(".kvr-"))
            wrong = "left over: " + name;
        if (name.starts_with("out."))
            fs::remove(entry.path());
    }
    return wrong;
}

}  // namespace

void RunModels(double scale, Tally& tally)
{
    constexpr std::uint64_t kMutants = 2000;
    for (ModelFiles::Model const& model : ModelFiles::All())
    {
        Test::TempFolder const folder;
        std::string const path = folder.NarrowPathOf("m" + model.extension);
        for (auto const& [name, bytes] : model.beside)
            WriteBytes(folder.NarrowPathOf(name), bytes);
        std::uint64_t const seed = std::hash<std::string>()(model.name);
        RunForked(
            tally, Share(scale, kMutants), 50,
            [&](std::uint64_t input)
            {
                Dice dice(seed + input);
                // Of a model in several files any may be the damaged one.
                std::size_t const file = dice.Below(model.beside.size() + 1);
                WriteBytes(path, file == 0 ? MutatedBytes(model.bytes, dice) : model.bytes);
                for (std::size_t i = 0; i < model.beside.size(); ++i)
                    WriteBytes(folder.NarrowPathOf(model.beside[i].first),
                               file == i + 1 ? MutatedBytes(model.beside[i].second, dice) : model.beside[i].second);
                return Import(folder, path);
            },
            [&](std::uint64_t input) { return model.name + " mutant " + std::to_string(input); });
    }
}

}  // namespace KVR::Campaigns

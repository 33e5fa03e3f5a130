// Every side file at every length, and with every byte patched; each mutant is asked everything.

#include <array>
#include <filesystem>
#include <memory>

#include "framework/xml_util/DocumentPolicy.h"
#include "tests/campaigns/Campaign.h"
#include "tests/campaigns/Scenes.h"
#include "tests/support/KernelBytes.h"

namespace KVR::Campaigns
{

namespace
{

// A file of a scene, in a folder of its own.
struct Target
{
    std::string scene;
    std::string file;
    std::string bytes;
    /// Of a kernel store: the length of its head, which is made to fit what follows.
    std::size_t head = 0;
    bool isText = false;

    std::uint64_t Size() const { return bytes.size() - head; }
    std::uint64_t Inputs() const { return 6 * Size(); }
};

constexpr std::array<char const*, 5> kPatches = {"+1", "-1", "0", "FF", "sign"};

std::string Patched(std::string bytes, std::size_t at, std::size_t patch)
{
    auto const byte = static_cast<unsigned char>(bytes[at]);
    std::array<int, 5> const values = {byte + 1, byte - 1, 0, 0xFF, byte ^ 0x80};
    bytes[at] = static_cast<char>(values[patch]);
    return bytes;
}

// The mutant of a target, by its number: first the lengths, then the patches.
std::string Mutant(Target const& target, std::uint64_t number)
{
    std::string const content = target.bytes.substr(target.head);
    std::string const mutant = number < target.Size()
                                   ? content.substr(0, number)
                                   : Patched(content, (number - target.Size()) / 5, (number - target.Size()) % 5);
    return target.head > 0 ? Test::WithHead(mutant, target.isText) : mutant;
}

std::vector<Target> Targets(SceneCopies& copies)
{
    std::vector<Target> targets;
    for (SceneCopies::Kind const kind :
         {SceneCopies::Kind::kComplete, SceneCopies::Kind::kFull, SceneCopies::Kind::kModel})
        for (std::string const& name : copies.Files(kind))
        {
            std::string const scene = copies.Make(kind);
            std::string const file = (std::filesystem::path(scene).parent_path() / name).string();
            Target target{scene, file, ReadBytes(file), 0, name.ends_with(".sat")};
            targets.push_back(target);
            // A store with a digest that does not fit is refused as a whole: the second one fits.
            if (!name.ends_with(".sab") && !name.ends_with(".sat"))
                continue;
            target.scene = copies.Make(kind);
            target.file = (std::filesystem::path(target.scene).parent_path() / name).string();
            target.head = Test::WithHead({}, target.isText).size();
            targets.push_back(target);
        }
    return targets;
}

}  // namespace

void RunSideFiles(double scale, Tally& tally)
{
    SetDocumentPolicy(DocumentPolicy::Untrusted());
    SceneCopies copies;
    std::vector<Target> const targets = Targets(copies);
    std::uint64_t total = 0;
    for (Target const& target : targets)
        total += target.Inputs();
    std::uint64_t const count = Share(scale, total);
    auto const find = [&](std::uint64_t input)
    {
        // Spread over all of them.
        std::uint64_t place = input * total / count;
        std::size_t target = 0;
        while (place >= targets[target].Inputs())
            place -= targets[target++].Inputs();
        return std::pair(target, place);
    };
    RunForked(
        tally, count, 500,
        [&](std::uint64_t input)
        {
            auto const [index, place] = find(input);
            Target const& target = targets[index];
            WriteBytes(target.file, Mutant(target, place));
            return AskScene(target.scene);
        },
        [&](std::uint64_t input)
        {
            auto const [index, place] = find(input);
            Target const& target = targets[index];
            std::string const name =
                std::filesystem::path(target.file).filename().string() + (target.head > 0 ? " refitted" : "");
            if (place < target.Size())
                return name + " cut to " + std::to_string(place);
            std::uint64_t const patch = place - target.Size();
            return name + " byte " + std::to_string(patch / 5) + ' ' + kPatches[patch % 5];
        });
}

}  // namespace KVR::Campaigns

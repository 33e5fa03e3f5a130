// What a scene may name as a side file, and what comes of it: the scene opens, quickly, and serves what there is.

#include <filesystem>
#include <functional>
#include <stdexcept>

#include "framework/api/kvr_api.h"
#include "framework/xml_util/DocumentPolicy.h"
#include "producer/XMLProducer.h"
#include "tests/campaigns/Campaign.h"
#include "tests/campaigns/Scenes.h"

namespace KVR::Campaigns
{

namespace
{

namespace fs = std::filesystem;

// A path, and whether a store of bodies is served from it.
struct Path
{
    std::string text;
    bool isServed;
};

std::string Character(char32_t code)
{
    return "&#" + std::to_string(static_cast<unsigned>(code)) + ";";
}

std::vector<Path> Paths(fs::path const& folder)
{
    std::string const name = "complete.sab";
    std::string const long255(255, 'x');
    std::vector<Path> paths = {
        {name, true},
        {"./" + name, true},
        {".//" + name, true},
        {"sub/../" + name, true},
        {"../" + folder.filename().string() + '/' + name, true},
        {(folder / name).string(), false},
        {(folder / "sub" / ".." / name).string(), false},
        {"link.sab", true},
        {"chain.sab", true},
        {"hard.sab", true},
        {"folderlink/" + name, true},
        {"", false},
        {".", false},
        {"..", false},
        {"/", false},
        {"sub", false},
        {"sub/", false},
        {"missing.sab", false},
        {"missing/" + name, false},
        {name + '/', false},
        {name + "/x", false},
        {"COMPLETE.SAB", false},
        {name + ' ', false},
        {' ' + name, false},
        {"dangling.sab", false},
        {"circle.sab", false},
        {"pipe.sab", false},
        {"/dev/null", false},
        {"/dev/zero", false},
        {"/dev/full", false},
        {"/dev/stdin", false},
        {"/dev/tty", false},
        {"/proc/self/mem", false},
        {"/proc/self/environ", false},
        {"/proc/self/fd/0", false},
        {"/proc/self/root" + (folder / name).string(), false},
        {"/proc/kmsg", false},
        {"/sys/kernel/uevent_seqnum", false},
        {long255, false},
        {long255 + 'x', false},
        {"http://127.0.0.1:9/" + name, false},
        {"file://" + (folder / name).string(), false},
        {"\\\\server\\share\\" + name, false},
        {"C:\\" + name, false},
        {name + Character(10), false},
        {Character(10) + name, false},
        {Character(9) + name, false},
        {"a" + Character(10) + "b.sab", true},
        {"caf" + Character(0xE9) + ".sab", true},
        {"cafe" + Character(0x301) + ".sab", false},
        {Character(0x1F600) + ".sab", true},
        {Character(0x202E) + name, false},
        {Character(0xFEFF) + name, false},
        {"~/" + name, false},
        {"$HOME/" + name, false},
        {"%2e/" + name, false},
        {"*.sab", false},
        {"-", false},
    };
    std::string deep;
    for (int i = 0; i < 3000; ++i)
        deep += "./";
    // Longer than a path may be.
    paths.push_back({deep + name, false});
    paths.push_back({std::string(100'000, 'y'), false});
    return paths;
}

void Furnish(fs::path const& folder)
{
    fs::path const store = folder / "complete.sab";
    fs::create_directory(folder / "sub");
    fs::create_symlink(store, folder / "link.sab");
    fs::create_symlink("link.sab", folder / "chain.sab");
    fs::create_hard_link(store, folder / "hard.sab");
    fs::create_directory_symlink(folder, folder / "folderlink");
    fs::create_symlink("nowhere", folder / "dangling.sab");
    fs::create_symlink("circle.sab", folder / "circle.sab");
    fs::copy_file(store, folder / "a\nb.sab");
    fs::copy_file(store, folder / "caf\xC3\xA9.sab");
    fs::copy_file(store, folder / "\xF0\x9F\x98\x80.sab");
}

// Empty, or what was not as it has to be.
std::string Verdict(std::string const& scene, bool isServed)
{
    XMLProducer producer(UTF16String(UTF8String(scene)), nullptr);
    try
    {
        producer.BeginProcess(IdSet(), nullptr, nullptr);
    }
    catch (std::exception const& error)
    {
        return std::string("thrown: ") + error.what();
    }
    auto const* const body = dynamic_cast<IBrep*>(producer.Load("body"));
    bool const hasBody = body && body->Body();
    return hasBody == isServed ? std::string() : hasBody ? "served" : "not served";
}

}  // namespace

void RunSidePaths(double, Tally& tally)
{
    SetDocumentPolicy(DocumentPolicy::Untrusted());
    SceneCopies copies;
    std::string const complete = copies.Make(SceneCopies::Kind::kComplete);
    fs::path const folder = fs::path(complete).parent_path();
    Furnish(folder);
    Test::TempFolder const pipes;
    pipes.MakeFifo("pipe.sab");
    fs::create_symlink(pipes.NarrowPathOf("pipe.sab"), folder / "pipe.sab");
    std::vector<Path> const paths = Paths(folder);
    std::string const scene = (folder / "paths.xml").string();
    RunForked(
        tally, paths.size(), 20,
        [&](std::uint64_t input)
        {
            std::string const before = ReadBytes(complete);
            std::size_t const at = before.find("complete.sab");
            WriteBytes(scene, before.substr(0, at) + paths[input].text + before.substr(at + 12));
            return Verdict(scene, paths[input].isServed);
        },
        [&](std::uint64_t input) { return "the path " + paths[input].text.substr(0, 60); });
    // Each other kind of side file by paths that could hang or read for ever.
    std::string const document = ReadBytes(complete);
    std::vector<std::string> const names = copies.Files(SceneCopies::Kind::kComplete);
    char const* const bad[] = {"pipe.sab", "/dev/zero", "/proc/self/mem", "sub", "circle.sab", "/dev/stdin"};
    RunForked(
        tally, names.size() * std::size(bad), 20,
        [&](std::uint64_t input)
        {
            std::string text = document;
            std::string const& name = names[input / std::size(bad)];
            for (std::size_t at = text.find(name); at != std::string::npos; at = text.find(name, at + 1))
                text.replace(at, name.size(), bad[input % std::size(bad)]);
            WriteBytes(scene, text);
            return AskScene(scene);
        },
        [&](std::uint64_t input) { return names[input / std::size(bad)] + " as " + bad[input % std::size(bad)]; });
}

}  // namespace KVR::Campaigns

// What commands that show little of a scene cost beside the reading of its document alone: processor time of whole
// processes, in pairs.

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>
#include <xercesc/util/PlatformUtils.hpp>

#include "bench/ChildProcess.h"
#include "bench/Goals.h"
#include "bench/MeshGenerator.h"
#include "bench/SceneGenerator.h"
#include "bench/ScratchFolder.h"
#include "framework/api/IdSet.h"
#include "framework/xml_util/SideFileNotes.h"
#include "producer/XMLProducer.h"

namespace
{

using namespace KVR::Bench;
namespace fs = std::filesystem;

constexpr double kGoal = 1.1;

struct Options
{
    unsigned instances = 300'000;
    std::uint64_t triangles = 2'000'000;
    int repeat = 5;
};

struct Command
{
    char const* name;
    std::vector<std::string> words;
    // Whether the scene has stores, which the command does not ask for.
    bool hasStores;
};

Command const kCommands[] = {
    {"views", {"views"}, true},
    {"notes", {"notes"}, true},
    {"query", {"query", "part[name~\"*bolt*\" and visible]", "--count"}, true},
    {"tree, without stores", {"tree"}, false},
};

double Seconds(timeval const& time)
{
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
}

// The processor time of a process that was started, its end included.
double SecondsOfProcess(pid_t child, std::string const& name)
{
    int status = 0;
    rusage usage{};
    if (child <= 0 || wait4(child, &status, 0, &usage) != child || status != 0)
        throw std::runtime_error(name + " failed");
    return Seconds(usage.ru_utime) + Seconds(usage.ru_stime);
}

// Of a process that reads the scene, and then ends.
double BeginSeconds(fs::path const& path)
{
    pid_t const child = fork();
    if (child == 0)
    {
        xercesc::XMLPlatformUtils::Initialize();
        KVR::XMLProducer producer(KVR::UTF16String(path.wstring()), nullptr);
        producer.BeginProcess(KVR::IdSet(), nullptr, nullptr);
        _exit(0);
    }
    return SecondsOfProcess(child, "The reading of the document");
}

// Of the whole process, which writes to nowhere.
double CommandSeconds(Command const& command, fs::path const& scene)
{
    std::string const program = fs::read_symlink("/proc/self/exe").parent_path() / "kvr";
    std::vector<std::string> words = command.words;
    words.insert(words.begin(), program);
    words.insert(words.begin() + 2, scene.string());
    std::vector<char*> arguments;
    for (std::string& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t child = 0;
    int const error = posix_spawn(&child, program.c_str(), &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    return SecondsOfProcess(error == 0 ? child : -1, "kvr " + command.words.front());
}

// The scene once more, with stores beside it that it names and notes.
void AddStores(fs::path const& scene, fs::path const& target, std::uint64_t triangles)
{
    MeshStores const stores{target.parent_path() / "stores.mesh", target.parent_path() / "stores.seg"};
    WriteStores(stores, Grid::OfTriangles(triangles), 1);
    std::ifstream file(scene, std::ios::binary);
    std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    constexpr std::string_view kRoot = "<Scene>\n";
    text.insert(text.find(kRoot) + kRoot.size(),
                "  <MeshInfo GenerateMesh=\"True\" Path=\"stores.mesh\"/>\n"
                "  <MeshSegmentInfo GenerateMeshSegment=\"True\" Path=\"stores.seg\"/>\n");
    text.resize(text.rfind("</Scene>"));
    text += "  <IPolygonMesh ID=\"mesh0\"/>\n</Scene>\n";
    std::vector<KVR::SideFileNote> notes;
    for (fs::path const& store : {stores.meshes, stores.segments})
        notes.push_back({store.filename(), KVR::FileDigest::Of(KVR::UTF8String(store.string())).value()});
    std::ofstream(target, std::ios::binary) << text << KVR::SideFileNotes::Text(notes) << '\n';
}

double MedianRatio(Command const& command, fs::path const& plain, fs::path const& withStores, int pairs)
{
    std::vector<double> ratios;
    for (int pair = 0; pair < pairs; ++pair)
    {
        double const begin = BeginSeconds(plain);
        double const whole = CommandSeconds(command, command.hasStores ? withStores : plain);
        std::printf("%-22s %8.0f ms %8.0f ms %6.2f\n", command.name, begin * 1e3, whole * 1e3, whole / begin);
        ratios.push_back(whole / begin);
    }
    auto const middle = ratios.begin() + pairs / 2;
    std::nth_element(ratios.begin(), middle, ratios.end());
    return *middle;
}

void Run(Options const& options)
{
    ScratchFolder const folder;
    fs::path const plain = folder.Path() / "scene.xml";
    fs::path const withStores = folder.Path() / "with_stores.xml";
    DoInChildProcess(
        [&]
        {
            WriteScene(plain, options.instances);
            AddStores(plain, withStores, options.triangles);
        });
    std::printf("%-22s %11s %11s %6s\n", "", "document", "command", "ratio");
    std::vector<Goal> goals;
    for (Command const& command : kCommands)
        goals.push_back({std::string("kvr ") + command.name + " / BeginProcess of the document, median of pairs", "",
                         kGoal, MedianRatio(command, plain, withStores, options.repeat)});
    std::fputs(GoalsText(goals).c_str(), stdout);
}

}  // namespace

int main(int argc, char** argv)
{
    try
    {
        Options options;
        CLI::App app("Measures commands that show little of a scene beside the reading of its document.");
        app.add_option("--instances", options.instances, "The size of the scene")
            ->check(CLI::Range(1U, 10'000'000U))
            ->capture_default_str();
        app.add_option("--triangles", options.triangles, "The size of its mesh store")
            ->check(CLI::Range(std::uint64_t{2}, std::uint64_t{100'000'000}))
            ->capture_default_str();
        app.add_option("--repeat", options.repeat, "Pairs; the medians count")
            ->check(CLI::Range(1, 1000))
            ->capture_default_str();
        CLI11_PARSE(app, argc, argv);
        Run(options);
        return 0;
    }
    catch (std::exception const& exception)
    {
        std::fprintf(stderr, "kvr_bench_commands: %s\n", exception.what());
        return 1;
    }
}

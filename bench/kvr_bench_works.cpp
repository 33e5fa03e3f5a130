// What writing a large mesh in each format, and dumping a scene, cost beside a bare write of the same bytes.

#include <fcntl.h>
#include <fmt/compile.h>
#include <fmt/format.h>
#include <unistd.h>
#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "bench/ChildProcess.h"
#include "bench/Goals.h"
#include "bench/HeldScene.h"
#include "bench/MeshGenerator.h"
#include "bench/Pairs.h"
#include "bench/ProcessorTime.h"
#include "bench/ScratchFolder.h"
#include "describe/Dump.h"
#include "exchange/ExportScene.h"
#include "framework/api/kvr_api.h"
#include "output/JsonWriter.h"
#include "output/Output.h"

namespace
{

using namespace KVR::Bench;
namespace fs = std::filesystem;

/// A file that takes bytes as they come.
class BareFile
{
public:
    explicit BareFile(fs::path const& path)
        : m_descriptor(open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666))
    {
        if (m_descriptor < 0)
            throw std::runtime_error("Cannot write " + path.string());
    }
    ~BareFile() { close(m_descriptor); }
    BareFile(BareFile const&) = delete;
    BareFile& operator=(BareFile const&) = delete;

    int Descriptor() const noexcept { return m_descriptor; }
    void Put(std::string_view bytes) const
    {
        while (!bytes.empty())
        {
            ssize_t const count = write(m_descriptor, bytes.data(), bytes.size());
            if (count <= 0)
                throw std::runtime_error("The disk does not take the bytes");
            bytes.remove_prefix(static_cast<std::size_t>(count));
        }
    }

private:
    int m_descriptor;
};

std::string BytesOf(fs::path const& path)
{
    std::string bytes(fs::file_size(path), '\0');
    if (!std::ifstream(path, std::ios::binary).read(bytes.data(), static_cast<std::streamsize>(bytes.size())))
        throw std::runtime_error("Cannot read " + path.string());
    return bytes;
}

Figures WriteBare(fs::path const& from, fs::path const& to)
{
    std::string const bytes = BytesOf(from);
    return {{"seconds", SecondsOf([&] { BareFile(to).Put(bytes); })}};
}

/// The numbers of an OBJ file of triangles whose corners have a normal of the same number.
struct ObjNumbers
{
    std::vector<std::array<float, 3>> vertices;
    std::vector<std::array<float, 3>> normals;
    std::vector<std::array<std::uint32_t, 3>> corners;

    static ObjNumbers Of(fs::path const& path)
    {
        ObjNumbers numbers;
        std::ifstream file(path);
        for (std::string line; std::getline(file, line);)
        {
            bool const isNormal = line.starts_with("vn ");
            if (isNormal || line.starts_with("v "))
                (isNormal ? numbers.normals : numbers.vertices).push_back(Floats(line.c_str() + (isNormal ? 3 : 2)));
            else if (line.starts_with("f "))
                numbers.corners.push_back(Corners(line.c_str() + 2));
        }
        return numbers;
    }

private:
    static std::array<float, 3> Floats(char const* text)
    {
        std::array<float, 3> numbers{};
        for (float& number : numbers)
        {
            char* end = nullptr;
            number = std::strtof(text, &end);
            text = end;
        }
        return numbers;
    }
    static std::array<std::uint32_t, 3> Corners(char const* text)
    {
        std::array<std::uint32_t, 3> numbers{};
        for (std::uint32_t& number : numbers)
        {
            char* end = nullptr;
            number = static_cast<std::uint32_t>(std::strtoul(text, &end, 10));
            // Behind the two slashes it stands once more.
            std::strtoul(end + 2, &end, 10);
            text = end;
        }
        return numbers;
    }
};

void PrintNumbers(ObjNumbers const& numbers, fs::path const& to)
{
    constexpr std::size_t kFull = 1 << 16;
    BareFile const file(to);
    fmt::memory_buffer buffer;
    auto const out = std::back_inserter(buffer);
    auto const flush = [&](std::size_t above)
    {
        if (buffer.size() <= above)
            return;
        file.Put({buffer.data(), buffer.size()});
        buffer.clear();
    };
    for (auto const& [x, y, z] : numbers.vertices)
    {
        fmt::format_to(out, FMT_COMPILE("v {} {} {}\n"), x, y, z);
        flush(kFull);
    }
    for (auto const& [x, y, z] : numbers.normals)
    {
        fmt::format_to(out, FMT_COMPILE("vn {} {} {}\n"), x, y, z);
        flush(kFull);
    }
    for (auto const& [a, b, c] : numbers.corners)
    {
        fmt::format_to(out, FMT_COMPILE("f {}//{} {}//{} {}//{}\n"), a, a, b, b, c, c);
        flush(kFull);
    }
    flush(0);
}

Figures PrintBare(fs::path const& from, fs::path const& to)
{
    ObjNumbers const numbers = ObjNumbers::Of(from);
    Figures figures{{"seconds", SecondsOf([&] { PrintNumbers(numbers, to); })}};
    // The heads alone are left out.
    if (fs::file_size(to) + 1000 < fs::file_size(from))
        throw std::runtime_error("The file has more in it than was printed");
    return figures;
}

Figures Export(fs::path const& scene, fs::path const& to)
{
    HeldScene held(scene);
    KVR::ExportOptions options;
    options.force = true;
    KVR::ExportResult result;
    double const seconds =
        SecondsOf([&] { result = KVR::ExportScene(held.Producer(), held.RootId(), to.string(), options); });
    if (result.outcome != KVR::Outcome::kDone)
        throw std::runtime_error(result.failure);
    return {{"seconds", seconds}};
}

Figures Dump(fs::path const& scene, fs::path const& to, bool isSummary)
{
    HeldScene held(scene);
    auto const dump = [&]
    {
        BareFile const file(to);
        KVR::Output out(file.Descriptor());
        KVR::JsonWriter json(out);
        json.BeginObject();
        KVR::SceneDumpOptions options;
        options.summary = isSummary;
        KVR::WriteSceneDump(json, held.Producer(), {&held.RootId(), 1}, options);
        json.EndObject();
        json.EndDocument();
        out.Flush();
    };
    return {{"seconds", SecondsOf(dump)}};
}

// What no export can do without: each polygon, vertex and normal is asked for once. Nothing is kept.
Figures Ask(fs::path const& scene)
{
    HeldScene held(scene);
    auto const* const mesh = dynamic_cast<KVR::IPolygonMesh*>(held.Producer().Load(KVR::UTF8String("mesh0")));
    if (!mesh)
        throw std::runtime_error("The scene has no mesh");
    double sum = 0.0;
    auto const ask = [&]
    {
        for (unsigned long i = 0; i < mesh->PolygonCount(); ++i)
        {
            KVR::EditablePolygon const* polygon = nullptr;
            unsigned int material = 0;
            mesh->PolygonAt(i, polygon);
            mesh->PolygonMaterialIndexAt(i, material);
            sum += polygon->VertexIndices().data[0] + polygon->NormalIndices().data[0];
        }
        for (unsigned long i = 0; i < mesh->VertexCount(); ++i)
            sum += mesh->VertexAt(i).x;
        for (unsigned long i = 0; i < mesh->NormalCount(); ++i)
            sum += mesh->NormalAt(i).x;
    };
    double const seconds = SecondsOf(ask);
    return {{"seconds", seconds}, {"sum", sum}};
}

/// A work on the scene, and the least that its file could take.
struct Work
{
    std::string name;
    std::string extension;
    std::string floor;
    double limit;
    Figures (*ours)(fs::path const& scene, fs::path const& to);
    Figures (*bare)(fs::path const& from, fs::path const& to);
};

std::vector<Work> const kWorks = {
    {"export of GLB", ".glb", "bare write", 2.0, &Export, &WriteBare},
    {"export of STL", ".stl", "bare write", 2.0, &Export, &WriteBare},
    {"export of OBJ", ".obj", "printing with fmt", 3.0, &Export, &PrintBare},
    {"export of PLY", ".ply", "bare write", 2.0, &Export, &WriteBare},
    {"dump", ".json", "bare write", 4.0,
     [](fs::path const& scene, fs::path const& to) { return Dump(scene, to, false); }, &WriteBare},
};

void Run(std::uint64_t triangles, int repeat, std::string const& only)
{
    ScratchFolder const folder;
    fs::path const scene = folder.Path() / "scene.xml";
    DoInChildProcess([&] { WriteMeshScene(scene, Grid::OfTriangles(triangles), 1); });
    std::vector<Goal> goals;
    fmt::print("{:<24} {:>9} {:>18} {:>9} {:>9}\n", fmt::format("{} triangles", triangles), "file MB", "floor", "ms",
               "ours ms");
    for (Work const& work : kWorks)
    {
        if (work.name.find(only) == std::string::npos)
            continue;
        fs::path const ours = folder.Path() / ("ours" + work.extension);
        fs::path const bare = folder.Path() / ("bare" + work.extension);
        Pairs pairs;
        for (int i = 0; i < repeat; ++i)
        {
            // Replacing a file means freeing its pages, which is nobody's work here.
            fs::remove(ours);
            fs::remove(bare);
            Figures const figures = InChildProcess([&] { return work.ours(scene, ours); });
            pairs.Add(figures, InChildProcess([&] { return work.bare(ours, bare); }));
        }
        fmt::print("{:<24} {:>9.1f} {:>18} {:>9.1f} {:>9.1f}\n", work.name,
                   static_cast<double>(fs::file_size(ours)) / 1e6, work.floor, pairs.Theirs("seconds") * 1e3,
                   pairs.Ours("seconds") * 1e3);
        goals.push_back({work.name + " / " + work.floor, "", work.limit, pairs.Ratio("seconds")});
    }
    double asking = std::numeric_limits<double>::max();
    for (int i = 0; i < repeat; ++i)
        asking = std::min(asking, InChildProcess([&] { return Ask(scene); }).at("seconds"));
    fmt::print("to ask for each polygon, vertex and normal once, and keep nothing, takes {:.1f} ms\n", asking * 1e3);
    std::fputs(GoalsText(goals).c_str(), stdout);
}

}  // namespace

int main(int argc, char** argv)
{
    try
    {
        std::uint64_t triangles = 2'000'000;
        int repeat = 5;
        std::string only;
        CLI::App app("Measures the export and the dump of a large mesh beside a bare write of the same bytes.");
        app.add_option("--triangles", triangles, "Triangles of the mesh")->capture_default_str();
        app.add_option("--repeat", repeat, "Pairs; the medians count")
            ->check(CLI::Range(1, 1000))
            ->capture_default_str();
        app.add_option("--only", only, "The works with this in their names");
        CLI11_PARSE(app, argc, argv);
        Run(triangles, repeat, only);
        return 0;
    }
    catch (std::exception const& exception)
    {
        std::fprintf(stderr, "kvr_bench_works: %s\n", exception.what());
        return 1;
    }
}

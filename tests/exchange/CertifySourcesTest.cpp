#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <zlib.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>

#include "exchange/CertifyModel.h"
#include "exchange/ImportModel.h"
#include "tests/exchange/MeshFiles.h"
#include "tests/support/TempFolder.h"
#include "tests/tool/ToolRun.h"

namespace KVR::Test
{

namespace
{

using nlohmann::json;
using testing::HasSubstr;
using testing::IsEmpty;

std::string Model(std::string const& name)
{
    return std::string(KVR_EXAMPLES_DIR) + "/models/" + name;
}

std::string BytesOf(std::string const& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::string Gzipped(std::string const& bytes)
{
    std::string packed(bytes.size() + 1000, '\0');
    z_stream stream{};
    constexpr int kGzip = 16;
    deflateInit2(&stream, Z_BEST_SPEED, Z_DEFLATED, MAX_WBITS + kGzip, 8, Z_DEFAULT_STRATEGY);
    std::string copy = bytes;
    stream.next_in = reinterpret_cast<Bytef*>(copy.data());
    stream.avail_in = static_cast<uInt>(copy.size());
    stream.next_out = reinterpret_cast<Bytef*>(packed.data());
    stream.avail_out = static_cast<uInt>(packed.size());
    deflate(&stream, Z_FINISH);
    packed.resize(stream.total_out);
    deflateEnd(&stream);
    return packed;
}

// The rows of a certificate that are not equal.
json Different(ToolRun const& run)
{
    json different = json::array();
    // What was not printed at all is no JSON, and a failure.
    json const certificate = json::parse(run.out);
    for (json const& row : certificate.at("Rows"))
        if (row.at("Verdict") != "equal")
            different.push_back(row);
    return different;
}

std::string Replaced(std::string text, std::string const& one, std::string const& other)
{
    for (std::size_t place = 0; (place = text.find(one, place)) != std::string::npos; place += other.size())
        text.replace(place, one.size(), other);
    return text;
}

// A model that import and export keep whole.
void ExpectEqual(std::string const& path)
{
    ToolRun const run = RunTool({"certify", "--quiet", "--json", path});
    EXPECT_EQ(run.status, 0) << run.error;
    EXPECT_THAT(Different(run), IsEmpty());
}

ToolRun FromInput(std::string const& path)
{
    return RunProgram({"/bin/sh", "-c", "exec \"$0\" certify --quiet --json - < \"$1\"", KVR_TOOL, path});
}

// A triangle whose numbers stand in the text, under a node beside one that has nothing, a camera and a light.
std::string GltfText()
{
    return R"({"asset":{"version":"2.0"},"scenes":[{"nodes":[0,1,2,3]}],"scene":0,
        "extensionsUsed":["KHR_lights_punctual"],"extensions":{"KHR_lights_punctual":{"lights":[{"type":"point"}]}},
        "nodes":[{"name":"part","mesh":0},{"name":"nothing"},{"name":"eye","camera":0},
            {"name":"lamp","extensions":{"KHR_lights_punctual":{"light":0}}}],
        "cameras":[{"type":"perspective","perspective":{"yfov":0.8,"znear":0.1}}],
        "meshes":[{"name":"m","primitives":[{"attributes":{"POSITION":0}}]}],
        "accessors":[{"bufferView":0,"componentType":5126,"count":3,"type":"VEC3","min":[0,0,0],"max":[1,1,0]}],
        "bufferViews":[{"buffer":0,"byteLength":36}],
        "buffers":[{"byteLength":36,"uri":)"
           R"("data:application/octet-stream;base64,AAAAAAAAAAAAAAAAAACAPwAAAAAAAAAAAAAAAAAAgD8AAAAA"}]})";
}

}  // namespace

TEST(CertifySources, GzippedModelsAndStandardInput)
{
    TempFolder const folder;
    std::string const model = Model("nist_plate_creo_lbls.stp");
    folder.Write("a.stpz", Gzipped(BytesOf(model)));
    folder.Write("a.step.gz", Gzipped(BytesOf(model)));
    for (char const* const name : {"a.stpz", "a.step.gz"})
    {
        SCOPED_TRACE(name);
        ToolRun const run = RunTool({"certify", "--json", "--against", folder.NarrowPathOf(name), model});
        EXPECT_EQ(run.status, 0) << run.error;
        EXPECT_THAT(Different(run), IsEmpty());
    }
    ExpectEqual(folder.NarrowPathOf("a.stpz"));
    ToolRun const run = FromInput(folder.NarrowPathOf("a.stpz"));
    EXPECT_EQ(run.status, 0) << run.error;
    EXPECT_THAT(Different(run), IsEmpty());
}

TEST(CertifySources, StandardInputOfAnyFormat)
{
    TempFolder const folder;
    folder.Write("stl", BinaryStl(BoxTriangles(1, 1, 1)));
    folder.Write("obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf -3 -2 -1\n");
    folder.Write("gltf", GltfText());
    for (char const* const name : {"stl", "obj", "gltf"})
    {
        SCOPED_TRACE(name);
        ToolRun const run = FromInput(folder.NarrowPathOf(name));
        EXPECT_EQ(run.status, 0) << run.error << run.out;
    }
}

TEST(CertifySources, APackedModelThatIsCutShortGetsOneSentence)
{
    TempFolder const folder;
    std::string const packed = Gzipped(BytesOf(Model("nist_plate_creo_lbls.stp")));
    folder.Write("a.stpz", packed.substr(0, packed.size() / 2));
    std::string const path = folder.NarrowPathOf("a.stpz");
    ToolRun const run = RunTool({"certify", path});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.error, "kvr: " + path + ": what it holds packed is cut short or damaged\n");
}

TEST(CertifySources, DamagedGltfGetsOneSentence)
{
    TempFolder const folder;
    auto const failure = [&](char const* name, std::string const& bytes)
    {
        folder.Write(name, bytes);
        std::string const path = folder.NarrowPathOf(name);
        std::string const text = CertifyAgainst(path, path, {}).failure;
        return text.substr(std::min(text.size(), path.size() + 2));
    };
    EXPECT_EQ(failure("cut.gltf", "{"), "its JSON makes no sense");
    EXPECT_EQ(failure("number.gltf", R"({"asset":{"version":"2.0"},"x":1e999})"), "its JSON makes no sense");
    EXPECT_EQ(failure("deep.gltf", R"({"x":)" + std::string(300, '[') + std::string(300, ']') + "}"),
              "its JSON makes no sense");
    EXPECT_EQ(failure("kind.gltf", R"({"scenes":[{"nodes":[0]}],"nodes":["node"]})"), "its content makes no sense");
    EXPECT_EQ(failure("index.gltf", R"({"scenes":[{"nodes":[7]}],"nodes":[]})"), "its content makes no sense");
    // The length of its first chunk is there, and the chunk is not.
    EXPECT_EQ(failure("head.glb", std::string("glTF\2\0\0\0\20\0\0\0\0\0\0\0", 16)), "a chunk of it ends early");
}

TEST(CertifySources, NumbersBeyondAllBoundsEndAsACertificate)
{
    TempFolder const folder;
    folder.Write("far.obj", "v 0 0 0\nv 1e200 0 0\nv 0 1e200 0\nf 1 2 3\n");
    ToolRun const run = RunTool({"certify", "--quiet", "--json", folder.NarrowPathOf("far.obj")});
    EXPECT_EQ(run.error, "");
    // The numbers of GLB have no room for them.
    EXPECT_EQ(json::parse(run.out).at("Verdict"), "different");
}

TEST(CertifySources, ModelsOfManyKindsAreKept)
{
    TempFolder const folder;
    std::string const text = BytesOf(Model("as1-oc-214.stp"));
    auto const model = [&](char const* name, std::string const& content)
    {
        SCOPED_TRACE(name);
        folder.Write(name, content);
        ExpectEqual(folder.NarrowPathOf(name));
    };
    model("names.stp", Replaced(Replaced(text, "'nut'", "' M\\X2\\00FC\\X0\\tter ''M 8''  '"), "'bolt_1'", "'a/b'"));
    model("same.stp", Replaced(Replaced(text, "'nut_1'", "'same'"), "'rod_1'", "'same'"));
    model("colourless.stp", Replaced(text, "STYLED_ITEM(", "REPRESENTATION_ITEM("));
    model("part.gltf", GltfText());
    model("part.ply",
          "ply\nformat ascii 1.0\nelement vertex 3\nproperty float x\nproperty float y\nproperty float z\n"
          "element face 1\nproperty list uchar int vertex_indices\nend_header\n0 0 0\n1 0 0\n0 1 0\n3 0 1 2\n");
}

TEST(CertifySources, HiddenPartsAreLeftOutOfGlbByDesign)
{
    TempFolder const folder;
    std::string const text = BytesOf(Model("as1-oc-214.stp"));
    // The first thing that has a style.
    std::size_t const item = text.find("STYLED_ITEM(");
    std::size_t const begin = text.rfind('#', item);
    std::string const id = text.substr(begin, text.find_first_of(" =", begin) - begin);
    std::size_t const end = text.rfind("ENDSEC;");
    folder.Write("hidden.stp", text.substr(0, end) + "#999001=INVISIBILITY((" + id + "));\n" + text.substr(end));
    ToolRun const run = RunTool({"certify", "--quiet", "--json", folder.NarrowPathOf("hidden.stp")});
    EXPECT_EQ(run.status, 0) << run.error;
    EXPECT_THAT(Different(run), IsEmpty());
    EXPECT_THAT(json::parse(run.out).at("Absences").dump(), HasSubstr("hidden"));
}

TEST(CertifySources, AModelThatThisProjectExportedIsAModelToo)
{
    TempFolder const folder;
    std::string const path = folder.NarrowPathOf("as1.glb");
    ASSERT_EQ(RunTool({"convert", "--quiet", Model("as1-oc-214.stp"), path}).status, 0);
    ExpectEqual(path);
}

TEST(CertifySources, AComparisonTellsHowFarItIs)
{
    std::vector<double> told;
    std::string const model = Model("as1-oc-214.stp");
    CertifyResult const result = CertifyAgainst(model, model, {},
                                                [&](ProgressReport const& report)
                                                {
                                                    told.push_back(report.whole);
                                                    return true;
                                                });
    EXPECT_TRUE(result.isEqual) << result.failure;
    EXPECT_TRUE(std::is_sorted(told.begin(), told.end()));
    // Both halves of the work are told of while they go on.
    EXPECT_GT(std::count_if(told.begin(), told.end(), [](double whole) { return whole > 0.0 && whole < 0.5; }), 0);
    EXPECT_GT(std::count_if(told.begin(), told.end(), [](double whole) { return whole > 0.5 && whole < 1.0; }), 0);
}

}  // namespace KVR::Test

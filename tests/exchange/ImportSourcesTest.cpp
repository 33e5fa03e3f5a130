#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <zlib.h>
#include <BRepBuilderAPI_MakeEdge.hxx>
#include <BRepBuilderAPI_MakeVertex.hxx>
#include <BRepTools.hxx>
#include <BRep_Builder.hxx>
#include <BinTools.hxx>
#include <TopoDS_Compound.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Vertex.hxx>
#include <gp_Pnt.hxx>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

#include "exchange/ImportModel.h"
#include "exchange/model/Losses.h"
#include "exchange/model/ModelDocument.h"
#include "exchange/model/ModelError.h"
#include "exchange/run/ChildProcess.h"
#include "tests/exchange/GltfFile.h"
#include "tests/exchange/MeshFiles.h"
#include "tests/support/Shapes.h"
#include "tests/tool/ToolRun.h"

// Where a model comes from, and what the program says of files of meshes.
namespace KVR::Test
{

namespace
{

using nlohmann::json;
using testing::Contains;
using testing::HasSubstr;
using testing::Not;

std::string const kStep = std::string(KVR_EXAMPLES_DIR) + "/models/as1-oc-214.stp";

std::string FileBytes(std::string const& path)
{
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

std::string Gzipped(std::string const& bytes)
{
    TempFolder const folder;
    std::string const path = folder.NarrowPathOf("packed");
    gzFile const file = gzopen(path.c_str(), "wb9");
    EXPECT_EQ(gzwrite(file, bytes.data(), static_cast<unsigned>(bytes.size())), static_cast<int>(bytes.size()));
    EXPECT_EQ(gzclose(file), Z_OK);
    return FileBytes(path);
}

// A folder for temporary files that no other test uses, for as long as it lives.
class OwnTemporaryFolder
{
public:
    OwnTemporaryFolder() { ::setenv("TMPDIR", m_folder.Path().c_str(), 1); }
    ~OwnTemporaryFolder() { ::unsetenv("TMPDIR"); }

    bool IsEmpty() const { return std::filesystem::is_empty(m_folder.Path()); }

private:
    TempFolder m_folder;
};

json Objects(std::string const& scene)
{
    return json::parse(RunTool({"dump", "--summary", scene}).out).at("Objects");
}

// Of its styles, as bytes.
std::set<std::array<long, 3>> ColorsOf(std::string const& scene)
{
    std::set<std::array<long, 3>> colors;
    for (json const& object : Objects(scene))
        if (object.is_object() && object.at("Class") == "IRenderStyle")
        {
            json const& color = object.at("DiffuseColor");
            colors.insert({std::lround(color.at(0).get<double>() * 255.0),
                           std::lround(color.at(1).get<double>() * 255.0),
                           std::lround(color.at(2).get<double>() * 255.0)});
        }
    return colors;
}

}  // namespace

TEST(ImportSources, GzippedFilesAreUnpackedWhateverTheyHold)
{
    TempFolder const folder;
    std::string const scene = folder.NarrowPathOf("s.xml");
    OwnTemporaryFolder const temporary;
    std::string const packed = Gzipped(FileBytes(kStep));
    for (std::string const name : {"as1.stpz", "as1.step.gz", "as1.dat"})
    {
        folder.Write(name, packed);
        ToolRun const run = RunTool({"import", "--no-mesh", folder.NarrowPathOf(name), scene});
        ASSERT_EQ(run.status, 0) << run.error;
        EXPECT_THAT(run.out, HasSubstr("4 assemblies, 5 parts, 13 instances, 5 bodies"));
    }
    folder.Write("box.stl.gz", Gzipped(BinaryStl(BoxTriangles(1, 1, 1))));
    EXPECT_EQ(RunTool({"import", folder.NarrowPathOf("box.stl.gz"), scene}).status, 0);
    EXPECT_EQ(Objects(scene).at("part1").at("Label"), "box");
    EXPECT_EQ(Objects(scene).at("file1").at("FileFullPath"), folder.NarrowPathOf("box.stl.gz"));
    EXPECT_TRUE(temporary.IsEmpty());
}

TEST(ImportSources, AGzippedFileThatIsCutShortOrABombIsRefused)
{
    TempFolder const folder;
    std::string const packed = Gzipped(FileBytes(kStep));
    folder.Write("cut.stpz", packed.substr(0, packed.size() / 2));
    std::string const scene = folder.NarrowPathOf("s.xml");
    EXPECT_EQ(ImportModel(folder.NarrowPathOf("cut.stpz"), scene).failure,
              folder.NarrowPathOf("cut.stpz") + ": what it holds packed is cut short or damaged");
    std::string flipped = packed;
    flipped[packed.size() / 2] = static_cast<char>(flipped[packed.size() / 2] ^ 4);
    folder.Write("flipped.stpz", flipped);
    EXPECT_THAT(ImportModel(folder.NarrowPathOf("flipped.stpz"), scene).failure, HasSubstr("cut short or damaged"));
    folder.Write("bomb.stpz", Gzipped(std::string(20'000'000, '\0')));
    EXPECT_THAT(ImportModel(folder.NarrowPathOf("bomb.stpz"), scene).failure,
                HasSubstr("it unpacks to more than 16 MiB and 100 times its size"));
    // What there is of a cut one counts for a lenient reading.
    std::string const box = Gzipped(TextStl(BoxTriangles(1, 1, 1)));
    folder.Write("box.stl.gz", box.substr(0, box.size() - 40));
    ImportOptions options;
    options.isLenient = true;
    ImportResult const result = ImportModel(folder.NarrowPathOf("box.stl.gz"), scene, options);
    EXPECT_EQ(result.outcome, Outcome::kDone) << result.failure;
    EXPECT_THAT(result.remarks, Contains("taken although what it holds packed is cut short or damaged"));
}

TEST(ImportSources, StandardInputIsToldByItsContent)
{
    TempFolder const folder;
    std::string const scene = folder.NarrowPathOf("s.xml");
    folder.Write("packed", Gzipped(FileBytes(kStep)));
    for (std::string const& model : {kStep, folder.NarrowPathOf("packed")})
    {
        ToolRun const run = RunProgram(
            {"/bin/sh", "-c", std::string("exec \"$0\" import --no-mesh - \"$1\" < \"$2\""), KVR_TOOL, scene, model});
        ASSERT_EQ(run.status, 0) << run.error;
        EXPECT_THAT(run.out, HasSubstr("5 parts"));
        EXPECT_EQ(Objects(scene).at("file1").at("Label"), "standard input");
    }
    ToolRun const run =
        RunProgram({"/bin/sh", "-c", std::string("exec \"$0\" import - \"$1\" < /dev/null"), KVR_TOOL, scene});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.error, HasSubstr("it is empty"));
}

TEST(ImportSources, FormatsOfTextAreToldByTheirFirstLines)
{
    TempFolder const folder;
    auto const formatOf = [&](char const* bytes)
    {
        folder.Write("model", bytes);
        return FormatOfModel(folder.NarrowPathOf("model"));
    };
    EXPECT_EQ(formatOf("# made\r\nmtllib a.mtl\r\n\r\nv 1 2 3\r\nvn 0"), ModelFormat::kObj);
    EXPECT_EQ(formatOf("v 1 2 3\nbe it so\n"), std::nullopt);
    EXPECT_EQ(formatOf("# nothing\n"), std::nullopt);
    EXPECT_EQ(formatOf(" {\"asset\":{}}"), ModelFormat::kGltf);
    EXPECT_EQ(formatOf("solid a\nfacet normal"), ModelFormat::kStl);
    EXPECT_EQ(formatOf("ply\r\n"), ModelFormat::kPly);
    EXPECT_EQ(formatOf("\nCASCADE Topology V3"), ModelFormat::kBrep);
    EXPECT_EQ(formatOf("\nOpen CASCADE Topology V4"), ModelFormat::kBrep);
}

TEST(ImportSources, AModelTooLargeToBeMeasuredIsMadeASceneAllTheSame)
{
    // The square of its diagonal is no number any more.
    BRep_Builder const builder;
    TopoDS_Compound points;
    builder.MakeCompound(points);
    for (double const x : {0.0, 1e200})
        builder.Add(points, BRepBuilderAPI_MakeVertex(gp_Pnt(x, 0, 0)));
    std::ostringstream text;
    BRepTools::Write(points, text);
    TempFolder const folder;
    folder.Write("a.brep", text.str());
    ImportResult const result = ImportModel(folder.NarrowPathOf("a.brep"), folder.NarrowPathOf("a.xml"));
    EXPECT_EQ(result.outcome, Outcome::kDone) << result.failure;
    EXPECT_EQ(result.deflection, 0.0);
}

TEST(ImportSources, AModelThatTakesTooLongIsASentence)
{
    TempFolder const folder;
    ToolRun const run =
        RunTool({"import", "--timeout", "1", "--deflection", "0.0001%", "--angle", "0.1",
                 std::string(KVR_EXAMPLES_DIR) + "/models/lcr_follower_arm.step", folder.NarrowPathOf("a.xml")});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.error, HasSubstr("its reader ended after the 1 s of processor time that it may take\n"));
    EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
}

TEST(ImportSources, BothFormsOfBrepAreToldApartAndTheirPrefixesEndAsSentences)
{
    TopoDS_Edge const edge = BRepBuilderAPI_MakeEdge(gp_Pnt(0, 0, 0), gp_Pnt(1, 2, 3));
    std::ostringstream text;
    BRepTools::Write(edge, text);
    std::ostringstream binary;
    BinTools::Write(edge, binary);
    ASSERT_EQ(text.str().front(), '\n') << "as the other form";
    for (std::string const& bytes : {text.str(), binary.str(), "DBRep_DrawableShape\n" + text.str()})
    {
        // In steps, since each is read in a process of its own.
        for (std::size_t size = 8; size <= bytes.size(); size += size + 16 < bytes.size() ? 16 : 1)
        {
            TempFolder const folder;
            folder.Write("a.brep", bytes.substr(0, size));
            ChildResult const child = RunInChild(
                [&](ChildVoice const&)
                {
                    ModelDocument::Read(folder.NarrowPathOf("a.brep"), ModelFormat::kBrep, {});
                    return std::string("read");
                },
                {});
            EXPECT_TRUE(child.answer || child.failure) << size << child.EndText();
            if (size == bytes.size())
            {
                EXPECT_EQ(child.answer.value_or(""), "read") << child.failure.value_or(child.EndText());
            }
        }
    }
}

TEST(ImportSources, TheBrepOfAnExportIsRead)
{
    TempFolder const folder;
    std::string const brep = folder.NarrowPathOf("as1.brep");
    std::string const scene = folder.NarrowPathOf("s.xml");
    ASSERT_EQ(RunTool({"import", "--no-mesh", kStep, scene}).status, 0);
    ASSERT_EQ(RunTool({"export", scene, brep}).status, 0);
    ToolRun const run = RunTool({"import", "--no-mesh", brep, scene});
    EXPECT_EQ(run.status, 0) << run.error;
    EXPECT_THAT(run.out, HasSubstr("18 bodies"));
}

TEST(ImportMeshes, LeniencyTakesWhatIsThereAndSaysHowMuch)
{
    TempFolder const folder;
    std::string const box = BinaryStl(BoxTriangles(1, 1, 1));
    folder.Write("cut.stl", box.substr(0, 84 + 5 * 50));
    std::string const scene = folder.NarrowPathOf("s.xml");
    ToolRun const refused = RunTool({"import", folder.NarrowPathOf("cut.stl"), scene});
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.error, "kvr: " + folder.NarrowPathOf("cut.stl") + ": it holds 5 of 12 triangles\n");
    ToolRun const taken = RunTool({"import", "--lenient", folder.NarrowPathOf("cut.stl"), scene});
    EXPECT_EQ(taken.status, 0) << taken.error;
    EXPECT_THAT(taken.error, HasSubstr("taken: 5 of 12 triangles\n"));
    EXPECT_THAT(taken.error, HasSubstr("not in the scene: 7 triangles that the file announces and does not hold\n"));
    EXPECT_THAT(taken.out, HasSubstr("5 triangles"));
}

namespace
{

template <class List>
concept CountsWithoutItems = requires(List list)
{
    list.Add("kind", 1);
};

// How many an item of a report stands for.
unsigned long long CountOf(std::string const& item)
{
    std::size_t const end = item.find(" of ");
    bool const isCount = end != std::string::npos && item.find_first_not_of("0123456789") == end;
    return isCount ? std::stoull(item) : 1;
}

}  // namespace

TEST(ImportReports, EveryKindOfLossHasItsItems)
{
    // Whoever counts names what it counts: there is no other way to do it.
    static_assert(!CountsWithoutItems<Losses>);
    TempFolder const folder;
    GlbBuilder builder;
    json primitive = builder.Square();
    primitive["targets"] = {{{"POSITION", 0}}, {{"POSITION", 0}}};
    primitive["attributes"]["TEXCOORD_1"] = 0;
    primitive["extensions"]["EXT_other"] = json::object();
    primitive["material"] = 0;
    builder.json["meshes"] = {{{"name", "square"}, {"primitives", {primitive}}, {"extras", {{"a", 1}}}},
                              {{"primitives", {builder.Square()}}}};
    builder.json["textures"] = {{{"source", 0}}};
    builder.json["images"] = {{{"uri", "missing.png"}}};
    builder.json["materials"] = {
        {{"name", "paint"},
         {"extras", {{"b", 2}}},
         {"extensions", {{"KHR_other", json::object()}}},
         {"emissiveTexture", {{"index", 0}}},
         {"occlusionTexture", {{"index", 0}}},
         {"normalTexture", {{"index", 0}, {"texCoord", 1}}},
         {"pbrMetallicRoughness",
          {{"metallicRoughnessTexture", {{"index", 0}}}, {"baseColorTexture", {{"index", 0}}}}}}};
    builder.json["nodes"] = {{{"mesh", 0}},
                             {{"name", "lamp"}, {"extensions", {{"KHR_lights_punctual", {{"light", 0}}}}}},
                             {{"name", "nowhere"}}};
    builder.json["scenes"] = {{{"nodes", {0, 1}}}, {{"name", "second"}}};
    builder.json["animations"] = {{{"name", "turns"}}};
    builder.json["skins"] = {json::object(), json::object()};
    builder.json["extensions"] = {{"KHR_whole", json::object()}};
    folder.Write("m.glb", builder.Bytes());
    std::string const path = folder.NarrowPathOf("report.json");
    ToolRun const run =
        RunTool({"import", "--report", path, folder.NarrowPathOf("m.glb"), folder.NarrowPathOf("s.xml")});
    ASSERT_EQ(run.status, 0) << run.error;
    json const report = json::parse(FileBytes(path));
    std::set<std::string> kinds;
    for (json const& loss : report.at("Losses"))
    {
        kinds.insert(loss.at("Kind"));
        unsigned long long count = 0;
        for (json const& item : loss.at("Items"))
            count += CountOf(item);
        EXPECT_EQ(count, loss.at("Count").get<unsigned long long>()) << loss;
    }
    EXPECT_EQ(kinds, (std::set<std::string>{
                         "animations", "attributes of primitives", "extensions of materials",
                         "extensions of primitives", "extensions of the document", "extras of materials",
                         "extras of meshes", "images of textures", "lights", "meshes that stand nowhere in the scene",
                         "morph targets", "nodes outside of the scene", "scenes beside the one that is shown", "skins",
                         "textures in a second set of coordinates", "textures of roughness, emission and occlusion"}));
}

TEST(ImportMeshes, ColoursOfTheExportOfAPlyComeBack)
{
    TempFolder const folder;
    std::string const scene = folder.NarrowPathOf("s.xml");
    std::string const ply = folder.NarrowPathOf("as1.ply");
    std::string const example = std::string(KVR_EXAMPLES_DIR) + "/as1-oc-214/as1-oc-214.xml";
    ASSERT_EQ(RunTool({"export", example, ply}).status, 0);
    ASSERT_EQ(RunTool({"import", ply, scene}).status, 0);
    EXPECT_EQ(ColorsOf(scene), ColorsOf(example));
}

TEST(ImportMeshes, AGlbHasStylesTexturesViewsAndPropertiesInTheScene)
{
    GlbBuilder builder;
    json primitive = builder.Square();
    primitive["material"] = 0;
    primitive["attributes"]["TEXCOORD_0"] =
        builder.Accessor(std::vector<float>{0, 0, 1, 0, 1, 1, 0, 1}, kFloats, "VEC2", 2);
    builder.json["images"] = {{{"bufferView", builder.View("\x89PNG")}, {"mimeType", "image/png"}},
                              {{"bufferView", builder.View("root:x:0")}, {"mimeType", "image/png"}, {"name", "none"}}};
    builder.json["samplers"] = {{{"wrapT", 33648}}};
    builder.json["textures"] = {{{"source", 0}, {"sampler", 0}}, {{"source", 1}}};
    builder.json["materials"] = {
        {{"name", "glass"},
         {"alphaMode", "BLEND"},
         {"normalTexture", {{"index", 1}}},
         {"pbrMetallicRoughness", {{"baseColorFactor", {1, 0, 0, 0.25}}, {"baseColorTexture", {{"index", 0}}}}}}};
    builder.json["meshes"] = {{{"name", "pane"}, {"primitives", {primitive}}}};
    builder.json["cameras"] = {{{"type", "perspective"}, {"perspective", {{"yfov", 0.5}, {"znear", 0.1}}}}};
    builder.json["nodes"] = {{{"mesh", 0}, {"extras", {{"room", "kitchen"}}}}, {{"camera", 0}, {"name", "door"}}};
    TempFolder const folder;
    folder.Write("house.glb", builder.Bytes());
    std::string const scene = folder.NarrowPathOf("s.xml");
    ToolRun const run = RunTool({"import", folder.NarrowPathOf("house.glb"), scene});
    ASSERT_EQ(run.status, 0) << run.error;
    EXPECT_EQ(run.error, "kvr: " + folder.NarrowPathOf("house.glb") + ": not in the scene: 1 images of textures\n");
    json const objects = Objects(scene);
    json const& style = objects.at("style1");
    EXPECT_EQ(style.at("Label"), "glass");
    EXPECT_EQ(objects.at("mesh1").at("Styles"), json({"style1"}));
    EXPECT_EQ(objects.at("inst1").at("Label"), "pane") << "a node without a name has that of what it places";
    std::string const document = FileBytes(scene);
    EXPECT_THAT(document, HasSubstr("gltf.material"));
    EXPECT_THAT(document, HasSubstr("BLEND"));
    EXPECT_THAT(document, HasSubstr("gltf.sampler"));
    EXPECT_THAT(document, HasSubstr("33648"));
    EXPECT_EQ(objects.at("view1").at("Label"), "door");
    EXPECT_EQ(objects.at("camera1").at("ViewAngle"), 0.5);
    EXPECT_EQ(FileBytes(folder.NarrowPathOf("s.xml.texture1.png")), "\x89PNG");
    EXPECT_FALSE(std::filesystem::exists(folder.NarrowPathOf("s.xml.texture2.png")))
        << "what is no image stays where it is";
    EXPECT_THAT(objects.at("inst1").dump(), HasSubstr("kitchen"));
}

TEST(ImportMeshes, PlacesInATextureComeBackFromAnExport)
{
    std::vector<std::vector<double>> const places{{0, 1}, {1, 1}, {1, 0}, {0, 0.25}};
    GlbBuilder builder;
    std::vector<float> numbers;
    for (std::vector<double> const& place : places)
        numbers.insert(numbers.end(), {static_cast<float>(place[0]), static_cast<float>(place[1])});
    json primitive = builder.Square();
    primitive["attributes"]["TEXCOORD_0"] = builder.Accessor(numbers, kFloats, "VEC2", 2);
    primitive["material"] = 0;
    builder.json["images"] = {{{"bufferView", builder.View("\x89PNG")}, {"mimeType", "image/png"}}};
    builder.json["textures"] = {{{"source", 0}}};
    builder.json["materials"] = {{{"pbrMetallicRoughness", {{"baseColorTexture", {{"index", 0}}}}}}};
    builder.json["meshes"] = {{{"primitives", {primitive}}}};
    builder.json["nodes"] = {{{"mesh", 0}}};
    builder.json["scenes"] = {{{"nodes", {0}}}};
    TempFolder const folder;
    folder.Write("m.glb", builder.Bytes());
    std::string const obj = folder.NarrowPathOf("m.obj");
    ASSERT_EQ(RunTool({"convert", folder.NarrowPathOf("m.glb"), obj}).status, 0);
    for (char const* const source : {"m.glb", "m.obj"})
    {
        std::string const back = folder.NarrowPathOf("back.glb");
        std::string const scene = folder.NarrowPathOf("s.xml");
        ASSERT_EQ(RunTool({"import", "--up", "z", folder.NarrowPathOf(source), scene}).status, 0);
        // An OBJ has no texture; the places are in the scene, from the lower left.
        json const dump = json::parse(RunTool({"dump", scene}).out).at("Objects").at("mesh1");
        EXPECT_EQ(dump.at("TextureVertexSets").at(0).at("Vertices"),
                  json({{0.0, 0.0}, {1.0, 0.0}, {1.0, 1.0}, {0.0, 0.75}}))
            << source;
        if (std::string_view(source) == "m.obj")
            continue;
        ASSERT_EQ(RunTool({"export", scene, back}).status, 0);
        GltfFile const file(back);
        ASSERT_EQ(file.shown.size(), 1u);
        EXPECT_EQ(file.Numbers(file.shown[0].primitive.at("attributes").at("TEXCOORD_0")), places);
    }
}

TEST(ImportMeshes, OptionsOutOfTheirRangesAreRefused)
{
    TempFolder const folder;
    folder.Write("box.stl", BinaryStl(BoxTriangles(1, 1, 1)));
    std::string const model = folder.NarrowPathOf("box.stl");
    std::string const scene = folder.NarrowPathOf("s.xml");
    EXPECT_EQ(RunTool({"import", "--crease", "181", model, scene}).status, 2);
    EXPECT_EQ(RunTool({"import", "--crease", "-1", model, scene}).status, 2);
    EXPECT_EQ(RunTool({"import", "--up", "w", model, scene}).status, 2);
    EXPECT_EQ(RunTool({"import", "--up", "x", "--crease", "0", model, scene}).status, 0);
    ToolRun const run = RunTool({"import", "--up", "y", kStep, scene});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.error, HasSubstr("its axes stay as they are"));
    ImportOptions options;
    options.creaseAngle = -1.0;
    EXPECT_THAT(ImportModel(model, scene, options).failure, HasSubstr("from 0 to 180 degrees"));
}

}  // namespace KVR::Test

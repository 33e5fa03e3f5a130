#include <gtest/gtest.h>
#include <unistd.h>
#include <BRepTools.hxx>
#include <BinTools.hxx>
#include <IGESControl_Controller.hxx>
#include <IGESControl_Writer.hxx>
#include <TopoDS_Shape.hxx>

#include <algorithm>
#include <cmath>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>

#include "tests/host/ResourceLimit.h"
#include "tests/support/Shapes.h"
#include "tests/support/TempFolder.h"
#include "tests/tool/ToolRun.h"

namespace KVR::Test
{

namespace
{

namespace fs = std::filesystem;
using nlohmann::json;

std::string Model(char const* name)
{
    return std::string(KVR_EXAMPLES_DIR) + "/models/" + name;
}

std::string Bytes(std::string const& path)
{
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

std::vector<std::string> FilesIn(TempFolder const& folder)
{
    std::vector<std::string> names;
    for (fs::directory_entry const& entry : fs::directory_iterator(folder.Path()))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

// A model's scene in a folder of its own.
class Imported
{
public:
    explicit Imported(std::string const& model, std::vector<std::string> const& options = {})
    {
        std::vector<std::string> arguments{"import", model, Path()};
        arguments.insert(arguments.end(), options.begin(), options.end());
        run = RunTool(arguments);
    }

    std::string Path() const { return m_folder.NarrowPathOf("scene.xml"); }
    TempFolder const& Folder() const { return m_folder; }

    json const& Objects()
    {
        if (m_objects.empty())
            m_objects = json::parse(RunTool({"dump", "--summary", "--mass", Path()}).out).at("Objects");
        return m_objects;
    }
    std::vector<json> OfClass(std::string const& name)
    {
        std::vector<json> found;
        for (json const& object : Objects())
            if (object.is_object() && object.at("Class") == name)
                found.push_back(object);
        return found;
    }

    ToolRun run;

private:
    TempFolder m_folder;
    json m_objects;
};

class BundledModel : public testing::TestWithParam<char const*>
{
};

double Sum(std::vector<json> const& bodies, char const* measure)
{
    double sum = 0.0;
    for (json const& body : bodies)
        if (body.at("Body").is_object())
            sum += body.at("Body").at(measure).get<double>();
    return sum;
}

// One sentence, and nothing but the model in the folder.
void ExpectCleanFailure(ToolRun const& run, TempFolder const& folder, std::vector<std::string> const& left,
                        std::string const& part)
{
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_NE(run.error.find(part), std::string::npos) << run.error;
    EXPECT_EQ(std::count(run.error.begin(), run.error.end(), '\n'), 1) << run.error;
    EXPECT_EQ(FilesIn(folder), left);
}

constexpr char kAsciiStl[] =
    "solid triangle\nfacet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 1 0 0\nvertex 0 1 0\nendloop\nendfacet\n"
    "endsolid triangle\n";
constexpr char kObj[] = "v 0 0 0\nv 1 0 0\nv 0 1 0\nv 0 0 1\nf 1 2 3\nf 1 2 4\n";
constexpr char kPly[] =
    "ply\nformat ascii 1.0\nelement vertex 4\nproperty float x\nproperty float y\nproperty float z\nelement face 1\n"
    "property list uchar int vertex_indices\nend_header\n0 0 0\n2 0 0\n2 2 0\n0 2 0\n4 0 1 2 3\n";

}  // namespace

TEST(Import, AnAssemblyComesWithItsStructureColoursLayerAndProperties)
{
    Imported scene(Model("as1-oc-214.stp"));
    ASSERT_EQ(scene.run.status, 0) << scene.run.error;
    EXPECT_EQ(scene.run.error, "");
    EXPECT_NE(scene.run.out.find("4 assemblies, 5 parts, 13 instances, 5 bodies, 2048 triangles"), std::string::npos)
        << scene.run.out;
    EXPECT_EQ(scene.OfClass("IAssembly").size(), 4u);
    EXPECT_EQ(scene.OfClass("IInstance").size(), 13u);
    std::map<std::string, json> parts;
    for (json const& part : scene.OfClass("IPart"))
        parts[part.at("Label")] = part;
    ASSERT_EQ(parts.size(), 5u);
    EXPECT_EQ(parts.at("plate").at("LengthUnit"), "kUnitType_Millimeter");
    json const& nut = parts.at("nut");
    ASSERT_EQ(nut.at("Styles").size(), 1u);
    json const& style = scene.Objects().at(nut.at("Styles").at(0).get<std::string>());
    EXPECT_NEAR(style.at("DiffuseColor").at(0), 1.0, 1e-6);
    EXPECT_NEAR(style.at("DiffuseColor").at(1), 0.0, 1e-6);
    json const& properties = nut.at("FileProperties").at("CustomProperties");
    EXPECT_EQ(properties.at(0).at("Name"), "geometric validation property: volume");
    EXPECT_NEAR(properties.at(0).at("Value").get<double>(), 664.374, 1e-3);
    auto const layers = scene.OfClass("ILayer");
    ASSERT_EQ(layers.size(), 1u);
    EXPECT_EQ(layers.front().at("Label"), "256");
    EXPECT_EQ(layers.front().at("GeometryItems").size(), 5u);
    EXPECT_EQ(scene.OfClass("IRenderStyle").size(), 5u);
    json const& file = scene.Objects().at("file1");
    EXPECT_EQ(file.at("FileProperties").at("SendingSystem"), "Open CASCADE 6.1");
    EXPECT_EQ(file.at("FileProperties").at("CreationDate"), "2008-07-24T15:00:20");
}

TEST(Import, BodiesKeepTheirMeasuresAndTheirFacesHaveIds)
{
    Imported scene(Model("as1-oc-214.stp"));
    auto const bodies = scene.OfClass("IBrep");
    ASSERT_EQ(bodies.size(), 5u);
    EXPECT_EQ(Sum(bodies, "Solids"), 5.0);
    EXPECT_EQ(Sum(bodies, "Faces"), 53.0);
    for (json const& body : bodies)
        // The faces and edges of the file, by the numbers of its entities.
        EXPECT_EQ(body.at("PersistentIDsMap").size(),
                  body.at("Body").at("Faces").get<std::size_t>() + body.at("Body").at("Edges").get<std::size_t>());
}

TEST(Import, MeshesHaveNormalsAndSegmentsOfFacesAndEdges)
{
    Imported scene(Model("as1-oc-214.stp"));
    auto const meshes = scene.OfClass("IPolygonMesh");
    ASSERT_EQ(meshes.size(), 5u);
    for (json const& mesh : meshes)
    {
        EXPECT_GT(mesh.at("NormalCount"), 0);
        EXPECT_GT(mesh.at("FaceSegmentCount"), 0);
        EXPECT_GT(mesh.at("EdgeSegmentCount"), 0);
        EXPECT_TRUE(mesh.at("IsVisible"));
    }
}

TEST(Import, AModelInInchesStaysInInches)
{
    Imported scene(Model("nist_ctc_03_ap203.stp"));
    ASSERT_EQ(scene.run.status, 0) << scene.run.error;
    EXPECT_NE(scene.run.out.find("unit of length: inch"), std::string::npos);
    for (json const& part : scene.OfClass("IPart"))
        EXPECT_EQ(part.at("LengthUnit"), "kUnitType_Inch");
    constexpr double kCubicInch = 25.4 * 25.4 * 25.4;
    EXPECT_NEAR(Sum(scene.OfClass("IBrep"), "Volume") * kCubicInch, 331938.272, 331938.272 * 1e-6);
}

TEST(Import, WiresPointsLayersAndHiddenItemsComeAlong)
{
    Imported scene(Model("nist_ctc_03_ap203.stp"));
    auto const bodies = scene.OfClass("IBrep");
    EXPECT_EQ(
        std::count_if(bodies.begin(), bodies.end(), [](json const& body) { return body.at("Body").at("Faces") == 0; }),
        87);
    EXPECT_EQ(scene.OfClass("IPoint").size(), 12u);
    std::size_t members = 0;
    for (json const& layer : scene.OfClass("ILayer"))
        members += layer.at("GeometryItems").size();
    EXPECT_EQ(scene.OfClass("ILayer").size(), 2u);
    EXPECT_EQ(members, 100u);
    std::size_t hidden = 0;
    for (json const& object : scene.Objects())
        hidden += object.is_object() && object.value("Class", "") != "ILayer" && object.contains("IsVisible") &&
                          object.at("IsVisible") == false
                      ? 1
                      : 0;
    EXPECT_EQ(hidden, 99u);
}

TEST(Import, SavedViewsAndTheirClippingPlanesBecomeViewsAndCameras)
{
    Imported scene(Model("iso14405_fig17a.stp"));
    EXPECT_EQ(scene.OfClass("IView").size(), 9u);
    EXPECT_EQ(scene.OfClass("ICamera").size(), 8u);
    auto const sections = scene.OfClass("ISectionCamera");
    ASSERT_EQ(sections.size(), 1u);
    EXPECT_EQ(sections.front().at("Label"), "Section #1");
    EXPECT_EQ(sections.front().at("SectionPlanes").size(), 1u);
    for (json const& camera : scene.OfClass("ICamera"))
        if (camera.at("Label") == "Top")
        {
            // From the eye, which the file places below, towards the product.
            EXPECT_NEAR(camera.at("CameraPosition").at(2), -115.664672851563, 1e-9);
            EXPECT_EQ(camera.at("CameraDirection"), json({0, 0, 1}));
        }
}

TEST(Import, AnnotationsBecomeCalloutsWithTextPlaneAndLines)
{
    Imported scene(Model("nist_plate_creo_lbls.stp"));
    auto const notes = scene.OfClass("IAnnotationCallout");
    ASSERT_EQ(notes.size(), 9u);
    EXPECT_EQ(scene.OfClass("IAnnotationCalloutElement").size(), 9u);
    EXPECT_GT(scene.OfClass("ICurve").size(), 9u);
    EXPECT_NE(RunTool({"notes", scene.Path()}).out.find("diameter 19"), std::string::npos);
    EXPECT_EQ(scene.run.error.find("magnitudes"), std::string::npos) << scene.run.error;

    Imported without(Model("nist_plate_creo_lbls.stp"), {"--no-pmi"});
    EXPECT_EQ(without.run.status, 0);
    EXPECT_TRUE(without.OfClass("IAnnotationCallout").empty());
}

TEST(Import, MeshesOrBodiesMayBeLeftOutAndBodiesWrittenAsText)
{
    Imported noMesh(Model("as1-oc-214.stp"), {"--no-mesh"});
    EXPECT_EQ(FilesIn(noMesh.Folder()),
              (std::vector<std::string>{"scene.kvrproperty", "scene.xml", "scene.xml.ids", "scene.xml.sab"}));
    Imported noBrep(Model("as1-oc-214.stp"), {"--no-brep"});
    EXPECT_EQ(FilesIn(noBrep.Folder()),
              (std::vector<std::string>{"scene.kvrproperty", "scene.xml", "scene.xml.mesh", "scene.xml.seg"}));
    Imported text(Model("as1-oc-214.stp"), {"--text", "--no-mesh"});
    EXPECT_EQ(FilesIn(text.Folder()),
              (std::vector<std::string>{"scene.kvrproperty", "scene.xml", "scene.xml.ids", "scene.xml.sat"}));
    EXPECT_NEAR(Sum(text.OfClass("IBrep"), "Volume"), Sum(noMesh.OfClass("IBrep"), "Volume"), 1e-6);
}

TEST_P(BundledModel, HasTheSameBodiesAsTextAndAsBytes)
{
    Imported bytes(Model(GetParam()), {"--no-mesh"});
    Imported text(Model(GetParam()), {"--no-mesh", "--text"});
    ASSERT_EQ(bytes.run.status, 0) << bytes.run.error;
    ASSERT_EQ(text.run.status, 0) << text.run.error;
    auto const first = bytes.OfClass("IBrep");
    auto const second = text.OfClass("IBrep");
    ASSERT_EQ(first.size(), second.size());
    ASSERT_FALSE(first.empty());
    for (std::size_t i = 0; i < first.size(); ++i)
    {
        json const& a = first[i].at("Body");
        json const& b = second[i].at("Body");
        for (char const* const count : {"Solids", "Faces", "Edges", "Vertices"})
            EXPECT_EQ(a.at(count), b.at(count)) << first[i].at("Id");
        for (char const* const measure : {"Volume", "Area"})
            EXPECT_NEAR(a.at(measure).get<double>(), b.at(measure).get<double>(),
                        1e-9 * std::abs(a.at(measure).get<double>()))
                << first[i].at("Id");
        EXPECT_EQ(first[i].at("PersistentIDsMap"), second[i].at("PersistentIDsMap"));
    }
}

INSTANTIATE_TEST_SUITE_P(Import, BundledModel,
                         testing::Values("as1-oc-214.stp", "nist_ctc_03_ap203.stp", "iso14405_fig17a.stp",
                                         "nist_plate_creo_lbls.stp", "lcr_follower_arm.step"));

TEST(Import, AFinerDeflectionMakesMoreTriangles)
{
    auto const triangles = [](char const* deflection)
    {
        Imported scene(Model("as1-oc-214.stp"), {"--deflection", deflection});
        unsigned long long count = 0;
        for (json const& mesh : scene.OfClass("IPolygonMesh"))
            count += mesh.at("PolygonCount").get<unsigned long long>();
        return count;
    };
    EXPECT_GT(triangles("0.001"), triangles("0.1%"));
    EXPECT_EQ(RunTool({"import", "--deflection", "0", Model("as1-oc-214.stp"), "x.xml"}).status, 2);
    EXPECT_EQ(RunTool({"import", "--deflection", "-1%", Model("as1-oc-214.stp"), "x.xml"}).status, 2);
    EXPECT_EQ(RunTool({"import", "--deflection", "fine", Model("as1-oc-214.stp"), "x.xml"}).status, 2);
}

TEST(Import, TrianglesOfStlObjAndPlyComeInTheUnitThatIsSaid)
{
    struct Case
    {
        char const* name;
        std::string bytes;
        int triangles;
    };
    for (Case const& entry : {Case{"a.stl", kAsciiStl, 1}, Case{"a.obj", kObj, 2}, Case{"a.ply", kPly, 2}})
    {
        TempFolder const folder;
        folder.Write(entry.name, entry.bytes);
        Imported scene(folder.NarrowPathOf(entry.name), {"--unit", "inch"});
        ASSERT_EQ(scene.run.status, 0) << entry.name << scene.run.error;
        EXPECT_NE(scene.run.error.find("states no unit of length; its numbers are taken as inchs"), 0u);
        auto const meshes = scene.OfClass("IPolygonMesh");
        ASSERT_EQ(meshes.size(), 1u) << entry.name;
        EXPECT_EQ(meshes.front().at("PolygonCount"), entry.triangles) << entry.name;
        EXPECT_EQ(scene.OfClass("IPart").front().at("LengthUnit"), "kUnitType_Inch") << entry.name;
    }
}

TEST(Import, BodiesOfBrepAndIgesFilesComeWithTheirMeasures)
{
    TempFolder const folder;
    TopoDS_Shape const box = BoxShape(1.0, 2.0, 3.0);
    std::string const text = folder.NarrowPathOf("box.brep");
    ASSERT_TRUE(BRepTools::Write(box, text.c_str()));
    std::string const binary = folder.NarrowPathOf("box.bin");
    ASSERT_TRUE(BinTools::Write(box, binary.c_str()));
    for (std::string const& path : {text, binary})
    {
        // The binary form is told by its extension.
        std::string const model = path == binary ? folder.NarrowPathOf("binary.brep") : path;
        if (model != path)
            fs::rename(path, model);
        Imported scene(model);
        ASSERT_EQ(scene.run.status, 0) << scene.run.error;
        EXPECT_NEAR(Sum(scene.OfClass("IBrep"), "Volume"), 6.0, 1e-9);
        EXPECT_NE(scene.run.error.find("states no unit of length"), std::string::npos);
    }
    IGESControl_Controller::Init();
    IGESControl_Writer writer("IN", 0);
    ASSERT_TRUE(writer.AddShape(box));
    std::string const iges = folder.NarrowPathOf("box.igs");
    ASSERT_TRUE(writer.Write(iges.c_str()));
    Imported scene(iges);
    ASSERT_EQ(scene.run.status, 0) << scene.run.error;
    EXPECT_NE(scene.run.out.find("unit of length: inch"), std::string::npos) << scene.run.out;
    // A box of 1 by 2 by 3 millimetres, as faces.
    EXPECT_NEAR(Sum(scene.OfClass("IBrep"), "Area") * 25.4 * 25.4, 22.0, 1e-6);
    EXPECT_EQ(Sum(scene.OfClass("IBrep"), "Faces"), 6.0);
}

TEST(Import, TheFormatIsToldByContentWhateverTheExtension)
{
    TempFolder const folder;
    folder.Write("model.dat", Bytes(Model("as1-oc-214.stp")));
    Imported scene(folder.NarrowPathOf("model.dat"));
    EXPECT_EQ(scene.run.status, 0) << scene.run.error;
    folder.Write("model.stp", kAsciiStl);
    EXPECT_EQ(Imported(folder.NarrowPathOf("model.stp")).run.status, 0);
}

TEST(Import, NamesInAnyScriptAndPathsWithBlanksDoNoHarm)
{
    TempFolder const folder;
    std::string text = Bytes(Model("as1-oc-214.stp"));
    folder.Write("модель 1.stp", text);
    std::string const target = folder.NarrowPathOf("部品 1.xml");
    EXPECT_EQ(RunTool({"import", "--quiet", folder.NarrowPathOf("модель 1.stp"), target}).status, 0);
    EXPECT_EQ(RunTool({"tree", target}).status, 0);
}

TEST(ImportFailures, AMissingModelADirectoryAndAnEmptyFileGetOneSentence)
{
    TempFolder const folder;
    std::string const target = folder.NarrowPathOf("scene.xml");
    ExpectCleanFailure(RunTool({"import", folder.NarrowPathOf("none.stp"), target}), folder, {},
                       "there is no such file");
    folder.MakeFolder("directory.stp");
    ExpectCleanFailure(RunTool({"import", folder.NarrowPathOf("directory.stp"), target}), folder, {"directory.stp"},
                       "it is a directory");
    folder.Write("empty.stp", "");
    ExpectCleanFailure(RunTool({"import", folder.NarrowPathOf("empty.stp"), target}), folder,
                       {"directory.stp", "empty.stp"}, "it is empty");
    folder.MakeFifo("fifo.stp");
    ExpectCleanFailure(RunTool({"import", folder.NarrowPathOf("fifo.stp"), target}), folder,
                       {"directory.stp", "empty.stp", "fifo.stp"}, "it is no regular file");
}

TEST(ImportFailures, AModelThatIsCutShortLeavesNothing)
{
    std::string const whole = Bytes(Model("iso14405_fig17a.stp"));
    for (std::size_t const size : {std::size_t{20}, std::size_t{1000}, whole.size() / 2})
    {
        TempFolder const folder;
        folder.Write("cut.stp", whole.substr(0, size));
        ExpectCleanFailure(RunTool({"import", folder.NarrowPathOf("cut.stp"), folder.NarrowPathOf("scene.xml")}),
                           folder, {"cut.stp"}, "cut.stp: ");
    }
}

TEST(ImportFailures, DamagedModelsOfEveryFormatEndWithASentenceOrAScene)
{
    struct Case
    {
        char const* name;
        std::string bytes;
    };
    std::string binaryStl(84, '\0');
    binaryStl[80] = 2;
    binaryStl.resize(84 + 50, '\x7f');
    std::string glb = "glTF";
    glb += std::string("\x02\0\0\0\xff\xff\xff\x7f\xff\xff\xff\x7fJSON", 16);
    for (Case const& entry :
         {Case{"a.stl", binaryStl}, Case{"b.glb", glb}, Case{"c.gltf", "{\"asset\":"}, Case{"d.ply", "ply\nformat"},
          Case{"e.brep", "DBRep_DrawableShape\n\nCASCADE Topology V1, (c) Matra-Datavision\nLocations 99999999\n"},
          Case{"f.igs", std::string(72, ' ') + "S      1\n"}, Case{"g.obj", "f 1 2 3\nf -1 999999999 4\n"},
          Case{"h.stp", "ISO-10303-21;\nHEADER;\nENDSEC;\nDATA;\n#1=A(#1);\nENDSEC;\nEND-ISO-10303-21;\n"}})
    {
        TempFolder const folder;
        folder.Write(entry.name, entry.bytes);
        ToolRun const run = RunTool({"import", folder.NarrowPathOf(entry.name), folder.NarrowPathOf("scene.xml")});
        if (run.status == 0)
            EXPECT_EQ(RunTool({"dump", folder.NarrowPathOf("scene.xml")}).status, 0) << entry.name;
        else
            ExpectCleanFailure(run, folder, {entry.name}, entry.name);
    }
}

TEST(ImportFailures, AnUnknownFormatIsNamedAsSuch)
{
    TempFolder const folder;
    folder.Write("notes.txt", "hello");
    ExpectCleanFailure(RunTool({"import", folder.NarrowPathOf("notes.txt"), folder.NarrowPathOf("scene.xml")}), folder,
                       {"notes.txt"}, "it is in none of the formats STEP, IGES, BREP, glTF, STL, OBJ and PLY");
}

TEST(ImportFailures, CompressedMeshesAreNamedAsTheCause)
{
    TempFolder const folder;
    folder.Write("a.gltf", R"({"asset":{"version":"2.0"},"extensionsRequired":["KHR_draco_mesh_compression"]})");
    ExpectCleanFailure(RunTool({"import", folder.NarrowPathOf("a.gltf"), folder.NarrowPathOf("scene.xml")}), folder,
                       {"a.gltf"}, "KHR_draco_mesh_compression");
}

TEST(ImportFailures, ATargetThatCannotBeWrittenGetsOneSentence)
{
    TempFolder const folder;
    folder.MakeFolder("scene.xml");
    ExpectCleanFailure(RunTool({"import", Model("as1-oc-214.stp"), folder.NarrowPathOf("scene.xml")}), folder,
                       {"scene.xml"}, "Is a directory");
    ExpectCleanFailure(RunTool({"import", Model("as1-oc-214.stp"), folder.NarrowPathOf("none/scene.xml")}), folder,
                       {"scene.xml"}, "No such file or directory");
}

TEST(ImportFailures, AFullDiskLeavesNothingAndTheFormerScene)
{
    TempFolder const folder;
    folder.Write("scene.xml", "the former scene");
    // Files of the program may not grow beyond 64 kB, as on a disk that is full.
    ResourceLimit const limit(RLIMIT_FSIZE, 64 * 1024);
    ToolRun const run = RunTool({"import", Model("as1-oc-214.stp"), folder.NarrowPathOf("scene.xml")});
    ExpectCleanFailure(run, folder, {"scene.xml"}, "its scene cannot be written: File too large");
    EXPECT_EQ(Bytes(folder.NarrowPathOf("scene.xml")), "the former scene");
}

TEST(Import, WhatStoodThereIsReplacedWithItsProperties)
{
    TempFolder const folder;
    folder.Write("scene.kvrproperty", "<Properties/>");
    folder.Write("scene.xml", "the former scene");
    EXPECT_EQ(RunTool({"import", "--quiet", Model("iso14405_fig17a.stp"), folder.NarrowPathOf("scene.xml")}).status, 0);
    EXPECT_EQ(FilesIn(folder), (std::vector<std::string>{"scene.xml", "scene.xml.ids", "scene.xml.mesh",
                                                         "scene.xml.sab", "scene.xml.seg"}));
}

TEST(Import, QuietSaysNothing)
{
    TempFolder const folder;
    ToolRun const run =
        RunTool({"import", "--quiet", Model("nist_ctc_03_ap203.stp"), folder.NarrowPathOf("scene.xml")});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out + run.error, "");
}

}  // namespace KVR::Test

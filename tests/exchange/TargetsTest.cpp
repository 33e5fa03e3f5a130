#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>

#include "authoring/SceneWriter.h"
#include "exchange/ExportScene.h"
#include "exchange/ImportModel.h"
#include "exchange/run/WorkFolder.h"
#include "exchange/source/SceneFile.h"
#include "framework/api/FileProperties.h"
#include "framework/xml_util/SideFileNotes.h"
#include "tests/support/TempFolder.h"
#include "tests/tool/ToolRun.h"

// That nothing of the user's is written over.
namespace KVR::Test
{

namespace
{

namespace fs = std::filesystem;
using testing::HasSubstr;

constexpr char kStl[] =
    "solid t\nfacet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 1 0 0\nvertex 0 1 0\nendloop\nendfacet\nendsolid "
    "t\n";

class Targets : public testing::Test
{
protected:
    Targets() { m_folder.Write("model.stl", kStl); }

    std::string File(std::string const& name) const { return m_folder.NarrowPathOf(name); }
    std::string Bytes(std::string const& name) const
    {
        std::ifstream file(File(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    std::set<std::string> Names() const
    {
        std::set<std::string> names;
        for (fs::directory_entry const& entry : fs::directory_iterator(m_folder.Path()))
            names.insert(entry.path().filename().string());
        return names;
    }
    ImportResult Import(std::string const& model, std::string const& scene, ImportOptions const& options = {}) const
    {
        return ImportModel(File(model), File(scene), options);
    }
    // Fails with a sentence that has that in it, and leaves everything as it is.
    void ExpectRefused(std::string const& model, std::string const& scene, std::string const& part) const
    {
        std::set<std::string> const before = Names();
        ImportResult const result = Import(model, scene);
        EXPECT_EQ(result.outcome, Outcome::kFailed);
        EXPECT_THAT(result.failure, HasSubstr(part));
        EXPECT_FALSE(result.failure.ends_with('.'));
        EXPECT_EQ(Names(), before);
    }

    TempFolder m_folder;
};

ImportOptions Forced()
{
    ImportOptions options;
    options.force = true;
    return options;
}

}  // namespace

TEST_F(Targets, ASceneEndsInXml)
{
    for (char const* const name : {"a", "a.stl", "a.XML", "a.xml.mesh", ".xml"})
        ExpectRefused("model.stl", name, "the name of a scene ends in .xml");
}

TEST_F(Targets, OfAnImportIsNotTheModelByAnyNameOrLink)
{
    m_folder.Write("m.xml", kStl);
    fs::create_symlink("m.xml", File("link.xml"));
    fs::create_hard_link(File("m.xml"), File("hard.xml"));
    fs::create_directory_symlink(m_folder.Path(), File("sub"));
    for (char const* const scene : {"m.xml", "link.xml", "hard.xml", "sub/m.xml", "./m.xml"})
        ExpectRefused("m.xml", scene, "which is being read");
    ExpectRefused("link.xml", "m.xml", "which is being read");
    EXPECT_EQ(Bytes("m.xml"), kStl);
    EXPECT_TRUE(fs::is_symlink(File("link.xml")));
    EXPECT_EQ(Import("m.xml", "other.xml").outcome, Outcome::kDone);
}

TEST_F(Targets, OfAnImportAreNoFilesOfOthers)
{
    for (std::string const name : {"a.xml.mesh", "a.xml.seg", "a.xml.ids", "a.xml.sab", "a.kvrproperty"})
    {
        m_folder.Write(name, "mine");
        ExpectRefused("model.stl", "a.xml", name + ": it is there and is no side file of that scene");
        EXPECT_EQ(Bytes(name), "mine");
        fs::remove(File(name));
    }
    m_folder.Write("a.mesh", "mine");
    m_folder.Write("a.xml.mesh", "mine");
    m_folder.Write("a.kvrproperty", "mine");
    EXPECT_EQ(Import("model.stl", "a.xml", Forced()).outcome, Outcome::kDone);
    EXPECT_EQ(Names(), (std::set<std::string>{"a.mesh", "a.xml", "a.xml.mesh", "a.xml.seg", "model.stl"}));
    EXPECT_EQ(Bytes("a.mesh"), "mine");
}

TEST_F(Targets, OfAnImportMayBeAFormerSceneOfTheName)
{
    ASSERT_EQ(Import("model.stl", "a.xml").outcome, Outcome::kDone);
    std::set<std::string> const names = Names();
    EXPECT_EQ(Import("model.stl", "a.xml").outcome, Outcome::kDone);
    EXPECT_EQ(Names(), names);
    // What the user changed is no longer the scene's.
    m_folder.Write("a.xml.mesh", "mine");
    ExpectRefused("model.stl", "a.xml", "a.xml.mesh");
    EXPECT_EQ(Import("model.stl", "a.xml", Forced()).outcome, Outcome::kDone);
    // A link in its place is replaced, and not followed.
    fs::rename(File("a.xml.mesh"), File("kept"));
    fs::create_symlink("nowhere", File("a.xml.mesh"));
    ExpectRefused("model.stl", "a.xml", "a.xml.mesh");
}

TEST_F(Targets, WhatOnlyTheFormerSceneHadGoes)
{
    {
        Authoring::SceneWriter scene(m_folder.PathOf("a.xml"));
        unsigned char const byte = 1;
        scene.Blob(&byte, 1);
        scene.Blob(&byte, 1);
        scene.Kernel();
        scene.Finish();
    }
    // Mine from now on.
    m_folder.Write("a.xml.blob2", "mine");
    EXPECT_EQ(Import("model.stl", "a.xml").outcome, Outcome::kDone);
    EXPECT_EQ(Names(), (std::set<std::string>{"a.xml", "a.xml.blob2", "a.xml.mesh", "a.xml.seg", "model.stl"}));
}

TEST_F(Targets, OfOneImportAreNotThoseOfAnother)
{
    for (char const* const scene : {"a.xml", "a.b.xml", "A.xml", "a.ids.xml", "a.xml.xml", "a.xml.mesh.xml"})
        ASSERT_EQ(Import("model.stl", scene).outcome, Outcome::kDone) << scene;
    for (char const* const scene : {"a.xml", "a.b.xml", "A.xml", "a.ids.xml", "a.xml.xml", "a.xml.mesh.xml"})
    {
        auto const notes = SideFileNotes::Of(UTF8String(File(scene)));
        ASSERT_TRUE(notes) << scene;
        EXPECT_EQ(notes->size(), 2u);
    }
}

TEST_F(Targets, OfAnExportAreNotTheSceneNorItsSideFiles)
{
    {
        Authoring::SceneWriter scene(m_folder.PathOf("out.xml"));
        Authoring::FileRecord file;
        file.id = "f";
        file.children = {{"p", Authoring::FileChildType::kPart}};
        scene.BeginFile(file);
        scene.EndFile();
        Authoring::ComponentRecord part;
        part.id = "p";
        scene.BeginPart(part);
        Authoring::PointRecord point;
        point.id = "x";
        scene.Point(point);
        scene.EndPart();
        // By whatever name: the export's own side files are these.
        for (char const* const name : {"out.bin", "out.mtl"})
        {
            m_folder.Write(name, name);
            scene.AddSideFile(name);
        }
        scene.Finish();
    }
    std::string const document = Bytes("out.xml");
    fs::create_symlink("out.xml", File("link.glb"));
    fs::create_hard_link(File("out.mtl"), File("hard.stl"));
    SceneOptions options;
    options.path = File("out.xml");
    ExportOptions forced;
    forced.force = true;
    for (char const* const target : {"link.glb", "out.gltf", "out.obj", "hard.stl"})
    {
        ExportResult const result = ExportScene(options, File(target), forced);
        EXPECT_EQ(result.outcome, Outcome::kFailed) << target;
        EXPECT_THAT(result.failure, HasSubstr("which is being read"));
    }
    EXPECT_EQ(Bytes("out.xml") + Bytes("out.bin") + Bytes("out.mtl"), document + "out.bin" + "out.mtl");
    EXPECT_EQ(Names(), (std::set<std::string>{"hard.stl", "link.glb", "model.stl", "out.bin", "out.mtl", "out.xml"}));
    EXPECT_EQ(ExportScene(options, File("other.gltf")).outcome, Outcome::kDone);
}

TEST_F(Targets, OfAnExportAreNoFilesOfOthers)
{
    ASSERT_EQ(Import("model.stl", "a.xml").outcome, Outcome::kDone);
    SceneOptions scene;
    scene.path = File("a.xml");
    ExportOptions forced;
    forced.force = true;
    std::pair<std::string, std::string> const rows[] = {{"o ut.gltf", "o ut.bin"}, {"o ut.obj", "o ut.mtl"}};
    for (auto const& [target, beside] : rows)
    {
        m_folder.Write(beside, "mine");
        std::set<std::string> const before = Names();
        ExportResult const result = ExportScene(scene, File(target));
        EXPECT_EQ(result.outcome, Outcome::kFailed);
        EXPECT_EQ(result.failure, File(beside) + ": it is there and belongs to no earlier export to " + target +
                                      "; --force replaces it");
        EXPECT_EQ(Names(), before);
        // Neither by a target that is something else, or names another file.
        for (char const* const content : {"mine", "mtllib other.mtl\n", R"({"buffers":[{"uri":"other.bin"}]})", "{"})
        {
            m_folder.Write(target, content);
            EXPECT_EQ(ExportScene(scene, File(target)).outcome, Outcome::kFailed) << content;
            EXPECT_EQ(Bytes(target) + Bytes(beside), std::string(content) + "mine");
        }
        EXPECT_EQ(ExportScene(scene, File(target), forced).outcome, Outcome::kDone);
        EXPECT_NE(Bytes(beside), "mine");
        // It is this export's from now on.
        m_folder.Write(beside, "changed");
        EXPECT_EQ(ExportScene(scene, File(target)).outcome, Outcome::kDone);
        EXPECT_NE(Bytes(beside), "changed");
        fs::remove(File(target));
        EXPECT_EQ(RunTool({"export", File("a.xml"), File(target)}).status, 1);
        EXPECT_EQ(RunTool({"export", "--quiet", "--force", File("a.xml"), File(target)}).status, 0);
        fs::remove(File(target));
        EXPECT_EQ(RunTool({"convert", "--quiet", File("model.stl"), File(target)}).status, 1);
        EXPECT_EQ(RunTool({"convert", "--quiet", "--force", File("model.stl"), File(target)}).status, 0);
    }
}

TEST_F(Targets, TheProgramRefusesThemWithOneSentence)
{
    m_folder.Write("a.xml.mesh", "mine");
    ToolRun const run = RunTool({"import", File("model.stl"), File("a.xml")});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.error,
              "kvr: " + File("a.xml.mesh") + ": it is there and is no side file of that scene; --force replaces it\n");
    EXPECT_EQ(RunTool({"import", "--quiet", "--force", File("model.stl"), File("a.xml")}).status, 0);
}

TEST(ImportedScenes, SayWhetherTheyHaveAssemblyStructure)
{
    TempFolder const folder;
    folder.Write("model.stl", kStl);
    std::string const models = std::string(KVR_EXAMPLES_DIR) + "/models/";
    std::pair<std::string, bool> const rows[] = {{models + "as1-oc-214.stp", true},
                                                 {models + "iso14405_fig17a.stp", false},
                                                 {folder.NarrowPathOf("model.stl"), false}};
    for (auto const& [model, isAssembly] : rows)
    {
        std::string const scene = folder.NarrowPathOf("scene.xml");
        ASSERT_EQ(ImportModel(model, scene).outcome, Outcome::kDone) << model;
        SceneOptions options;
        options.path = scene;
        SceneFile file(options);
        bool answer = !isAssembly;
        EXPECT_EQ(file.Producer().QueryFile()->HasAssemblyStructure(answer), kIsValueSpecified_Yes);
        EXPECT_EQ(answer, isAssembly) << model;
    }
}

TEST(FilteredExports, OfANameThatNothingHasAreAFailureWithTheNearest)
{
    TempFolder const folder;
    SceneOptions scene;
    scene.path = std::string(KVR_EXAMPLES_DIR) + "/as1-oc-214/as1-oc-214.xml";
    std::string const target = folder.NarrowPathOf("out.glb");
    ExportOptions options;
    options.filter.hide = {"l-braket"};
    options.filter.only = {"nut", "Bolts*"};
    ExportResult const result = ExportScene(scene, target, options);
    EXPECT_EQ(result.outcome, Outcome::kFailed);
    EXPECT_THAT(result.failure,
                HasSubstr(scene.path + R"(: nothing in it has the name "l-braket", the nearest are "l-bracket", )"));
    EXPECT_THAT(result.failure, HasSubstr(R"(; nothing in it has the name "Bolts*", the nearest are "bolt)"));
    EXPECT_FALSE(fs::exists(target));
    options.filter = {.only = {"*bracket*"}, .hide = {"nut*"}};
    EXPECT_EQ(ExportScene(scene, target, options).outcome, Outcome::kDone);
}

}  // namespace KVR::Test

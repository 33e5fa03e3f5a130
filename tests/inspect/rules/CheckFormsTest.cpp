// What "kvr check" prints, and with what it ends.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "inspect/Finding.h"
#include "tests/support/TempFolder.h"
#include "tests/tool/ToolRun.h"

namespace KVR::Test
{

namespace
{

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr char kFile[] = "  <IFile ID=\"f\" IsRoot=\"1\"><ChildSet><Child ID=\"a\"/></ChildSet></IFile>\n";
constexpr char kPart[] = "  <IPart ID=\"p\" Label=\"plate\"/>\n";

std::string Scene(std::string const& assembly)
{
    return std::string("<Scene>\n") + kFile + assembly + kPart + "</Scene>\n";
}

// Four mistakes, each with one safe meaning.
std::string const kMistakes = Scene(
    "  <IAssembly ID=\"a\" label=\"gate\"><Unit LengthUnit=\"kUnitType_inch\"/><styles></styles><ChildSet>\n"
    "    <IInstance ID=\"i\" Visibility=\"true\" NetVisibility=\"1\"><Child ID=\"p\"/></IInstance>\n"
    "  </ChildSet></IAssembly>\n");

std::string const kClean = Scene(
    "  <IAssembly ID=\"a\" Label=\"gate\"><Unit LengthUnit=\"kUnitType_Inch\"/><Styles></Styles><ChildSet>\n"
    "    <IInstance ID=\"i\" Visibility=\"1\" NetVisibility=\"1\"><Child ID=\"p\"/></IInstance>\n"
    "  </ChildSet></IAssembly>\n");

// So many attributes that nothing reads.
std::string Unread(int count)
{
    std::string attributes;
    for (int i = 0; i < count; ++i)
        attributes += " Colour" + std::to_string(i) + "=\"red\"";
    return std::string("<Scene>\n  <IFile ID=\"f\" IsRoot=\"1\"><ChildSet><Child ID=\"p\"/></ChildSet></IFile>\n") +
           "  <IPart ID=\"p\" Label=\"plate\"" + attributes + "/>\n</Scene>\n";
}

class CheckForms : public testing::Test
{
protected:
    ToolRun Check(std::string const& scene, std::vector<std::string> arguments = {})
    {
        m_folder.Write("gate.xml", scene);
        arguments.insert(arguments.begin(), {"check", Path("gate.xml")});
        return RunTool(arguments);
    }

    std::string Path(std::string const& name) const { return m_folder.NarrowPathOf(name); }

    // In one run of the validator, which takes its time to begin.
    void ExpectValid(std::vector<std::string> const& texts, std::string const& schema)
    {
        std::vector<std::string> words{KVR_PYTHON, "-B", KVR_VALIDATE_DUMPS, schema};
        for (std::string const& text : texts)
        {
            std::string const name = "findings" + std::to_string(words.size()) + ".json";
            m_folder.Write(name, text);
            words.push_back(Path(name));
        }
        ToolRun const run = RunProgram(words);
        EXPECT_EQ(run.status, 0) << run.out << run.error;
    }

    // What is printed of scenes with and without mistakes, and of one that cannot be read.
    std::vector<std::string> PrintedAs(std::vector<std::string> const& options)
    {
        std::vector<std::string> texts;
        for (std::string const& scene : {kMistakes, kClean, Unread(2), std::string("<Scene>")})
            texts.push_back(Check(scene, options).out);
        return texts;
    }

    void ExpectValid(std::string const& json, std::string const& schema)
    {
        m_folder.Write("findings.json", json);
        ToolRun const run = RunProgram({KVR_PYTHON, "-B", KVR_VALIDATE_DUMPS, schema, Path("findings.json")});
        EXPECT_EQ(run.status, 0) << run.out << run.error;
    }

    std::string Content(std::string const& name) const
    {
        std::ifstream file(Path(name), std::ios::binary);
        std::ostringstream content;
        content << file.rdbuf();
        return content.str();
    }

    // What is left of a scene when patch(1) has applied the changes.
    std::string Repaired(std::string const& scene)
    {
        m_folder.Write("fix.diff", Check(scene, {"--fix"}).out);
        ToolRun const run =
            RunProgram({"/usr/bin/patch", "-p0", "--no-backup-if-mismatch", Path("gate.xml"), Path("fix.diff")});
        EXPECT_EQ(run.status, 0) << run.out << run.error;
        return Content("gate.xml");
    }

    TempFolder m_folder;
};

}  // namespace

TEST_F(CheckForms, TextShowsTheLineWithACaret)
{
    ToolRun const run = Check(kMistakes);
    EXPECT_EQ(run.status, 1) << run.error;
    EXPECT_THAT(run.out, HasSubstr("error K-0105 attribute-misspelt: "));
    EXPECT_THAT(run.out, HasSubstr(Path("gate.xml") + ":3:21: label=\"gate\", of a\n"
                                                      "      3 |   <IAssembly ID=\"a\" label=\"gate\"><Unit"));
    EXPECT_THAT(run.out, HasSubstr("\n        |                     ^\n"));
    EXPECT_THAT(run.out, HasSubstr("    in: Scene/IAssembly[a]\n"));
    EXPECT_THAT(run.out, HasSubstr("    meant: Label\n"));
    EXPECT_THAT(run.out, HasSubstr(Path("gate.xml") + ": 4 errors\n"));
}

TEST_F(CheckForms, ACleanSceneIsSaidToBeOne)
{
    ToolRun const run = Check(kClean);
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, Path("gate.xml") + ": nothing found\n");
    EXPECT_EQ(run.error, "");
}

TEST_F(CheckForms, TenPlacesOfARuleAreShownUnlessAllAreWanted)
{
    ToolRun const run = Check(Unread(13));
    EXPECT_THAT(run.out, HasSubstr("(13 places)"));
    EXPECT_THAT(run.out, HasSubstr("Colour9=\"red\", of"));
    EXPECT_THAT(run.out, Not(HasSubstr("Colour10=\"red\", of")));
    EXPECT_THAT(run.out, HasSubstr("  and 3 more; --all shows them\n"));
    EXPECT_THAT(Check(Unread(10)).out, Not(HasSubstr("more")));
    EXPECT_THAT(Check(Unread(13), {"--all"}).out, HasSubstr("Colour12=\"red\", of"));
}

TEST_F(CheckForms, TheExcerptOfALongLineIsCutAroundThePlace)
{
    std::string const out = Check(Unread(40), {"--all"}).out;
    std::istringstream lines(out);
    std::string excerpt;
    for (std::string line; std::getline(lines, line);)
    {
        std::size_t const caret = line.find('^');
        if (line.find("| ") != std::string::npos && caret != std::string::npos)
        {
            EXPECT_EQ(excerpt.substr(caret, 6), "Colour") << excerpt;
        }
        EXPECT_LT(line.size(), 200U);
        excerpt = line;
    }
}

TEST_F(CheckForms, ColoursAreForTerminals)
{
    EXPECT_THAT(Check(kMistakes).out, Not(HasSubstr("\x1b")));
    EXPECT_THAT(Check(kMistakes, {"--color", "always"}).out, HasSubstr("\x1b[1;31merror\x1b[0m"));
    EXPECT_THAT(RunToolOnTerminal({"check", Path("gate.xml")}).out, HasSubstr("\x1b[1;31merror"));
}

TEST_F(CheckForms, WhatASceneSaysCannotWriteToATerminal)
{
    std::string const out = Check(Scene("  <IAssembly ID=\"a\" Label=\"\" X=\"&#x9b;31m\"/>\n")).out;
    EXPECT_THAT(out, HasSubstr("X="));
    EXPECT_THAT(out, Not(HasSubstr("\xc2\x9b")));
}

TEST_F(CheckForms, JsonIsAsItsSchemaSays)
{
    std::vector<std::string> const texts = PrintedAs({"--json", "--account"});
    ExpectValid(texts, KVR_DOCS_DIR "/check.schema.json");
    nlohmann::json const json = nlohmann::json::parse(texts.front());
    nlohmann::json const& found = json["Scenes"][0]["Findings"][0];
    EXPECT_EQ(json["Scenes"][0]["Errors"], 4);
    EXPECT_EQ(found["Rule"], "K-0105");
    EXPECT_EQ(found["Line"], 3);
    EXPECT_EQ(found["Column"], 21);
    EXPECT_EQ(found["ObjectId"], "a");
    EXPECT_EQ(found["Meant"], "Label");
    EXPECT_EQ(kMistakes.substr(found["Begin"], 5), "label");
}

TEST_F(CheckForms, ASchemaRefusesOtherJson)
{
    m_folder.Write("findings.json", R"({"Scenes": [{"File": "a.xml"}]})");
    for (std::string const& schema : {std::string(KVR_DOCS_DIR "/check.schema.json"), std::string(KVR_SARIF_SCHEMA)})
        EXPECT_EQ(RunProgram({KVR_PYTHON, "-B", KVR_VALIDATE_DUMPS, schema, Path("findings.json")}).status, 1);
}

TEST_F(CheckForms, SarifIsAsItsPublishedSchemaSays)
{
    std::vector<std::string> texts = PrintedAs({"--sarif"});
    // A path that is no URI as it stands, and a place in bytes.
    texts.push_back(Check("<Scene><MeshInfo GenerateMesh=\"True\" Path=\"a name/50%\"/></Scene>", {"--sarif"}).out);
    ExpectValid(texts, KVR_SARIF_SCHEMA);
    nlohmann::json const log = nlohmann::json::parse(texts.front());
    nlohmann::json const& run = log["runs"][0];
    EXPECT_EQ(run["tool"]["driver"]["rules"].size(), AllRules().size());
    ASSERT_EQ(run["results"].size(), 4U);
    for (nlohmann::json const& result : run["results"])
    {
        EXPECT_EQ(run["tool"]["driver"]["rules"][result["ruleIndex"].get<std::size_t>()]["id"], result["ruleId"]);
        EXPECT_EQ(result["level"], "error");
        EXPECT_THAT(result["locations"][0]["physicalLocation"]["artifactLocation"]["uri"].get<std::string>(),
                    StartsWith("file:///"));
        EXPECT_EQ(result["fixes"].size(), 1U);
    }
}

TEST_F(CheckForms, SarifOfBytesInASideFile)
{
    std::string store(8, '\0');
    store += std::string("\1\0\0\0\0\0\0\0", 8) + std::string(8, '\0');
    store += std::string(8, '\0') + std::string("\x9\0\0\0\0\0\0\0", 8) + std::string("\1\0\0\0\0\0\0\0m", 9);
    m_folder.Write("a b.mesh", store);
    ToolRun const run = Check("<Scene><MeshInfo GenerateMesh=\"True\" Path=\"a b.mesh\"/></Scene>",
                              {"--sarif", "--rule", "record-unknown"});
    nlohmann::json const results = nlohmann::json::parse(run.out)["runs"][0]["results"];
    ASSERT_EQ(results.size(), 1U);
    nlohmann::json const& place = results[0]["locations"][0]["physicalLocation"];
    EXPECT_THAT(place["artifactLocation"]["uri"].get<std::string>(), testing::EndsWith("/a%20b.mesh"));
    EXPECT_EQ(place["region"]["byteOffset"], 24);
    EXPECT_EQ(place["region"]["byteLength"], 25);
    ExpectValid({run.out}, KVR_SARIF_SCHEMA);
}

TEST_F(CheckForms, TheExitStatusGoesByTheSeverity)
{
    EXPECT_EQ(Check(kClean, {"--fail-on", "note"}).status, 0);
    EXPECT_EQ(Check(kMistakes).status, 1);
    EXPECT_EQ(Check(Unread(1)).status, 0);
    EXPECT_EQ(Check(Unread(1), {"--fail-on", "warning"}).status, 1);
    EXPECT_EQ(Check(Unread(1), {"--fail-on", "note"}).status, 1);
    EXPECT_EQ(Check(Unread(1), {"--fail-on", "error"}).status, 0);
    EXPECT_EQ(Check(kClean, {"--fail-on", "always"}).status, 2);
    EXPECT_EQ(Check("<Scene>").status, 1);
}

TEST_F(CheckForms, TheWorstOfSeveralScenesCounts)
{
    m_folder.Write("clean.xml", kClean);
    ToolRun const run = Check(kMistakes, {Path("clean.xml")});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.out, HasSubstr("gate.xml: 4 errors\n"));
    EXPECT_THAT(run.out, HasSubstr("clean.xml: nothing found\n"));
}

TEST_F(CheckForms, RulesAreChosenByIdOrName)
{
    EXPECT_THAT(Check(kMistakes, {"--rule", "K-0105"}).out, HasSubstr("gate.xml: 1 error\n"));
    EXPECT_THAT(Check(kMistakes, {"--rule", "K-0105", "--rule", "boolean-misread"}).out, HasSubstr(": 2 errors\n"));
    EXPECT_THAT(Check(kMistakes, {"--no-rule", "attribute-misspelt"}).out, HasSubstr("gate.xml: 3 errors\n"));
    ToolRun const run = Check(kMistakes, {"--rule", "K-0150"});
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.error, HasSubstr("there is no rule K-0150; did you mean K-01"));
}

TEST_F(CheckForms, FormsExcludeEachOther)
{
    EXPECT_EQ(Check(kClean, {"--json", "--sarif"}).status, 2);
    EXPECT_EQ(Check(kClean, {"--sarif", "--fix"}).status, 2);
    EXPECT_EQ(Check(kClean, {"--json", "--fix"}).status, 2);
}

TEST_F(CheckForms, WhatABaselineKnowsIsLeftOut)
{
    m_folder.Write("known.json", Check(kMistakes, {"--json"}).out);
    ToolRun const same = Check(kMistakes, {"--baseline", Path("known.json")});
    EXPECT_EQ(same.status, 0);
    EXPECT_EQ(same.out, Path("gate.xml") + ": nothing found; 4 known\n");
    // Lines that move change nothing.
    EXPECT_EQ(Check("\n\n" + kMistakes, {"--baseline", Path("known.json")}).status, 0);
    std::string more = kMistakes;
    more.replace(more.find("Label=\"plate\""), 5, "label");
    ToolRun const run = Check(more, {"--baseline", Path("known.json")});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.out, HasSubstr(": 1 error; 4 known\n"));
    EXPECT_THAT(run.out, HasSubstr("of p\n"));
}

TEST_F(CheckForms, ABaselineKnowsEachFindingOnce)
{
    std::string const once = Scene("  <IAssembly ID=\"a\" Label=\"\"><Weight/></IAssembly>\n");
    m_folder.Write("known.json", Check(once, {"--json", "--rule", "K-0102"}).out);
    std::string const twice = Scene("  <IAssembly ID=\"a\" Label=\"\"><Weight/><Weight/></IAssembly>\n");
    EXPECT_THAT(Check(twice, {"--baseline", Path("known.json"), "--rule", "K-0102"}).out,
                HasSubstr(": 1 warning; 1 known\n"));
}

TEST_F(CheckForms, ABaselineThatIsNoneIsABadArgument)
{
    m_folder.Write("known.json", "{}");
    ToolRun const run = Check(kClean, {"--baseline", Path("known.json")});
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.error, HasSubstr("known.json: it is no baseline"));
    EXPECT_EQ(Check(kClean, {"--baseline", Path("nothing.json")}).status, 2);
}

TEST_F(CheckForms, FixesApplyWithPatch)
{
    EXPECT_EQ(Repaired(kMistakes), kClean);
    EXPECT_EQ(Check(kClean, {"--fix"}).out, "");
}

TEST_F(CheckForms, FixesApplyWithoutALineEndWithManyLinesAndBetweenThem)
{
    std::string const lines(40, '\n');
    auto const spread = [&](std::string scene)
    {
        for (char const* const tag : {"  <IAssembly", "    <IInstance", "  <IPart"})
            scene.insert(scene.find(tag), lines);
        return scene.substr(0, scene.find("</Scene>")) + "</Scene>";
    };
    EXPECT_EQ(Repaired(spread(kMistakes)), spread(kClean));
    // No line comes or goes, so that both files have them at the same numbers.
    std::string const diff = Content("fix.diff");
    std::regex const hunk("@@ -(\\d+,\\d+) \\+(\\d+,\\d+) @@");
    std::size_t hunks = 0;
    for (std::sregex_iterator at(diff.begin(), diff.end(), hunk), end; at != end; ++at, ++hunks)
        EXPECT_EQ((*at)[1], (*at)[2]);
    EXPECT_EQ(hunks, 2U);
    std::string const oneLine =
        "<Scene><IFile ID=\"f\" IsRoot=\"1\"><ChildSet><Child ID=\"p\"/></ChildSet></IFile>"
        "<IPart ID=\"p\" label=\"ä &lt; b\"><Unit LengthUnit=\"kUnitType_inch\"/><styles/></IPart></Scene>";
    std::string const repaired =
        "<Scene><IFile ID=\"f\" IsRoot=\"1\"><ChildSet><Child ID=\"p\"/></ChildSet></IFile>"
        "<IPart ID=\"p\" Label=\"ä &lt; b\"><Unit LengthUnit=\"kUnitType_Inch\"/><Styles/></IPart></Scene>";
    EXPECT_EQ(Repaired(oneLine), repaired);
}

TEST_F(CheckForms, NothingIsFoundInWhatImportMakesOfModels)
{
    for (std::string const name : {"as1-oc-214", "nist_plate_creo_lbls"})
    {
        std::string const scene = Path(name + ".xml");
        std::string const model = std::string(KVR_EXAMPLES_DIR) + "/models/" + name + ".stp";
        ToolRun const import = RunTool({"import", "--quiet", model, scene});
        ASSERT_EQ(import.status, 0) << import.error;
        ToolRun const run = RunTool({"check", "--fail-on", "note", scene});
        EXPECT_EQ(run.status, 0) << run.out;
        // A file of it that was changed afterwards is told from the one that was written.
        std::string mesh = Content(name + ".xml.mesh");
        ++mesh.front();
        m_folder.Write(name + ".xml.mesh", mesh);
        ToolRun const changed = RunTool({"check", scene});
        EXPECT_THAT(changed.out, HasSubstr("K-0319 side-file-changed"));
        EXPECT_THAT(changed.out, HasSubstr(".xml: 1 error\n"));
    }
}

TEST_F(CheckForms, WithoutASceneTheArgumentsAreBad)
{
    EXPECT_EQ(RunTool({"check"}).status, 2);
    ToolRun const run = RunTool({"check", Path("nothing.xml")});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.out, HasSubstr("K-0101"));
}

}  // namespace KVR::Test

// What a scene makes of one object, and why.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "inspect/Explain.h"
#include "tests/support/TempFolder.h"
#include "tests/tool/ToolRun.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr char kComplete[] = KVR_EXAMPLES_DIR "/complete/complete.xml";

struct Explained : Explanation
{
    Explained(std::string const& scene, std::string const& name, ExplainOptions const& options = {})
    {
        folder.Write("s.xml", scene);
        static_cast<Explanation&>(*this) = ExplainObject(folder.NarrowPathOf("s.xml"), name, options);
    }
    TempFolder folder;
};

// "source from=text (understood)" of an operation.
std::string SourceOf(Explanation const& explanation, std::string const& operation)
{
    for (ExplainedAnswer const& answer : explanation.answers)
    {
        if (answer.operation != operation)
            continue;
        std::string text = TextOf(answer.source);
        if (!answer.from.empty())
            text += " " + answer.from + "=" + answer.text;
        return answer.understood.empty() ? text : text + " (" + answer.understood + ")";
    }
    return "no such operation";
}

// Two assemblies around an instance, with what the outer one and the inner one say of it.
std::string Nested(std::string const& outer, std::string const& inner, std::string const& instance,
                   std::string const& part)
{
    auto const styleOf = [](std::string const& path, std::string const& style)
    {
        return "<CrossLevelAttributes><Styles><EntityStyles Path='" + path + "'><Styles><StyleRef ID='" + style +
               "'/></Styles></EntityStyles></Styles></CrossLevelAttributes>";
    };
    std::string text =
        "<S><IFile ID='f' IsRoot='1'><AttributeSet><StyleSet><IRenderStyle ID='red' Label='Red'/>"
        "<IRenderStyle ID='blue' Label='Blue'/><IRenderStyle ID='grey' Label='Grey'/></StyleSet></AttributeSet>"
        "<ChildSet><C ID='top'/></ChildSet></IFile><IAssembly ID='top' Label=''>";
    if (!outer.empty())
        text += styleOf("[in][i]", outer);
    text +=
        "<ChildSet><IInstance ID='in' Visibility='1'><Child ID='mid'/></IInstance></ChildSet></IAssembly>"
        "<IAssembly ID='mid' Label=''>";
    if (!inner.empty())
        text += styleOf("[i]", inner);
    text += "<ChildSet><IInstance ID='i' Visibility='1'><Child ID='p'/>";
    if (!instance.empty())
        text += "<Styles><StyleRef ID='" + instance + "'/></Styles>";
    text += "</IInstance></ChildSet></IAssembly><IPart ID='p' Label=''>";
    if (!part.empty())
        text += "<Styles><StyleRef ID='" + part + "'/></Styles>";
    return text + "<ChildSet><IPoint ID='o'><Point X='1' Y='2' Z='3'/></IPoint></ChildSet></IPart></S>";
}

std::string StyleOf(std::string const& scene, std::string const& id)
{
    Explained const explained(scene, id);
    return explained.occurrences.size() == 1
               ? explained.occurrences[0].style + ": " + explained.occurrences[0].styleReason
               : "no occurrence";
}

}  // namespace

TEST(Explain, EachAnswerFollowsWhatItIsReadOf)
{
    Explained const explained(
        "<S><IFile ID='f' IsRoot='1'><ChildSet><C ID='a'/></ChildSet></IFile><IAssembly ID='a' Label=''><ChildSet>\n"
        "<IInstance ID='i' Label='Left' Visibility='yes'\n NetVisibility='1'>\n"
        "<Child ID='p' Transformation='1 0 0 5 0 1 0 0 0 0 1 0 0 0 0 1'/>\n<Unit LengthUnit='kUnitType_Furlong'/>\n"
        "</IInstance></ChildSet></IAssembly><IPart ID='p' Label=''/></S>",
        "i");
    ASSERT_EQ(explained.problem, "");
    EXPECT_EQ(explained.className, "IInstance");
    EXPECT_EQ(explained.elementPath, "S/IAssembly[a]/ChildSet/IInstance[i]");
    EXPECT_EQ(explained.element.firstLine, 2U);
    EXPECT_EQ(explained.element.lastLine, 6U);
    EXPECT_EQ(SourceOf(explained, "Label"), "attribute Label=Left");
    EXPECT_EQ(SourceOf(explained, "IsVisible"), "attribute Visibility=yes (a boolean, read as false)");
    EXPECT_EQ(SourceOf(explained, "IsNetVisible"), "attribute NetVisibility=1 (a boolean, read as true)");
    EXPECT_EQ(SourceOf(explained, "TargetId"), "attribute Child/ID=p");
    EXPECT_THAT(SourceOf(explained, "Transform"), HasSubstr("attribute Child/Transformation=1 0 0 5"));
    EXPECT_THAT(SourceOf(explained, "Transform"), HasSubstr("(a transform of sixteen numbers)"));
    EXPECT_EQ(SourceOf(explained, "LengthUnit"),
              "attribute Unit/LengthUnit=kUnitType_Furlong (read as a unit, which it is not)");
    EXPECT_EQ(SourceOf(explained, "VersionPersistentId"), "default");
    EXPECT_EQ(SourceOf(explained, "Styles"), "default");
}

TEST(Explain, AnAttributeThatStatesTheDefaultIsTheSourceAllTheSame)
{
    auto const sourceOf = [](std::string const& attribute)
    {
        return SourceOf(Explained("<S><IPart ID='p' Label=''><ChildSet><IPoint ID='o' " + attribute +
                                      "><Point X='1' Y='2' Z='3'/></IPoint></ChildSet></IPart></S>",
                                  "o"),
                        "IsVisible");
    };
    EXPECT_EQ(sourceOf(""), "default");
    EXPECT_THAT(sourceOf("Visibility='0'"), HasSubstr("attribute Visibility=0 (a boolean, read as"));
    EXPECT_THAT(sourceOf("Visibility='1'"), HasSubstr("attribute Visibility=1 (a boolean, read as"));
}

TEST(Explain, StoresAndThePropertyFileAreSources)
{
    Explanation const body = ExplainObject(kComplete, "body");
    EXPECT_EQ(SourceOf(body, "Body"), "store");
    EXPECT_EQ(SourceOf(body, "PersistentIDsMap"), "store");
    EXPECT_EQ(SourceOf(body, "PropertyIds"), "property file");
    EXPECT_EQ(SourceOf(body, "AngularTolerance"), "attribute Tolerance/AngularTolerance=0.5 (a number)");
    EXPECT_EQ(SourceOf(body, "SrcGeomType"), "attribute Type=kProducerGeometryType_BrepSolid (one of several texts)");
    ASSERT_EQ(body.records.size(), 2U);
    EXPECT_THAT(body.records[0].place.file, testing::EndsWith("complete.sab"));
    Explanation const mesh = ExplainObject(kComplete, "mesh");
    ASSERT_EQ(mesh.records.size(), 2U);
    EXPECT_EQ(mesh.records[0].kind, "mesh");
    EXPECT_GT(mesh.records[0].place.end, mesh.records[0].place.begin);
    EXPECT_EQ(mesh.records[1].kind, "segments");
    EXPECT_EQ(SourceOf(mesh, "VertexCount"), "store");
    EXPECT_EQ(SourceOf(mesh, "LODId"), "attribute LODID=coarse");
}

TEST(Explain, EveryObjectOfTheCompleteSceneHasKnownSources)
{
    std::vector<std::string> const ids = {"file",   "placed", "curve", "view",   "camera",
                                          "sketch", "note",   "plane", "texture"};
    for (std::string const& id : ids)
    {
        Explanation const explained = ExplainObject(kComplete, id);
        EXPECT_EQ(explained.problem, "") << id;
        EXPECT_FALSE(explained.answers.empty()) << id;
        EXPECT_GT(explained.referenceCount + (id == "file" ? 1U : 0U), 0U) << id;
        for (ExplainedAnswer const& answer : explained.answers)
            EXPECT_NE(answer.source, AnswerSource::kUnknown) << id << " " << answer.operation;
    }
}

TEST(Explain, TellsWhoNamesTheObject)
{
    Explanation const steel = ExplainObject(kComplete, "steel");
    EXPECT_EQ(steel.referenceCount, 6U);
    std::vector<std::string> named;
    for (ExplainedReference const& reference : steel.references)
        if (reference.id == "body")
            named = reference.operations;
    EXPECT_THAT(named, ElementsAre("Styles", "StylesMap"));
    std::map<std::string, std::vector<std::string>> namers;
    for (ExplainedReference const& reference : ExplainObject(kComplete, "placed").references)
        namers[reference.id] = reference.operations;
    EXPECT_THAT(namers["assembly"],
                ElementsAre("Children", "CrossLevelVisibilities", "CrossLevelStyles", "CrossLevelTransforms"));
    EXPECT_THAT(namers["view"], ElementsAre("ViewMembers"));
    EXPECT_THAT(namers["override"], ElementsAre("BaseOccPaths"));
    ExplainOptions options;
    options.most = 2;
    Explanation const few = ExplainObject(kComplete, "steel", options);
    EXPECT_EQ(few.referenceCount, 6U);
    EXPECT_EQ(few.references.size(), 2U);
    EXPECT_THAT(few.occurrences, IsEmpty());
}

TEST(Explain, OccurrencesAreCountedAndTheFirstListed)
{
    std::string const as1 = KVR_EXAMPLES_DIR "/as1-oc-214/as1-oc-214.xml";
    ExplainOptions options;
    options.most = 3;
    Explanation const nut = ExplainObject(as1, "part5", options);
    EXPECT_EQ(nut.occurrenceCount, 8U);
    ASSERT_EQ(nut.occurrences.size(), 3U);
    EXPECT_EQ(nut.occurrences[2].path, "asm1/inst2/inst8/inst13");
    Explanation const one = ExplainObject(as1, "asm1/inst2/inst9/inst13");
    EXPECT_EQ(one.id, "inst13");
    ASSERT_EQ(one.occurrenceCount, 1U);
    EXPECT_EQ(one.occurrences[0].path, "asm1/inst2/inst9/inst13");
    EXPECT_EQ(ExplainObject(as1, "inst9/inst13/mesh2").occurrenceCount, 2U);
    EXPECT_EQ(ExplainObject(as1, "inst3/inst13").problem, "inst13 does not occur at inst3/inst13");
}

TEST(Explain, TellsWhichStyleAppliesAndWhy)
{
    EXPECT_EQ(StyleOf(Nested("red", "blue", "grey", "grey"), "i"),
              "red: an override of the assembly top gives it to the instance i");
    EXPECT_EQ(StyleOf(Nested("", "blue", "grey", "grey"), "i"),
              "blue: an override of the assembly mid gives it to the instance i");
    EXPECT_EQ(StyleOf(Nested("", "", "grey", "blue"), "o"), "grey: the instance i has it, and all below looks so");
    EXPECT_EQ(StyleOf(Nested("", "", "", "blue"), "p"), "blue: it is its own, and nothing above it says otherwise");
    EXPECT_EQ(StyleOf(Nested("", "", "", "blue"), "o"), "blue: it is that of the component p, the nearest with any");
    EXPECT_EQ(StyleOf(Nested("", "", "", ""), "o"), ": nothing from the root to it has a style");
}

TEST(Explain, TellsWhatHidesAnOccurrenceAndWhatPlacesIt)
{
    Explanation const placed = ExplainObject(kComplete, "placed");
    ASSERT_EQ(placed.occurrences.size(), 1U);
    EXPECT_FALSE(placed.occurrences[0].isVisible);
    EXPECT_EQ(placed.occurrences[0].visibilityReason, "an override of the assembly assembly hides the instance placed");
    EXPECT_EQ(placed.occurrences[0].placeReason, "an override of the assembly assembly places it");
    std::string scene = Nested("", "", "", "");
    scene.replace(scene.find("'i' Visibility='1'"), 18, "'i' Visibility='0'");
    Explained const hidden(scene, "o");
    ASSERT_EQ(hidden.occurrences.size(), 1U);
    EXPECT_EQ(hidden.occurrences[0].visibilityReason, "hidden by itself: the instance i");
    EXPECT_EQ(hidden.occurrences[0].placeReason, "its own transform places it in its component");
}

TEST(Explain, AnUnknownIdNamesTheNearest)
{
    EXPECT_THAT(ExplainObject(kComplete, "stel").nearest, ElementsAre("steel"));
    EXPECT_THAT(ExplainObject(kComplete, "Bracket").nearest, ElementsAre("assembly"));
    EXPECT_THAT(ExplainObject(kComplete, "xyzzy-xyzzy").nearest, IsEmpty());
    Explanation const none = ExplainObject(kComplete, "xyzzy-xyzzy");
    EXPECT_EQ(none.problem, "no object has the id xyzzy-xyzzy");
    EXPECT_TRUE(none.isParsed);
}

TEST(Explain, OfAnyPrefixOfASceneDoesNoHarm)
{
    std::ifstream file(kComplete, std::ios::binary);
    std::ostringstream content;
    content << file.rdbuf();
    std::string const whole = content.str();
    for (std::size_t size = 0; size < whole.size(); size += 997)
        EXPECT_FALSE(Explained(whole.substr(0, size), "body").isParsed);
}

TEST(Explain, ObjectsInCyclesAndDeepNestsAreExplained)
{
    EXPECT_EQ(Explained("<S><IAssembly ID='a' Label=''><ChildSet><IInstance ID='i'><Child ID='a'/></IInstance>"
                        "</ChildSet></IAssembly></S>",
                        "a")
                  .problem,
              "");
    std::string deep;
    for (int i = 0; i < 5000; ++i)
        deep += "<D>";
    deep += "x";
    for (int i = 0; i < 5000; ++i)
        deep += "</D>";
    EXPECT_EQ(Explained("<S><IPart ID='p' Label='deep'>" + deep + "</IPart></S>", "p").label, "deep");
}

TEST(Explain, TheProgramPrintsItAndLeavesNothingBehind)
{
    TempFolder const temporary;
    ASSERT_EQ(::setenv("TMPDIR", temporary.Path().c_str(), 1), 0);
    ToolRun const run = RunTool({"explain", kComplete, "body"});
    ToolRun const json = RunTool({"explain", "--json", kComplete, "placed"});
    ::unsetenv("TMPDIR");
    EXPECT_TRUE(std::filesystem::is_empty(temporary.Path()));
    EXPECT_EQ(run.status, 0) << run.error;
    EXPECT_THAT(run.out, HasSubstr("IBrep \"Body\" body\n"));
    std::ifstream file(kComplete, std::ios::binary);
    std::string const scene{std::istreambuf_iterator<char>(file), {}};
    std::size_t const begin = scene.find("<IBrep ID=\"body\"");
    std::size_t const end = scene.find("</IBrep>", begin) + 8;
    auto const lineAt = [&](std::size_t at)
    { return std::to_string(std::count(scene.begin(), scene.begin() + static_cast<std::ptrdiff_t>(at), '\n') + 1); };
    EXPECT_THAT(run.out,
                HasSubstr("complete.xml:" + lineAt(begin) + "-" + lineAt(end) + ", bytes " + std::to_string(begin) +
                          " to " + std::to_string(end) + ": Scene/IPart[part]/ChildSet/IBrep[body]\n"));
    EXPECT_THAT(run.out, HasSubstr("<- attribute Visibility=\"1\" (a boolean, read as true)\n"));
    EXPECT_THAT(run.out, HasSubstr("\nnamed by 3 objects\n"));
    EXPECT_THAT(run.out, HasSubstr("    style oak \"Oak\": an override of the assembly assembly gives it"));
    TempFolder const folder;
    folder.Write("e.json", json.out);
    std::string const schema = KVR_DOCS_DIR "/explain.schema.json";
    ToolRun const valid = RunProgram({KVR_PYTHON, "-B", KVR_VALIDATE_DUMPS, schema, folder.NarrowPathOf("e.json")});
    EXPECT_EQ(valid.status, 0) << valid.out;
    auto parsed = nlohmann::json::parse(json.out);
    EXPECT_EQ(parsed["Occurrences"][0]["Style"], "oak");
    parsed.erase("Answers");
    folder.Write("e.json", parsed.dump());
    EXPECT_EQ(RunProgram({KVR_PYTHON, "-B", KVR_VALIDATE_DUMPS, schema, folder.NarrowPathOf("e.json")}).status, 1);
}

TEST(Explain, TheProgramComplainsOfWhatThereIsNot)
{
    EXPECT_THAT(RunTool({"explain", kComplete, "stel"}).error,
                HasSubstr("complete.xml: no object has the id stel; did you mean steel?\n"));
    EXPECT_THAT(RunTool({"explain", "/nowhere/s.xml", "a"}).error, HasSubstr("cannot be read: No such file"));
    ToolRun const large = RunTool({"explain", "--max-memory", "1MB", kComplete, "body"});
    EXPECT_EQ(large.status, 1);
    EXPECT_THAT(large.error, HasSubstr("--max-memory allows 1.00 MB"));
    EXPECT_THAT(RunTool({"check", "--max-memory", "1MB", kComplete}).error, HasSubstr("--max-memory allows 1.00 MB"));
}

}  // namespace KVR::Test

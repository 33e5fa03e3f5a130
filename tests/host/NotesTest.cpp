#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "tests/support/TempFolder.h"
#include "tests/tool/ToolRun.h"

namespace KVR::Test
{

namespace
{

using nlohmann::json;
using testing::HasSubstr;
using testing::Not;

constexpr char kScene[] = R"(<Scene>
  <IFile ID="f" Label="file"><ChildSet><C ID="a" Type="IAssembly"/></ChildSet></IFile>
  <IAssembly ID="a" Label="gate"><ChildSet>
    <IInstance ID="i1" Visibility="1"><Child ID="door"/></IInstance>
    <IInstance ID="i2" Visibility="1"><Child ID="door"/></IInstance></ChildSet></IAssembly>
  <IPart ID="door" Label="door"><ChildSet><IPoint ID="hole" Label="hole 3"/>
    <IAnnotationCallout ID="n1" Label="edge">
      <IText><ITextLine><ITextFragment Value="Deburr " IsBold="True"/><ITextFragment Value="all edges" IsItalic="True"/>
        <ITextFragment Value="!" IsBold="False"/></ITextLine><ITextLine/>
        <ITextLine><ITextFragment Value="R 0.5 &quot;max&quot; \ &#x202E;x&#10;y"/></ITextLine></IText>
      <AnnotationPlane><IWorkPlane ID="w" Label="front"><Origin X="1" Y="2.5"/><Normal Z="1"/></IWorkPlane>
      </AnnotationPlane>
      <ChildSet><Child ID="hole"/><IAnnotationCalloutElement ID="e" Label="leader"><ChildSet><IPoint ID="q"/></ChildSet>
      </IAnnotationCalloutElement></ChildSet></IAnnotationCallout>
    <IAnnotationCallout ID="n2" Label="" Visibility="0"/></ChildSet></IPart>
  <IAnnotationCallout ID="far" Label="apart"><AnnotationPlane><Child ID="door"/></AnnotationPlane></IAnnotationCallout>
</Scene>)";

struct NotesRun : ToolRun
{
    explicit NotesRun(std::string const& xml, std::vector<std::string> options = {})
    {
        folder.Write("scene.xml", xml);
        options.insert(options.begin(), {"notes", folder.NarrowPathOf("scene.xml")});
        static_cast<ToolRun&>(*this) = RunTool(options);
    }
    TempFolder folder;
};

}  // namespace

TEST(Notes, EachCalloutIsShownOnceWithTextPlaneAndTargets)
{
    NotesRun const run(kScene);
    EXPECT_EQ(run.status, 0) << run.error;
    EXPECT_EQ(run.out,
              "Deburr all edges! /  / R 0.5 \"max\" \\ \\u202ex\\ny: IAnnotationCallout \"edge\" n1, visible\n"
              "  plane: IWorkPlane \"front\" w, origin 1 2.5 0, normal 0 0 1\n"
              "  points at:\n"
              "    IPoint \"hole 3\" hole\n"
              "    IAnnotationCalloutElement \"leader\" e\n"
              "IAnnotationCallout \"\" n2, hidden\n"
              "2 notes\n");
}

TEST(Notes, CurvesAreShownWhenAsked)
{
    EXPECT_THAT(NotesRun(kScene, {"--curves"}).out,
                HasSubstr("    IAnnotationCalloutElement \"leader\" e\n      IPoint \"\" q\n"));
}

TEST(Notes, TheFirstLineHasTheValuesBehindTheText)
{
    constexpr std::string_view kBegin =
        R"(<S><IFile ID="f"><ChildSet><C ID="p" Type="IPart"/></ChildSet></IFile><IPart ID="p"><ChildSet>
        <IAnnotationCallout ID="n" Label="d"><IText><ITextLine><ITextFragment Value="diameter 35"/></ITextLine></IText>
        <ExtensionData TypeId="kvr.annotation.kind" Content="dimension"/><ExtensionData TypeId="kvr.annotation.details")";
    constexpr std::string_view kEnd = "/></IAnnotationCallout></ChildSet></IPart></S>";
    auto const scene = [&](std::string const& details)
    { return std::string(kBegin) + " Content='" + details + "'" + std::string(kEnd); };
    std::string const good =
        scene(R"({"value":35,"minus":0.2,"plus":0.1,"fitOf":"hole","zone":"cylindrical or circular",
        "projection":4,"target":"1","targetType":"rectangle","targetLength":2.5,"modifiers":["free state",7,"all over"]})");
    EXPECT_THAT(NotesRun(good).out,
                HasSubstr("diameter 35 -0.2 +0.1, hole, cylindrical or circular, projected 4, target 1 rectangle, "
                          "length 2.5, free state, all over: IAnnotationCallout \"d\" n, visible\n"));
    json const note = json::parse(NotesRun(good, {"--json"}).out)["Notes"][0];
    EXPECT_EQ(note["Kind"], "dimension");
    EXPECT_EQ(note["Details"]["minus"], 0.2);
    EXPECT_EQ(note["Details"]["modifiers"], json({"free state", "all over"}));
    // What is copied goes down level by level: a million of them would end the program.
    std::string const deep = R"({"minus":0.2,"plus":0.1,"x":)" + std::string(300, '[') + std::string(300, ']') + "}";
    for (std::string const& bad : {std::string(), std::string("[1,2]"),
                                   std::string(R"({"minus":"x","modifiers":3,"lower":null})"), std::string("{"), deep})
        EXPECT_THAT(NotesRun(scene(bad)).out, HasSubstr("diameter 35: IAnnotationCallout \"d\" n, visible\n")) << bad;
}

TEST(Notes, BoldAndItalicAreMarkedOnATerminalAlone)
{
    EXPECT_THAT(NotesRun(kScene).out, Not(HasSubstr("\x1b")));
    EXPECT_THAT(NotesRun(kScene, {"--color", "never"}).out, Not(HasSubstr("\x1b")));
    EXPECT_THAT(NotesRun(kScene, {"--color", "always"}).out,
                HasSubstr("\x1b[1mDeburr \x1b[0m\x1b[3mall edges\x1b[0m! / "));
}

TEST(Notes, JsonHasTheSameFacts)
{
    NotesRun const run(kScene, {"--json"});
    EXPECT_EQ(run.status, 0);
    json const document = json::parse(run.out);
    EXPECT_EQ(document["NoteCount"], 2);
    json const& note = document["Notes"][0];
    EXPECT_EQ(note["Id"], "n1");
    EXPECT_EQ(note["Label"], "edge");
    EXPECT_EQ(note["Visible"], true);
    EXPECT_EQ(note["Text"], "Deburr all edges!\n\nR 0.5 \"max\" \\ \xE2\x80\xAEx\ny");
    EXPECT_EQ(note["Plane"]["Kind"], "IWorkPlane");
    EXPECT_EQ(note["Plane"]["Origin"], json({1, 2.5, 0}));
    EXPECT_EQ(note["Plane"]["Normal"], json({0, 0, 1}));
    EXPECT_TRUE(note["Plane"]["Reference"].is_null());
    EXPECT_EQ(note["PointsAt"][0],
              (json{{"Kind", "IPoint"}, {"Label", "hole 3"}, {"Id", "hole"}, {"Children", json::array()}}));
    EXPECT_EQ(note["PointsAt"][1]["Children"][0], (json{{"Kind", "IPoint"}, {"Label", ""}, {"Id", "q"}}));
    json const& hidden = document["Notes"][1];
    EXPECT_EQ(hidden["Visible"], false);
    EXPECT_TRUE(hidden["Text"].is_null());
    EXPECT_TRUE(hidden["Plane"].is_null());
    EXPECT_TRUE(hidden["PointsAt"].empty());
}

TEST(Notes, ACalloutThatNothingListsIsFoundByItsId)
{
    NotesRun const run(kScene, {"--id", "far", "--id", "nowhere"});
    EXPECT_THAT(run.out,
                HasSubstr("IAnnotationCallout \"apart\" far, visible\n  plane: IPart \"door\" door\n3 notes\n"));
}

TEST(Notes, ASceneWithoutNotesSaysSo)
{
    NotesRun const run("<S><IFile ID='f'/></S>");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, "0 notes\n");
    EXPECT_EQ(json::parse(NotesRun("<S><IFile ID='f'/></S>", {"--json"}).out),
              (json{{"Notes", json::array()}, {"NoteCount", 0}}));
}

TEST(Notes, WithoutARootOrABadSceneItFailsWithOneSentence)
{
    for (char const* const xml : {"<S><IAnnotationCallout ID='n'/></S>", "<S>", "<!DOCTYPE S []><S/>"})
    {
        NotesRun const run(xml);
        EXPECT_EQ(run.status, 1) << xml;
        EXPECT_EQ(run.out, "") << xml;
        EXPECT_EQ(std::count(run.error.begin(), run.error.end(), '\n'), 1) << xml;
    }
    EXPECT_EQ(NotesRun("<S><IAnnotationCallout ID='n'/></S>", {"--id", "n"}).status, 0);
    EXPECT_EQ(RunTool({"notes"}).status, 2);
    EXPECT_EQ(NotesRun(kScene, {"--color", "blue"}).status, 2);
}

TEST(Notes, APrefixGivesNewIds)
{
    EXPECT_THAT(NotesRun(kScene, {"--prefix", "k"}).out, HasSubstr("IAnnotationCallout \"edge\" k"));
}

}  // namespace KVR::Test

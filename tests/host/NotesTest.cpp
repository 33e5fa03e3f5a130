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
              "IAnnotationCallout \"edge\" n1, visible\n"
              "  text:\n"
              "    Deburr all edges!\n"
              "    \n"
              "    R 0.5 \"max\" \\ \\u202ex\\ny\n"
              "  plane: IWorkPlane \"front\" w, origin 1 2.5 0, normal 0 0 1\n"
              "  points at:\n"
              "    IPoint \"hole 3\" hole\n"
              "    IAnnotationCalloutElement \"leader\" e\n"
              "      IPoint \"\" q\n"
              "IAnnotationCallout \"\" n2, hidden\n"
              "2 notes\n");
}

TEST(Notes, BoldAndItalicAreMarkedOnATerminalAlone)
{
    EXPECT_THAT(NotesRun(kScene).out, Not(HasSubstr("\x1b")));
    EXPECT_THAT(NotesRun(kScene, {"--color", "never"}).out, Not(HasSubstr("\x1b")));
    EXPECT_THAT(NotesRun(kScene, {"--color", "always"}).out,
                HasSubstr("    \x1b[1mDeburr \x1b[0m\x1b[3mall edges\x1b[0m!\n"));
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

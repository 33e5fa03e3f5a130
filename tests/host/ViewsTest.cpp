#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/host/OrganisationScene.h"
#include "tests/support/TempFolder.h"
#include "tests/tool/ToolRun.h"

namespace KVR::Test
{

namespace
{

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;

struct ViewsRun : ToolRun
{
    explicit ViewsRun(std::string const& xml, std::vector<std::string> options = {})
    {
        folder.Write("scene.xml", xml);
        options.insert(options.begin(), {"views", folder.NarrowPathOf("scene.xml")});
        static_cast<ToolRun&>(*this) = RunTool(options);
    }
    TempFolder folder;
};

// The cells of each line, which stand two or more blanks apart.
std::vector<std::vector<std::string>> CellsOf(std::string const& text)
{
    std::vector<std::vector<std::string>> rows(1);
    std::string cell;
    auto const endCell = [&]
    {
        if (!cell.empty())
            rows.back().push_back(cell);
        cell.clear();
    };
    for (std::size_t i = 0; i < text.size(); ++i)
    {
        if (text[i] == '\n')
        {
            endCell();
            rows.emplace_back();
        }
        else if (text[i] == ' ' && (cell.empty() || (i + 1 < text.size() && text[i + 1] == ' ')))
            endCell();
        else
            cell += text[i];
    }
    rows.pop_back();
    return rows;
}

std::string SceneWith(std::string const& attributeSet)
{
    return "<S><IFile ID='f' Label=''><AttributeSet>" + attributeSet + "</AttributeSet></IFile></S>";
}

TEST(Views, EveryViewAndCameraHasALine)
{
    ViewsRun const run(kOrganisationScene);
    ASSERT_EQ(run.status, 0) << run.error;
    auto const rows = CellsOf(run.out);
    ASSERT_EQ(rows.size(), 6U) << run.out;
    EXPECT_THAT(rows[0], ElementsAre("Kind", "Id", "Label", "Shown", "Type", "Unit", "Position", "Direction", "Members",
                                     "Hidden", "Planes", "Cameras"));
    EXPECT_THAT(rows[1], ElementsAre("view", "v1", "\"Front\"", "yes", "active", "Inch", "-", "-", "2", "1", "-",
                                     "k1, lost (missing)"));
    EXPECT_THAT(rows[2],
                ElementsAre("view", "v2", "\"Cut \\\"A\\\"\"", "no", "inactive", "-", "-", "-", "0", "0", "-", "-"));
    EXPECT_THAT(rows[3], ElementsAre("camera", "k1", "\"Eye\"", "-", "perspective", "Millimeter", "1, 2.5, -3",
                                     "0, 0, 1", "-", "-", "-", "-"));
    EXPECT_THAT(rows[4], ElementsAre("section camera", "k2", "\"Cut\"", "-", "parallel", "Unknown", "0, 0, 0",
                                     "0, 0, 0", "-", "-", "2", "-"));
    EXPECT_THAT(rows[5], ElementsAre("2 views, 2 cameras (1 section camera)"));
}

TEST(Views, ColumnsStandBelowTheirHeadsAlsoWhenALabelIsNotAscii)
{
    ViewsRun const run(SceneWith("<CameraSet><C ID='k' Label='\xC3\x9C\xC3\x96'/><C ID='l' Label='UO'/></CameraSet>"));
    std::size_t const first = run.out.find('\n') + 1;
    std::size_t const second = run.out.find('\n', first) + 1;
    std::size_t const third = run.out.find('\n', second);
    // Two letters of two bytes each.
    EXPECT_EQ(second - 1 - first, third - second + 2) << run.out;
}

TEST(Views, JsonHasTheSameFacts)
{
    ViewsRun const run(kOrganisationScene, {"--json"});
    ASSERT_EQ(run.status, 0) << run.error;
    json const views = json::parse(run.out);
    EXPECT_EQ(views["Totals"], (json{{"Views", 2}, {"Cameras", 2}, {"SectionCameras", 1}}));
    EXPECT_EQ(views["Views"][0], (json{{"Id", "v1"},
                                       {"Label", "Front"},
                                       {"IsVisible", true},
                                       {"IsActive", true},
                                       {"LengthUnit", "kUnitType_Inch"},
                                       {"ViewMemberCount", 2},
                                       {"HiddenMemberCount", 1},
                                       {"CameraSet", {"k1", "lost"}}}));
    EXPECT_EQ(views["Views"][1]["Label"], "Cut \"A\"");
    EXPECT_TRUE(views["Views"][1]["LengthUnit"].is_null());
    EXPECT_EQ(views["Cameras"][0], (json{{"Id", "k1"},
                                         {"Label", "Eye"},
                                         {"Class", "ICamera"},
                                         {"Type", "perspective"},
                                         {"LengthUnit", "kUnitType_Millimeter"},
                                         {"CameraPosition", {1, 2.5, -3}},
                                         {"CameraDirection", {0, 0, 1}},
                                         {"CameraUpDirection", {0, 1, 0}}}));
    json const& section = views["Cameras"][1];
    EXPECT_EQ(section["Class"], "ISectionCamera");
    EXPECT_EQ(section["SectionPlanes"].size(), 2U);
    EXPECT_EQ(section["SectionPlanes"][0]["Origin"], json({7, 0, 0}));
    EXPECT_EQ(section["SectioningOperations"], "AND");
}

TEST(Views, ASceneWithoutAnySaysSo)
{
    EXPECT_EQ(ViewsRun(SceneWith("")).out, "0 views, 0 cameras (0 section cameras)\n");
    json const views = json::parse(ViewsRun(SceneWith(""), {"--json"}).out);
    EXPECT_EQ(views["Views"], json::array());
    EXPECT_EQ(views["Cameras"], json::array());
}

TEST(Views, ACameraThatSeveralOwnersListHasOneLine)
{
    ViewsRun const run(
        "<S><IFile ID='f' Label=''><ChildSet><C ID='p'/></ChildSet><AttributeSet><CameraSet><C ID='k' Label=''/>"
        "</CameraSet></AttributeSet></IFile><IPart ID='p'><AttributeSet><CameraSet><C ID='k' Label=''/></CameraSet>"
        "</AttributeSet></IPart></S>");
    EXPECT_THAT(run.out, HasSubstr("0 views, 1 camera (0 section cameras)"));
}

TEST(Views, IdsAreTheNewOnesUnderAPrefix)
{
    ViewsRun const run(SceneWith("<CameraSet><C ID='k' Label=''/></CameraSet>"), {"--prefix", "n"});
    EXPECT_THAT(CellsOf(run.out)[1][1], "n2");
}

TEST(Views, NothingInATextReachesTheTerminal)
{
    ViewsRun const run(SceneWith("<CameraSet><C ID='k&#x9b;' Label='a&#10;b'/></CameraSet>"));
    EXPECT_EQ(run.out.find('\x9b'), std::string::npos);
    EXPECT_EQ(CellsOf(run.out).size(), 3U);
}

TEST(Views, ASceneThatCannotBeReadEndsWithASentence)
{
    ViewsRun const run("<S>");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_THAT(run.error, HasSubstr("scene.xml"));
}

TEST(Views, ASceneWithoutARootHasNoViewsToShow)
{
    ViewsRun const run("<S/>");
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.error, HasSubstr("no root file"));
}

TEST(Views, BadArgumentsAreRefused)
{
    EXPECT_EQ(RunTool({"views"}).status, 2);
    EXPECT_EQ(ViewsRun(SceneWith(""), {"--depth", "1"}).status, 2);
}

}  // namespace

}  // namespace KVR::Test

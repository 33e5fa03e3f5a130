// What is found of occurrence paths: whether there is what they name, and whether they lead to it.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/inspect/document/CheckedText.h"

namespace KVR::Test
{

namespace
{

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// A gate of two doors with a bolt and a hinge, whose pin has a body; with these attributes, in line 3, and with others
// of the door, in line 8. A second gate stands beside it.
std::string GateOf(std::string const& inGate, std::string const& inDoor = {})
{
    std::string const instance = "<IInstance Label='' Visibility='1' NetVisibility='1' ID=";
    return "<Scene>\n<IFile ID='f' Label='' IsRoot='1'><ChildSet><Child ID='gate'/><Child ID='other'/></ChildSet>"
           "</IFile><IAssembly ID='gate' Label=''>\n" +
           inGate + "\n<ChildSet>\n" + instance + "'door1'><Child ID='door'/></IInstance>" + instance +
           "'door2'><Child ID='door'/></IInstance><IAssemblyFeatureOverride ID='drilled' Label='' Visibility='1'>"
           "<BaseOccPaths><BaseOccPath Path='[door1]'/></BaseOccPaths></IAssemblyFeatureOverride>\n"
           "</ChildSet></IAssembly>\n<IAssembly ID='door' Label=''>\n" +
           inDoor + "\n<ChildSet>" + instance + "'bolt1'><Child ID='bolt'/></IInstance></ChildSet></IAssembly>\n" +
           "<IAssembly ID='other' Label=''><ChildSet>" + instance +
           "'lone'><Child ID='bolt'/></IInstance></ChildSet></IAssembly>\n"
           "<IPart ID='bolt' Label=''><ChildSet>\n"
           "<IPoint ID='tip' Label=''/><ISketch ID='sketch' Label='' SketchTypeEnum='kSketchType_2D'><ChildSet>"
           "<IPoint ID='dot'/></ChildSet></ISketch></ChildSet></IPart>\n</Scene>\n";
}

std::vector<std::string> FindingsIn(std::string const& text)
{
    CheckOptions options;
    options.rules = {"K-0110", "K-0117"};
    return CheckedText(text, &options).Findings();
}

std::string Visibilities(std::string const& path)
{
    return "<CrossLevelAttributes><Visibilities><EntityVisibility Visibility='1' Path='" + path +
           "'/></Visibilities></CrossLevelAttributes>";
}

std::string View(std::string const& path)
{
    return "<AttributeSet><ViewSet><IView ID='view' Label=''><ViewMember><ViewMemberChild><OccurrencePath Path='" +
           path + "'/></ViewMemberChild></ViewMember></IView></ViewSet></AttributeSet>";
}

std::string Data(std::string const& path, std::string const& type)
{
    return "<ExtensionData TypeId='t' Content='' OccurrencePath='" + path + "' Type='" + type + "'/>";
}

}  // namespace

TEST(PathCheck, IsSilentOnPathsThatLeadSomewhere)
{
    for (char const* const path :
         {"", "[door1]", "[door1][bolt1]", "[door2][door][bolt1]", "[door2][bolt1][bolt]", "[door1][bolt1][tip]",
          "[door1][bolt1][sketch][dot]", "[drilled]", "[door1][door1][bolt1]", "xdoor1]"})
        EXPECT_THAT(FindingsIn(GateOf(Visibilities(path))), IsEmpty()) << path;
}

TEST(PathCheck, FindsAnIdThatNothingHas)
{
    EXPECT_THAT(FindingsIn(GateOf(Visibilities("[door1][lost]"))), ElementsAre("K-0110 at 3: lost"));
    EXPECT_THAT(FindingsIn(GateOf(Visibilities("door1"))), ElementsAre("K-0110 at 3: door1"));
    EXPECT_THAT(FindingsIn(GateOf(Visibilities("[lost][bolt1][door1]"))), ElementsAre("K-0110 at 3: lost"));
}

TEST(PathCheck, FindsWhereAPathLeadsNoFurther)
{
    EXPECT_THAT(FindingsIn(GateOf(Visibilities("[bolt1]"))), ElementsAre("K-0117 at 3: bolt1"));
    EXPECT_THAT(FindingsIn(GateOf(Visibilities("[door]"))), ElementsAre("K-0117 at 3: door"));
    EXPECT_THAT(FindingsIn(GateOf(Visibilities("[gate][door1]"))), ElementsAre("K-0117 at 3: gate"));
    EXPECT_THAT(FindingsIn(GateOf(Visibilities("[lone]"))), ElementsAre("K-0117 at 3: lone"));
    EXPECT_THAT(FindingsIn(GateOf(Visibilities("[door1][door2]"))), ElementsAre("K-0117 at 3: door2"));
    EXPECT_THAT(FindingsIn(GateOf(Visibilities("[door1][bolt]"))), ElementsAre("K-0117 at 3: bolt"));
    EXPECT_THAT(FindingsIn(GateOf(Visibilities("[door1][bolt1][dot]"))), ElementsAre("K-0117 at 3: dot"));
    EXPECT_THAT(FindingsIn(GateOf(Visibilities("[door1][bolt1][tip][sketch]"))), ElementsAre("K-0117 at 3: sketch"));
    EXPECT_THAT(FindingsIn(GateOf({}, Visibilities("[door1][bolt1]"))), ElementsAre("K-0117 at 8: door1"));
}

TEST(PathCheck, SaysWhatThePathHasLedToAndWhatWasMeant)
{
    CheckedText const checked(GateOf(Visibilities("[door1][bolt]")));
    Finding const finding = checked.Only("K-0117");
    EXPECT_EQ(finding.readAs, "a path that has led to door, in which it does not stand");
    EXPECT_EQ(finding.meant, "bolt1");
    EXPECT_THAT(finding.reasons, ElementsAre("it is Scene/IPart[bolt]"));
    EXPECT_EQ(finding.objectId, "gate");
    EXPECT_EQ(CheckedText(GateOf(Visibilities("[bolt1]"))).Only("K-0117").readAs,
              "a path from gate, in which it does not stand");
}

TEST(PathCheck, LetsViewsSpeakFromTheRootOrFromWhereTheyStand)
{
    EXPECT_THAT(FindingsIn(GateOf({}, View("[door1][bolt1]"))), IsEmpty());
    EXPECT_THAT(FindingsIn(GateOf({}, View("[bolt1]"))), IsEmpty());
    EXPECT_THAT(FindingsIn(GateOf({}, View("[gate][door1]"))), IsEmpty());
    EXPECT_THAT(FindingsIn(GateOf({}, View("[lone]"))), IsEmpty());
    EXPECT_THAT(FindingsIn(GateOf({}, View("[door1][lone]"))), ElementsAre("K-0117 at 8: lone"));
    EXPECT_THAT(FindingsIn(GateOf({}, View("[tip]"))), ElementsAre("K-0117 at 8: tip"));
}

TEST(PathCheck, FollowsThePathsOfDataThatHaveOneThroughTheTree)
{
    EXPECT_THAT(FindingsIn(GateOf({}, Data("[tip]", "kObjectPathTypeEnum_OccurancePath"))),
                ElementsAre("K-0117 at 8: tip"));
    EXPECT_THAT(FindingsIn(GateOf({}, Data("[bolt1][tip]", "kObjectPathTypeEnum_OccurancePath"))), IsEmpty());
    EXPECT_THAT(FindingsIn(GateOf({}, Data("[tip]", "another"))), IsEmpty());
}

TEST(PathCheck, FollowsTheBaseOccurrencesOfAFeatureOverride)
{
    std::string text = GateOf({});
    text.replace(text.find("Path='[door1]'"), 14, "Any='[tip]'");
    EXPECT_THAT(FindingsIn(text), ElementsAre("K-0117 at 5: tip"));
}

TEST(PathCheck, LooksForFacesInTheBodiesOfWhatAPathLeadsTo)
{
    std::string const sub = "<IBrep ID='body' Label=''><Face ID='face'/></IBrep>";
    auto const text = [&](std::string const& path)
    {
        std::string scene = GateOf(Visibilities(path));
        return scene.insert(scene.find("<IPoint ID='tip'"), sub);
    };
    EXPECT_THAT(FindingsIn(text("[door1][bolt1][face]")), IsEmpty());
    EXPECT_THAT(FindingsIn(text("[door1][face]")), ElementsAre("K-0117 at 3: face"));
}

TEST(PathCheck, LeavesPathsThroughWhatIsMissingToOtherRules)
{
    std::string text = GateOf(Visibilities("[door1][bolt1]"));
    text.replace(text.find("<Child ID='door'/>"), 18, "<Child ID='nope'/>");
    for (std::string const& finding : FindingsIn(text))
        EXPECT_EQ(finding, "K-0110 at 5: nope");
    EXPECT_THAT(FindingsIn("<Scene><IAssembly ID='a' Label=''>" + View("[b]") +
                           "</IAssembly>\n<IPart ID='b' Label=''/></Scene>"),
                ElementsAre("K-0117 at 1: b"));
}

}  // namespace KVR::Test

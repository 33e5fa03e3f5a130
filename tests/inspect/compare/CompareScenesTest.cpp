// In what two scenes differ.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <numbers>
#include <string>
#include <vector>

#include "framework/api/Exception.h"
#include "inspect/Compare.h"
#include "tests/inspect/digest/RewrittenScene.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

// A scene that is told apart by its parts, each of which has a default.
struct Gate
{
    std::string unit = "kUnitType_Millimeter";
    std::string door = R"(<IInstance ID="i1" Label="left" Visibility="1"><Child ID="p"/></IInstance>)";
    std::string other = R"(<IInstance ID="i2" Label="right" Visibility="1"><Child ID="p"/></IInstance>)";
    std::string part = R"(<IPart ID="p" Label="door"><ChildSet>)";
    std::string geometry = R"(<IPoint ID="q" Label="hinge"><Point X="1" Y="0" Z="0"/></IPoint>)";
    std::string notes;
    std::string sets = R"(<StyleSet><IRenderStyle ID="red" Label="red"><DiffuseColor FractionRed="1" FractionGreen="0"
        FractionBlue="0"/></IRenderStyle><IRenderStyle ID="blue" Label="blue"/></StyleSet>)";
    std::string cross;
    std::string more;
    std::string file;
    std::string universe;

    std::string Text() const
    {
        return "<Scene>" + universe + R"(<IFile ID="f" Label="gate" IsRoot="1">)" + file +
               R"(<ChildSet><Child ID="a" Type="IAssembly"/></ChildSet></IFile><IAssembly ID="a" Label="gate">)" +
               R"(<Unit LengthUnit=")" + unit + R"("/><AttributeSet>)" + sets + "</AttributeSet>" + cross +
               "<ChildSet>" + door + other + "</ChildSet></IAssembly>" + part + geometry + notes +
               "</ChildSet></IPart>" + more + "</Scene>";
    }
};

SceneComparison Compared(Gate const& first, Gate const& second, std::string const& properties = {},
                         std::string const& otherProperties = {})
{
    TestScene one(first.Text());
    TestScene other(second.Text());
    if (!properties.empty())
        one.WithFile("scene.kvrproperty", properties);
    if (!otherProperties.empty())
        other.WithFile("scene.kvrproperty", otherProperties);
    one.Begin();
    other.Begin();
    return CompareScenes(one.Producer(), other.Producer());
}

// "kind path: what first -> second xN".
std::vector<std::string> Lines(SceneComparison const& comparison)
{
    std::vector<std::string> lines;
    for (SceneChange const& change : comparison.changes)
    {
        std::string line = std::string(TextOf(change.kind)) + " " + change.path + ":";
        if (!change.what.empty())
            line += " " + change.what;
        if (change.first != change.second)
            line += " " + change.first + " -> " + change.second;
        if (change.occurrences > 1)
            line += " x" + std::to_string(change.occurrences);
        lines.push_back(line);
    }
    return lines;
}

std::vector<std::string> LinesOf(Gate const& first, Gate const& second)
{
    return Lines(Compared(first, second));
}

std::string Instance(std::string const& id, std::string const& label, std::string const& target,
                     std::string const& transform = "1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1", std::string const& rest = {})
{
    return R"(<IInstance ID=")" + id + R"(" Label=")" + label + R"(" Visibility="1"><Child ID=")" + target +
           R"(" Transformation=")" + transform + R"("/>)" + rest + "</IInstance>";
}

}  // namespace

TEST(CompareScenes, FindsNothingInTheSameScene)
{
    SceneComparison const comparison = Compared({}, {});
    EXPECT_THAT(comparison.changes, IsEmpty());
    EXPECT_EQ(comparison.firstOccurrences, 4U);
    EXPECT_EQ(comparison.secondOccurrences, 4U);
    EXPECT_THAT(comparison.matched, ElementsAre(8, 0, 0, 0));
}

TEST(CompareScenes, FindsWhatWasAddedAndRemovedOnceWithAllBelowIt)
{
    Gate more;
    more.other += Instance("i3", "post", "post") + Instance("i4", "third", "p");
    more.more = R"(<IPart ID="post" Label="post"><ChildSet><IPoint ID="foot"/></ChildSet></IPart>)";
    EXPECT_THAT(LinesOf({}, more), ElementsAre("added gate/post:", "added gate/third:"));
    EXPECT_THAT(LinesOf(more, {}), ElementsAre("removed gate/post:", "removed gate/third:"));
    SceneComparison const comparison = Compared({}, more);
    EXPECT_EQ(comparison.changes[0].className, "IInstance");
    EXPECT_EQ(comparison.changes[0].secondId, "i3");
    EXPECT_EQ(comparison.changes[0].firstId, "");
    EXPECT_THAT(comparison.changes[0].secondPlace, ElementsAre("i3"));
    EXPECT_THAT(comparison.changes[0].firstPlace, IsEmpty());
}

TEST(CompareScenes, FindsGeometryThatWasAddedInEachOccurrence)
{
    Gate more;
    more.geometry += R"(<IPoint ID="lock" Label="lock"/>)";
    EXPECT_THAT(LinesOf({}, more), ElementsAre("added gate/left/lock: x2"));
}

TEST(CompareScenes, MeasuresHowFarSomethingMovedAndTurned)
{
    Gate first;
    first.unit = "kUnitType_Meter";
    Gate second = first;
    first.door = Instance("i1", "left", "p", "1 0 0 1 0 1 0 0 0 0 1 0 0 0 0 1");
    second.door = Instance("i1", "left", "p", "0 -1 0 1 1 0 0 3 0 0 1 4 0 0 0 1");
    SceneComparison const comparison = Compared(first, second);
    ASSERT_THAT(Lines(comparison), ElementsAre("moved gate/left: Transform"));
    EXPECT_DOUBLE_EQ(comparison.changes[0].distance.value(), 5.0);
    EXPECT_DOUBLE_EQ(comparison.changes[0].angle.value(), std::numbers::pi / 2);
    second.door = Instance("i1", "left", "p", "2 0 0 1 0 2 0 0 0 0 2 0 0 0 0 1");
    SceneComparison const stretched = Compared(first, second);
    EXPECT_DOUBLE_EQ(stretched.changes.at(0).distance.value(), 0.0);
    EXPECT_FALSE(stretched.changes[0].angle);
}

TEST(CompareScenes, FindsWhatWentToAnotherComponent)
{
    Gate first;
    first.more = R"(<IAssembly ID="b" Label="frame"><ChildSet><IPoint ID="z"/></ChildSet></IAssembly>)";
    first.other += Instance("i3", "frame", "b");
    Gate second = first;
    second.door = "";
    second.more =
        R"(<IAssembly ID="b" Label="frame"><ChildSet><IPoint ID="z"/>)" + first.door + "</ChildSet></IAssembly>";
    EXPECT_THAT(LinesOf(first, second), ElementsAre("moved gate/frame/left: component gate -> gate/frame"));
}

TEST(CompareScenes, FindsNewNamesStylesAndVisibility)
{
    Gate second;
    second.door = R"(<IInstance ID="i1" Label="wing" Visibility="0"><Child ID="p"/><Styles><StyleRef ID="red"/></Styles>
        </IInstance>)";
    EXPECT_THAT(LinesOf({}, second),
                ElementsAre("renamed gate/wing: Label left -> wing", "restyled gate/wing: Styles  -> red",
                            "hidden gate/wing: IsVisible true -> false"));
    EXPECT_THAT(LinesOf(second, {}), testing::Contains("shown gate/left: IsVisible false -> true"));
}

TEST(CompareScenes, FindsAStyleThatSaysSomethingElse)
{
    Gate second;
    second.sets.replace(second.sets.find("FractionGreen=\"0\""), 17, "FractionGreen=\"1\"");
    EXPECT_THAT(LinesOf({}, second), ElementsAre("restyled red: DiffuseColor [1, 0, 0, 1] -> [1, 1, 0, 1]"));
}

TEST(CompareScenes, FindsWhatAnAssemblySaysOfOccurrences)
{
    Gate first;
    first.cross = R"(<CrossLevelAttributes><Visibilities><EntityVisibility Path="[i1]" Visibility="0"/></Visibilities>
        <Transformations><EntityTransformation Path="[i2]" Transformation="1 0 0 5 0 1 0 0 0 0 1 0 0 0 0 1"/>
        </Transformations></CrossLevelAttributes>)";
    Gate second;
    second.cross = R"(<CrossLevelAttributes><Styles><EntityStyles Path="[i2]"><Styles><StyleRef ID="blue"/></Styles>
        </EntityStyles></Styles><Transformations><EntityTransformation Path="[i2]"
        Transformation="1 0 0 8 0 1 0 0 0 0 1 0 0 0 0 1"/></Transformations></CrossLevelAttributes>)";
    SceneComparison const comparison = Compared(first, second);
    ASSERT_THAT(Lines(comparison), ElementsAre("moved gate: CrossLevelTransforms [\"i2\"]",
                                               "restyled gate: CrossLevelStyles [\"i2\"]  -> blue",
                                               "shown gate: CrossLevelVisibilities [\"i1\"] false -> "));
    EXPECT_DOUBLE_EQ(comparison.changes[0].distance.value(), 0.003);
}

TEST(CompareScenes, FindsPropertiesByTheirNames)
{
    std::string const head = "<Properties><Property ID=\"";
    std::string const of = R"(" ObjectID="i1" Name=")";
    Gate gate;
    gate.universe = "<IUniverse/>";
    SceneComparison const comparison =
        Compared(gate, gate,
                 head + "1" + of + R"(mass" Type="kDouble" Value="2"/><Property ID="2)" + of +
                     R"(maker" Type="kString" Value="x"/></Properties>)",
                 head + "7" + of + R"(maker" Type="kString" Value="x"/><Property ID="8)" + of +
                     R"(mass" Type="kDouble" Value="2.5"/><Property ID="9)" + of +
                     R"(price" Type="kInt" Value="3"/></Properties>)");
    EXPECT_THAT(Lines(comparison), ElementsAre("property gate/left: mass 2 -> 2.5", "property gate/left: price  -> 3"));
}

TEST(CompareScenes, FindsWhatFilesSayAndUnits)
{
    Gate first;
    first.file = "<FileProperties><Title>a</Title><Revision>1</Revision></FileProperties>";
    Gate second;
    second.file = "<FileProperties><Title>a</Title><Revision>2</Revision></FileProperties>";
    second.unit = "kUnitType_Inch";
    second.universe = R"(<IUniverse><CustomData><CustomDataItem Type="5" Key="k" Value="v"/></CustomData></IUniverse>)";
    EXPECT_THAT(LinesOf(first, second),
                ElementsAre("property gate: Revision 1 -> 2",
                            "unit gate: LengthUnit kUnitType_Millimeter -> kUnitType_Inch", "other scene: k  -> v"));
}

TEST(CompareScenes, FindsNotesViewsAndLayers)
{
    Gate first;
    first.notes = R"(<IAnnotationCallout ID="n" Label="note" Visibility="1"><IText><ITextLine><ITextFragment Value="5"/>
        </ITextLine></IText></IAnnotationCallout>)";
    first.sets = R"(<LayerSet><ILayer ID="l" Label="steel"><LayerInfo ID="1"/><GeometryItems Items="p,q"/></ILayer>
        </LayerSet><ViewSet><IView ID="v" Label="open" Visibility="1"><ViewMember><ViewMemberChild>
        <OccurrencePath Path="[i1]"/><EntityVisibility Visibility="1"/></ViewMemberChild></ViewMember></IView></ViewSet>)";
    Gate second = first;
    second.notes.replace(second.notes.find("Value=\"5\""), 9, "Value=\"6\"");
    second.sets.replace(second.sets.find("p,q"), 3, "p");
    second.sets.replace(second.sets.find("<EntityVisibility Visibility=\"1\""), 32,
                        "<EntityVisibility Visibility=\"0\"");
    std::vector<std::string> const lines = LinesOf(first, second);
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_THAT(lines[0], HasSubstr("note gate/left/note: Text"));
    EXPECT_THAT(lines[1], HasSubstr("view open: ViewMembers [\"i1\"]"));
    EXPECT_EQ(lines[2], "layer steel: GeometryItems [\"p\", \"q\"] -> [\"p\"]");
}

TEST(CompareScenes, TellsOfTheShapeOfGeometry)
{
    Gate second;
    second.geometry = R"(<IPoint ID="q" Label="hinge"><Point X="2" Y="0" Z="0"/></IPoint>)";
    EXPECT_THAT(LinesOf({}, second), ElementsAre("shape gate/left/hinge: x2"));
}

TEST(CompareScenes, TakesTheOrderOfObjectsThatStayedForAChange)
{
    Gate second;
    std::swap(second.door, second.other);
    EXPECT_THAT(LinesOf({}, second), ElementsAre("other gate: Children [\"i1\", \"i2\"] -> [\"i2\", \"i1\"]"));
}

TEST(CompareScenes, RefusesASceneWithoutARoot)
{
    TestScene scene("<Scene/>");
    TestScene other(Gate().Text());
    scene.Begin();
    other.Begin();
    EXPECT_THROW(static_cast<void>(CompareScenes(scene.Producer(), other.Producer())), GeneralException);
}

// How objects are found in the other scene.

TEST(SceneMatching, ByNamesWhereAllIdsAreOthers)
{
    Gate second;
    second.door = Instance("x1", "left", "y");
    second.other = Instance("x2", "right", "y");
    second.part = R"(<IPart ID="y" Label="leaf"><ChildSet>)";
    second.geometry = R"(<IPoint ID="z" Label="hinge"><Point X="1" Y="0" Z="0"/></IPoint>)";
    SceneComparison const comparison = Compared({}, second);
    EXPECT_THAT(Lines(comparison), ElementsAre("renamed gate/left: Label door -> leaf x2"));
    EXPECT_THAT(comparison.matched, ElementsAre(4, 0, 4, 0));
}

TEST(SceneMatching, ANameAndContentCountMoreThanAnIdThatIsAnothersNow)
{
    Gate first;
    first.other += Instance("i3", "post", "r");
    first.more = R"(<IPart ID="r" Label="post"><ChildSet><IPoint ID="s" Label="foot"><Point X="7" Y="0" Z="0"/></IPoint>
        </ChildSet></IPart>)";
    Gate second = first;
    auto const swapped = [](std::string text)
    {
        for (char& letter : text)
            letter = letter == 'p' ? 'r' : letter == 'r' ? 'p' : letter;
        return text;
    };
    second.door = Instance("i1", "left", "r");
    second.other = Instance("i2", "right", "r") + Instance("i3", "post", "p");
    second.part = R"(<IPart ID="r" Label="door"><ChildSet>)";
    second.more.replace(second.more.find("\"r\""), 3, "\"" + swapped("r") + "\"");
    EXPECT_THAT(LinesOf(first, second), IsEmpty());
}

TEST(SceneMatching, AnIdAloneCountsWhereNothingElseFits)
{
    Gate second;
    second.part = R"(<IPart ID="p" Label="leaf"><ChildSet>)";
    second.geometry = R"(<IPoint ID="q" Label="pin"><Point X="2" Y="0" Z="0"/></IPoint>)";
    EXPECT_THAT(LinesOf({}, second),
                ElementsAre("renamed gate/left: Label door -> leaf x2", "renamed gate/left/pin: Label hinge -> pin x2",
                            "shape gate/left/pin: x2"));
}

TEST(SceneMatching, ByPersistentIds)
{
    Gate first;
    first.door =
        R"(<IInstance ID="i1" Label="left" Visibility="1" VersionPersistentId="v"><Child ID="p"/></IInstance>)";
    Gate second;
    second.door =
        R"(<IInstance ID="n1" Label="wing" Visibility="1" VersionPersistentId="v"><Child ID="p"/></IInstance>)";
    SceneComparison const comparison = Compared(first, second);
    EXPECT_THAT(Lines(comparison), ElementsAre("renamed gate/wing: Label left -> wing"));
    EXPECT_EQ(comparison.matched[1], 1U);
}

TEST(SceneMatching, InstancesWithoutNamesByWhereTheyStand)
{
    auto const at = [](std::string const& id, int x)
    { return Instance(id, "", "p", "1 0 0 " + std::to_string(x) + " 0 1 0 0 0 0 1 0 0 0 0 1"); };
    Gate first;
    first.door = at("i1", 1) + at("i2", 2);
    first.other = at("i3", 3);
    Gate second;
    second.door = at("n1", 3) + at("n2", 4);
    second.other = at("n3", 1);
    SceneComparison const comparison = Compared(first, second);
    ASSERT_EQ(Lines(comparison).size(), 2U);
    EXPECT_EQ(Lines(comparison)[0], "moved gate/n2: Transform");
    EXPECT_DOUBLE_EQ(comparison.changes[0].distance.value(), 0.002);
}

TEST(SceneMatching, PartsByTheirGeometry)
{
    Gate first;
    first.door = Instance("i1", "", "p");
    first.other = "";
    Gate second;
    second.door = Instance("x1", "", "y");
    second.other = "";
    second.part = R"(<IPart ID="y" Label="leaf"><ChildSet>)";
    second.geometry = R"(<IPoint ID="z" Label="pin"><Point X="1" Y="0" Z="0"/></IPoint>)";
    std::vector<std::string> const lines = LinesOf(first, second);
    EXPECT_THAT(lines, testing::Contains(HasSubstr("renamed gate/leaf: Label door -> leaf")));
}

TEST(SceneMatching, PartsOfOtherIdsNamesAndPlacesByTheirGeometry)
{
    auto const part = [](std::string const& id, std::string const& label, std::string const& point, char const* x)
    {
        return "<IPart ID=\"" + id + "\" Label=\"" + label + "\"><ChildSet><IPoint ID=\"" + point +
               "\" Label=\"\"><Point X=\"" + x + "\" Y=\"0\" Z=\"0\"/></IPoint></ChildSet></IPart>";
    };
    Gate first;
    first.door = Instance("i1", "left", "p");
    first.other = Instance("i2", "right", "r");
    first.geometry = R"(<IPoint ID="q" Label=""><Point X="1" Y="0" Z="0"/></IPoint>)";
    first.more = part("r", "bolt", "s", "7");
    Gate second;
    second.door = Instance("x1", "one", "y", "1 0 0 5 0 1 0 0 0 0 1 0 0 0 0 1");
    second.other = Instance("x2", "two", "z", "1 0 0 6 0 1 0 0 0 0 1 0 0 0 0 1");
    second.part = R"(<IPart ID="z" Label="leaf"><ChildSet>)";
    second.geometry = R"(<IPoint ID="t" Label=""><Point X="1" Y="0" Z="0"/></IPoint>)";
    second.more = part("y", "screw", "u", "7");
    std::vector<std::string> const lines = LinesOf(first, second);
    EXPECT_THAT(lines, testing::Contains(HasSubstr("Label door -> leaf")));
    EXPECT_THAT(lines, testing::Contains(HasSubstr("Label bolt -> screw")));
}

TEST(SceneMatching, ObjectsOfDifferentKindsNeverMatch)
{
    Gate second;
    second.geometry = R"(<IWorkPoint ID="q" Label="hinge"><WorkPoint X="1" Y="0" Z="0"/></IWorkPoint>)";
    EXPECT_THAT(LinesOf({}, second), ElementsAre("added gate/left/hinge: x2", "removed gate/left/hinge: x2"));
}

// Bodies and their meshes, by changes to the stores of an example.
class CompareStores : public testing::Test
{
protected:
    static SceneComparison WithStore(std::string const& extension, std::string const& what, std::string const& by,
                                     std::string const& document = {}, std::string const& documentBy = {})
    {
        std::string const folder = KVR_EXAMPLES_DIR "/complete/";
        auto const scene = [&](bool isChanged)
        {
            auto const text = [&](std::string file, std::string const& from, std::string const& to)
            {
                std::size_t const at = isChanged && !from.empty() ? file.find(from) : std::string::npos;
                return at == std::string::npos ? file : file.replace(at, from.size(), to);
            };
            auto made = std::make_unique<TestScene>(text(TextOfFile(folder + "complete.xml"), document, documentBy),
                                                    "complete.xml");
            for (auto const& entry : std::filesystem::directory_iterator(folder))
            {
                std::string const name = entry.path().filename().string();
                bool const isStore = entry.path().extension() == extension;
                if (name != "complete.xml")
                    made->WithFile(name, isStore ? text(TextOfFile(entry.path()), what, by) : TextOfFile(entry.path()));
            }
            made->Begin();
            return made;
        };
        auto const first = scene(false);
        auto const second = scene(true);
        return CompareScenes(first->Producer(), second->Producer());
    }
};

TEST_F(CompareStores, ABodyThatChangedIsToldWithItsMeasures)
{
    SceneComparison const comparison = WithStore(".sat", "", "");
    EXPECT_THAT(Lines(comparison), IsEmpty());
    std::vector<std::string> const lines = Lines(WithStore("", "", "", "Path=\"complete.sat\"", "Path=\"none\""));
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_THAT(lines[0], testing::MatchesRegex("shape Bracket/Placed/Body of the text store: volume .* -> no body"));
}

TEST_F(CompareStores, AMeshOfABodyThatStayedIsTessellatedAnew)
{
    // A coordinate of 10 becomes 11.
    std::string const ten("\0\0\0\0\0\0$@", 8);
    std::string const eleven("\0\0\0\0\0\0&@", 8);
    EXPECT_THAT(Lines(WithStore(".mesh", ten, eleven)), ElementsAre("re-tessellated Bracket/Placed/Mesh:"));
    // Nothing is said of a mesh whose body changed.
    EXPECT_THAT(Lines(WithStore(".mesh", ten, eleven, "Path=\"complete.sat\"", "Path=\"none\"")),
                ElementsAre(HasSubstr("shape Bracket/Placed/Body of the text store: ")));
}

}  // namespace KVR::Test

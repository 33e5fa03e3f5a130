// What is found of elements, attributes, ids and references: the rules K-01nn.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/inspect/document/CheckedText.h"
#include "tests/inspect/document/SceneTags.h"

namespace KVR::Test
{

namespace
{

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

// Two parts placed by an assembly, whose set has this in it.
std::string AssemblyOf(std::string const& children, std::string const& underRoot = {})
{
    return "<Scene>\n<IFile ID=\"f\" Label=\"\" IsRoot=\"1\"><ChildSet>"
           "<Child ID=\"a\" Type=\"IAssembly\"/></ChildSet></IFile>\n"
           "<IAssembly ID=\"a\" Label=\"\">\n<ChildSet>\n" +
           children + "\n</ChildSet>\n</IAssembly>\n" + underRoot + "\n</Scene>\n";
}

}  // namespace

TEST(DocumentRules, AreNumberedAndTellThemselvesApart)
{
    EXPECT_EQ(FindRule("K-0105"), FindRule("attribute-misspelt"));
    EXPECT_EQ(FindRule("K-9999"), nullptr);
    for (std::size_t i = 1; i < AllRules().size(); ++i)
        EXPECT_LT(AllRules()[i - 1].id, AllRules()[i].id);
}

TEST(DocumentRules, AreSilentOnASceneThatIsReadWhole)
{
    EXPECT_THAT(CheckedText(SceneOf("<ChangeKey>k</ChangeKey>")).Findings(), IsEmpty());
}

TEST(DocumentRules, TellWhereADocumentEndsToBeOne)
{
    Finding const finding = CheckedText("<Scene>\n<IFile>\n</Scene>").Only("K-0101");
    EXPECT_EQ(finding.line, 3U);
}

TEST(DocumentRules, TellColumnsInLinesOfAnyLength)
{
    // Findings of several rules in one element, and lines that end in different ways between them.
    std::string elements;
    for (std::size_t i = 0; i < 60; ++i)
        elements += "<Part" + std::to_string(i) + "/><ChangeKey B='2' \xc3\xbc='" + std::string(400, 'x') +
                    "' A='\xe2\x82\xac'>k</ChangeKey>" + (i % 20 == 7 ? "\r\n" : "");
    std::string const text = SceneOf(elements);
    std::vector<Finding> const findings = CheckedText(text).Result().findings;
    EXPECT_EQ(findings.size(), 240U);
    for (Finding const& finding : findings)
    {
        std::string const before = text.substr(0, finding.begin);
        std::string const inLine = before.substr(before.find_last_of('\n') + 1);
        auto const isContinuation = [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; };
        auto const continued = std::count_if(inLine.begin(), inLine.end(), isContinuation);
        EXPECT_EQ(finding.column, 1 + inLine.size() - static_cast<std::size_t>(continued)) << finding.found;
        EXPECT_EQ(finding.line, LineOf(text, finding.begin));
    }
}

TEST(DocumentRules, TellAtWhichElementTheReadingOfASceneEnded)
{
    CheckedText const checked(SceneOf({},
                                      "<IUniverse><CustomData>\n<CustomDataItem Type='8' Key='k' Path='no.blob' "
                                      "BlobBufferSize='4'/></CustomData></IUniverse>"));
    EXPECT_THAT(checked.Findings(), ElementsAre("K-0101 at 7: CustomDataItem"));
}

TEST(DocumentRules, FindAnElementThatNobodyReads)
{
    CheckedText const checked(SceneOf("<Zorgle><Inner/></Zorgle>"));
    EXPECT_THAT(checked.Findings(), ElementsAre("K-0102 at 4: Zorgle"));
    Finding const finding = checked.Only("K-0102");
    EXPECT_EQ(finding.column, 2U);
    EXPECT_EQ(finding.path, "Scene/IPart[p]/Zorgle");
    EXPECT_EQ(finding.objectId, "p");
    EXPECT_TRUE(finding.fix.empty());
}

TEST(DocumentRules, FindAMisspeltElementAndRepairTheCaseOfBothItsTags)
{
    std::string const text = SceneOf("<changekey\n>k</changekey>");
    CheckedText const checked(text);
    EXPECT_THAT(checked.Findings(), ElementsAre("K-0103 at 4: changekey"));
    Finding const finding = checked.Only("K-0103");
    EXPECT_EQ(finding.meant, "ChangeKey");
    EXPECT_EQ(Repaired(text, finding), SceneOf("<ChangeKey\n>k</ChangeKey>"));
}

TEST(DocumentRules, DoNotRepairAnElementThatIsNotTheSameButForCase)
{
    Finding const finding = CheckedText(SceneOf("<ChangKey>k</ChangKey>")).Only("K-0103");
    EXPECT_EQ(finding.meant, "ChangeKey");
    EXPECT_TRUE(finding.fix.empty());
}

TEST(DocumentRules, FindAnAttributeThatNobodyReads)
{
    CheckedText const checked(SceneOf("<ChangeKey\n Zorgle='1'>k</ChangeKey>"));
    EXPECT_THAT(checked.Findings(), ElementsAre("K-0104 at 5: Zorgle=\"1\""));
    EXPECT_EQ(checked.Only("K-0104").column, 2U);
}

TEST(DocumentRules, PassOverDeclarationsOfNamespaces)
{
    EXPECT_THAT(CheckedText(SceneOf("<ChangeKey xmlns:a='urn:a' xml:space='preserve'>k</ChangeKey>")).Findings(),
                IsEmpty());
}

TEST(DocumentRules, FindAMisspeltAttributeAndRepairItsCase)
{
    std::string const text = SceneOf("<ChildSet><IPoint label='x' ID='q'/></ChildSet>");
    Finding const finding = CheckedText(text).Only("K-0105");
    EXPECT_EQ(finding.meant, "Label");
    EXPECT_EQ(Repaired(text, finding), SceneOf("<ChildSet><IPoint Label='x' ID='q'/></ChildSet>"));
}

TEST(DocumentRules, DoNotTakeAnAttributeThatIsThereForOneThatWasMisspelt)
{
    CheckedText const checked(SceneOf("<ChildSet><IPoint Label='x' label='y' ID='q'/></ChildSet>"));
    EXPECT_THAT(checked.Findings(), ElementsAre("K-0104 at 4: label=\"y\""));
}

TEST(DocumentRules, FindAnElementThatAnotherOneMakesVoid)
{
    CheckedText const checked(
        SceneOf("<Unit LengthUnit='kUnitType_Inch' DisplayLengthUnit='kUnitType_Inch'/>\n"
                "<UnitAndTolerance LengthUnit='kUnitType_Inch'/>"));
    EXPECT_THAT(checked.Findings(), ElementsAre("K-0106 at 5: UnitAndTolerance"));
}

TEST(DocumentRules, FindASketchOfNoTypeWithItsReason)
{
    CheckedText const checked(SceneOf("<ChildSet>\n<ISketch ID='s' Label=''/>\n</ChildSet>"));
    EXPECT_THAT(checked.Findings(), ElementsAre("K-0107 at 5: ISketch s"));
    EXPECT_THAT(checked.Only("K-0107").reasons, ElementsAre(HasSubstr("lacks what it needs")));
}

TEST(DocumentRules, TellTheWholeChainOfReasonsOfASetThatEnded)
{
    CheckedText const checked(AssemblyOf(
        "<IInstance ID='i' Label='' Visibility='1'>\n<Child ID='m'/></IInstance>\n"
        "<IInstance ID='j' Label='' Visibility='1'><Child ID='p'/></IInstance>",
        "<IInstance ID='m' Label='' Visibility='1'><Child ID='nowhere'/></IInstance>\n<IPart ID='p' Label=''/>"));
    Finding const finding = checked.Only("K-0108");
    EXPECT_EQ(finding.line, 5U);
    EXPECT_EQ(finding.readAs, "1 element behind it is left unread");
    EXPECT_THAT(finding.reasons, ElementsAre("there is no object m", "there is no object nowhere"));
}

TEST(DocumentRules, FindTheFirstOfTwoElementsUnderTheRootOfOneId)
{
    CheckedText const checked(SceneOf({}, "<IPart ID='q' Label='' Zorgle='1'/>\n<IPart ID='q' Label=''/>"));
    EXPECT_THAT(checked.Findings(), ElementsAre("K-0109 at 6: q", "K-0114 at 7: q"));
    EXPECT_THAT(checked.Only("K-0109").readAs, HasSubstr("behind it has the same id and wins"));
}

TEST(DocumentRules, FindTheSecondOfTwoElementsOfOneIdInASet)
{
    CheckedText const checked(SceneOf("<ChildSet><IPoint ID='q' Label=''/>\n<IPoint ID='q' Label=''/></ChildSet>"));
    EXPECT_THAT(checked.Findings(), ElementsAre("K-0109 at 5: q"));
}

TEST(DocumentRules, FindAReferenceToNothing)
{
    EXPECT_THAT(CheckedText(SceneOf("<Styles>\n<StyleRef ID='nowhere'/></Styles>")).Findings(),
                ElementsAre("K-0110 at 5: nowhere"));
    EXPECT_THAT(CheckedText(SceneOf("<ChildSet>\n<Child ID='nowhere'/></ChildSet>")).Findings(),
                ElementsAre("K-0110 at 5: nowhere"));
}

TEST(DocumentRules, FindAMissingMemberInAListOfIds)
{
    CheckedText const checked(
        SceneOf("<ChildSet><IPoint ID='q' Label=''/></ChildSet><AttributeSet><LayerSet><ILayer ID='l' Label=''>\n"
                "<LayerInfo ID='1'/><GeometryItems Items='q, lost'/></ILayer></LayerSet></AttributeSet>"));
    EXPECT_THAT(checked.Findings(), ElementsAre("K-0110 at 5: lost"));
}

TEST(DocumentRules, FindAReferenceThatComesTooEarly)
{
    CheckedText const checked(SceneOf("<ChildSet>\n<Child ID='q'/></ChildSet>", "<IPoint ID='q' Label=''/>"));
    EXPECT_THAT(checked.Only("K-0110").readAs, HasSubstr("read only later"));
}

TEST(DocumentRules, FindAnInstanceOfWhatCannotBePlaced)
{
    CheckedText const checked(AssemblyOf("<IInstance ID='i' Label='' Visibility='1'><Child ID='q'/></IInstance>",
                                         "<IPoint ID='q' Label=''/>"));
    EXPECT_EQ(checked.Only("K-0111").line, 5U);
}

TEST(DocumentRules, FindAReferenceToAnObjectThatCannotStandThere)
{
    std::string const part = SceneOf("<ChildSet>\n<Child ID='a'/></ChildSet>", "<IAssembly ID='a' Label=''/>");
    EXPECT_THAT(CheckedText(part).Findings(), ElementsAre(HasSubstr("K-0111 at 5: a")));
    std::string const style =
        SceneOf("<ChildSet><IPoint ID='q' Label=''/></ChildSet><Styles>\n<StyleRef ID='q'/></Styles>");
    EXPECT_THAT(CheckedText(style).Findings(), ElementsAre("K-0111 at 5: q"));
}

TEST(DocumentRules, TellTheKindOfWhatComesTooLateAndCouldNotStandThere)
{
    CheckedText const placed(AssemblyOf("<IInstance ID='i' Label='' Visibility='1'>\n<Child ID='s'/></IInstance>",
                                        "<IPart ID='p' Label=''><AttributeSet><StyleSet>"
                                        "<IRenderStyle ID='s' Label=''/></StyleSet></AttributeSet></IPart>"));
    EXPECT_EQ(placed.Only("K-0111").line, 6U);
    CheckedText const child(SceneOf("<ChildSet>\n<Child ID='a'/></ChildSet>", "<IFile ID='a' Label=''/>"));
    EXPECT_EQ(child.Only("K-0111").line, 5U);
}

TEST(DocumentRules, FindATextureAndALevelOfDetailThatAreNone)
{
    auto const style = [](std::string const& texture)
    {
        return SceneOf(
            "<AttributeSet><StyleSet><IRenderStyle ID='s' Label=''>\n<DiffuseColor FractionRed='1' "
            "FractionGreen='1' FractionBlue='1' TextureId='" +
            texture + "'/></IRenderStyle></StyleSet></AttributeSet>");
    };
    EXPECT_THAT(CheckedText(style("p")).Findings(), ElementsAre("K-0111 at 5: p"));
    EXPECT_THAT(CheckedText(style("nowhere")).Findings(), ElementsAre("K-0110 at 5: nowhere"));
    EXPECT_THAT(CheckedText(style("")).Findings(), IsEmpty());
}

TEST(DocumentRules, GuessWhichObjectWasMeant)
{
    EXPECT_EQ(CheckedText(AssemblyOf("<IInstance ID='i' Label=''><Child ID='plaet'/></IInstance>",
                                     "<IPart ID='plate' Label=''/>"))
                  .Only("K-0110")
                  .meant,
              "plate");
}

TEST(DocumentRules, FindAFileOfWhatIsNoComponent)
{
    std::string const text =
        "<Scene>\n<IFile ID='f' Label='' IsRoot='1'><ChildSet>\n<Child ID='q' Type='IPart'/></ChildSet></IFile>"
        "<IPoint ID='q' Label=''/></Scene>";
    EXPECT_EQ(CheckedText(text).Only("K-0111").line, 3U);
}

TEST(DocumentRules, FindEntriesOfTheFilePropertiesThatNobodyCanAskFor)
{
    auto const file = [](std::string const& entries)
    {
        std::string text = SceneOf({});
        return text.insert(text.find("<ChildSet>"), "<FileProperties>" + entries + "</FileProperties>");
    };
    std::string const misspelt = file("<title>t</title>");
    Finding const finding = CheckedText(misspelt).Only("K-0116");
    EXPECT_EQ(finding.meant, "Title");
    EXPECT_EQ(Repaired(misspelt, finding), file("<Title>t</Title>"));
    EXPECT_THAT(CheckedText(file("<Zorgle/>")).Findings(), ElementsAre(HasSubstr("K-0102 at ")));
    EXPECT_THAT(CheckedText(file("<Title>t</Title><Title>u</Title>")).Findings(), ElementsAre(HasSubstr("K-0106 at ")));
    EXPECT_THAT(CheckedText(file("<CreationDate>x</CreationDate>")).Findings(), ElementsAre(HasSubstr("K-0211 at ")));
    EXPECT_THAT(CheckedText(file("<MassUnit>kg</MassUnit>")).Findings(), ElementsAre(HasSubstr("K-0202 at ")));
    EXPECT_THAT(CheckedText(file("<UpVector>0 0 1</UpVector>")).Findings(), ElementsAre(HasSubstr("K-0210 at ")));
    EXPECT_THAT(CheckedText(file("<UpVector>0,0,1</UpVector>")).Findings(), IsEmpty());
}

TEST(DocumentRules, FindAnAssemblyThatPlacesItself)
{
    CheckedText const checked(AssemblyOf("<IInstance ID='i' Label='' Visibility='1'>\n<Child ID='a'/></IInstance>"));
    EXPECT_THAT(checked.Findings(), ElementsAre("K-0112 at 6: a"));
}

TEST(DocumentRules, FindASetOfGeometryThatIsNestedTooDeeply)
{
    constexpr int kSets = 1002;
    std::string sets;
    for (int i = 0; i < kSets; ++i)
        sets += "<ChildSet>\n<IGeometricSet ID='s" + std::to_string(i) + "' Label=''>";
    for (int i = 0; i < kSets; ++i)
        sets += "</IGeometricSet></ChildSet>";
    CheckedText const checked(SceneOf(sets));
    EXPECT_THAT(checked.Findings(), ElementsAre(HasSubstr("K-0113 at ")));
}

TEST(DocumentRules, FindTheTopOfWhatNothingLeadsTo)
{
    CheckedText const checked(SceneOf({},
                                      "<IPart ID='lonely' Label=''>"
                                      "<ChildSet><IPoint ID='q' Label=''/></ChildSet></IPart>"));
    EXPECT_THAT(checked.Findings(), ElementsAre("K-0114 at 6: lonely"));
}

TEST(DocumentRules, FindASceneWithoutARoot)
{
    EXPECT_THAT(CheckedText("<Scene>\n<IPart ID='p' Label=''/></Scene>").Findings(), ElementsAre("K-0115 at 1: Scene"));
}

TEST(DocumentRules, AreLookedForByIdAndByName)
{
    CheckOptions options;
    options.rules = {"element-unread", "K-0104"};
    options.noRules = {"attribute-unread"};
    EXPECT_THAT(CheckedText(SceneOf("<Zorgle/><ChangeKey a='1'>k</ChangeKey>"), &options).Findings(),
                ElementsAre("K-0102 at 4: Zorgle"));
}

TEST(DocumentRules, CountColumnsInCharactersAndFindPlacesInEveryEncodingOfBytes)
{
    Finding const finding = CheckedText(SceneOf("<!-- Öl --><Zorgle/>")).Only("K-0102");
    EXPECT_EQ(finding.column, 13U);
}

TEST(DocumentRules, FindTheLineAlsoInADocumentOfWideCharacters)
{
    std::string const narrow = SceneOf("<Zorgle/>");
    std::string wide = "\xFF\xFE";
    for (char const c : narrow)
        wide += std::string{c, '\0'};
    Finding const finding = CheckedText(wide).Only("K-0102");
    EXPECT_EQ(finding.line, 4U);
    EXPECT_TRUE(finding.fix.empty());
}

}  // namespace KVR::Test

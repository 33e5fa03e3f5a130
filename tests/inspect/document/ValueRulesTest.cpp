// What is found of values: the rules K-02nn.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/inspect/document/CheckedText.h"

namespace KVR::Test
{

namespace
{

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

std::string PointOf(std::string const& attributes, std::string const& children = {})
{
    return SceneOf("<ChildSet>\n<IPoint ID='q' Label='' " + attributes + ">" + children + "</IPoint></ChildSet>");
}

}  // namespace

TEST(ValueRules, FindABooleanThatLooksTrueAndRepairItInTheFormThatHoldsThere)
{
    std::string const text = PointOf("Visibility='true'");
    CheckedText const checked(text);
    EXPECT_THAT(checked.Findings(), ElementsAre("K-0201 at 5: Visibility=\"true\""));
    EXPECT_EQ(checked.Only("K-0201").readAs, "read as false");
    EXPECT_EQ(Repaired(text, checked.Only("K-0201")), PointOf("Visibility='1'"));
}

TEST(ValueRules, KnowEachFormOfABoolean)
{
    std::string const layer =
        "<AttributeSet><LayerSet>\n<ILayer ID='l' Label=''><LayerInfo ID='1' Visibility='1'/>"
        "</ILayer></LayerSet></AttributeSet>";
    EXPECT_EQ(CheckedText(SceneOf(layer)).Only("K-0201").meant, "True");
    EXPECT_THAT(CheckedText(PointOf("Visibility='0'")).Findings(), IsEmpty());
    EXPECT_THAT(CheckedText(PointOf("Visibility='false'")).Findings(), IsEmpty());
    EXPECT_EQ(CheckedText(PointOf("Visibility='perhaps'")).Only("K-0201").meant, "");
}

TEST(ValueRules, FindAUnitThatIsNone)
{
    std::string const text = PointOf("", "<Unit LengthUnit='Millimeter' DisplayLengthUnit='kUnitType_Inch'/>");
    CheckedText const checked(text);
    EXPECT_THAT(checked.Findings(), ElementsAre("K-0202 at 5: LengthUnit=\"Millimeter\""));
    EXPECT_EQ(Repaired(text, checked.Only("K-0202")),
              PointOf("", "<Unit LengthUnit='kUnitType_Millimeter' DisplayLengthUnit='kUnitType_Inch'/>"));
    EXPECT_EQ(CheckedText(PointOf("", "<Unit LengthUnit='' DisplayLengthUnit='kUnitType_Inch'/>")).Only("K-0202").line,
              5U);
    EXPECT_THAT(CheckedText(PointOf("", "<Unit DisplayLengthUnit='kUnitType_Inch'/>")).Findings(), IsEmpty());
}

TEST(ValueRules, FindATextThatNamesNoValue)
{
    std::string const text = SceneOf(
        "<ChildSet><IBrep ID='b' Label='' Visibility='1' NetVisibility='1'\n"
        "Type='kproducergeometrytype_brepsolid'/></ChildSet>");
    Finding const finding = CheckedText(text).Only("K-0203");
    EXPECT_EQ(finding.line, 5U);
    EXPECT_EQ(finding.meant, "kProducerGeometryType_BrepSolid");
    EXPECT_EQ(CheckedText(Repaired(text, finding)).Findings(), std::vector<std::string>());
}

TEST(ValueRules, FindANumberWithSomethingBehindIt)
{
    CheckedText const checked(PointOf("", "<Point X='1' Y='2mm' Z='3'/>"));
    EXPECT_EQ(checked.Only("K-0204").meant, "2");
    EXPECT_TRUE(checked.Only("K-0204").fix.empty());
}

TEST(ValueRules, FindADecimalCommaAndMakeItAPoint)
{
    std::string const text = PointOf("", "<Point X='1' Y='2,5' Z='3'/>");
    EXPECT_EQ(Repaired(text, CheckedText(text).Only("K-0205")), PointOf("", "<Point X='1' Y='2.5' Z='3'/>"));
}

class TransformRules : public ::testing::Test
{
protected:
    static CheckedText Checked(std::string const& numbers)
    {
        return CheckedText(SceneOf("<ChildSet><IPointCloud ID='c' Label=''>\n<Transform>" + numbers +
                                   "</Transform></IPointCloud></ChildSet>"));
    }
};

TEST_F(TransformRules, FindOneOfFifteenNumbers)
{
    CheckedText const checked = Checked("1 0 0 0 0 1 0 0 0 0 1 0 0 0 0");
    EXPECT_EQ(checked.Only("K-0206").line, 5U);
    EXPECT_THAT(checked.Only("K-0206").readAs, HasSubstr("15 numbers"));
}

TEST_F(TransformRules, FindFlatOnesMirrorsAndShears)
{
    EXPECT_THAT(Checked("1 0 0 0 0 0 0 0 0 0 1 0 0 0 0 1").Findings(), ElementsAre(HasSubstr("K-0207 at 5")));
    EXPECT_THAT(Checked("1 0 0 0 0 -1 0 0 0 0 1 0 0 0 0 1").Findings(), ElementsAre(HasSubstr("K-0208 at 5")));
    EXPECT_THAT(Checked("1 0.5 0 0 0 1 0 0 0 0 1 0 0 0 0 1").Findings(), ElementsAre(HasSubstr("K-0209 at 5")));
    EXPECT_THAT(Checked("2 0 0 1 0 2 0 0 0 0 2 0 0 0 0 1").Findings(), IsEmpty());
    EXPECT_THAT(Checked("nan 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1").Findings(), ElementsAre(HasSubstr("K-0206 at 5")));
    EXPECT_EQ(Checked("1 0 0 5,5 0 1 0 0 0 0 1 0 0 0 0 1").Only("K-0205").meant, "1 0 0 5.5 0 1 0 0 0 0 1 0 0 0 0 1");
    EXPECT_THAT(Checked("1,0,0,5,0,1,0,0,0,0,1,0,0,0,0").Findings(), ElementsAre(HasSubstr("K-0206 at 5")));
}

TEST_F(TransformRules, FindThemInTextOfSeveralRuns)
{
    EXPECT_THAT(Checked("1 0 0 0 0 0 0 0 0 0<!-- x --> 1 0 0 0 0 1").Findings(), ElementsAre(HasSubstr("K-0207 at 5")));
}

TEST(ValueRules, FindVectorsAndTimesThatAreNone)
{
    EXPECT_THAT(
        CheckedText(SceneOf({}, "<IUniverse><ViewData>\n<UpVector>0 0 1</UpVector></ViewData></IUniverse>")).Findings(),
        ElementsAre("K-0210 at 7: 0 0 1"));
    EXPECT_THAT(
        CheckedText(SceneOf({}, "<IUniverse><ViewData>\n<UpVector>0,O,1</UpVector></ViewData></IUniverse>")).Findings(),
        ElementsAre("K-0210 at 7: 0,O,1"));
    std::string text = SceneOf({});
    text.replace(text.find("IsRoot"), 0, "LastModificationTime='yesterday' ");
    EXPECT_EQ(CheckedText(text).Only("K-0211").line, 2U);
}

TEST(ValueRules, FindMisreadValuesOfProperties)
{
    TempFolder const folder;
    std::string const path = folder.Path() + "/scene.xml";
    WriteBytes(path, SceneOf({}));
    WriteBytes(folder.Path() + "/scene.kvrproperty",
               "<Properties>\n<Property ID='a' ObjectID='p' Name='n' Type='kBool' Value='true'/></Properties>");
    std::vector<Finding> const findings = CheckScene(path).findings;
    ASSERT_FALSE(findings.empty());
    EXPECT_EQ(BriefText(findings.front()), "K-0201 at 2: n=\"true\"");
    EXPECT_THAT(findings.front().file, HasSubstr("scene.kvrproperty"));
}

}  // namespace KVR::Test

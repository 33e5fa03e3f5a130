#include "inspect/query/Query.h"

#include <gmock/gmock.h>

#include "inspect/query/QueryRun.h"
#include "tests/inspect/query/QueryScene.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::string Style(std::string const& id, std::string const& red)
{
    return "<IRenderStyle ID='" + id + "' Label=''><DiffuseColor FractionRed='" + red +
           "' FractionGreen='0.5' FractionBlue='0' FractionAlpha='1'/></IRenderStyle>";
}

// In order: f, top, bolt1 and bolt2 (mirrored) of p1, lid (hidden) of p2, sub of the assembly inner, bolt3 of p1, lug
// of p3, and loose of p4, twice as large.
QueryScene& Gate()
{
    static QueryScene scene(
        File({"top"}, "<StyleSet>" + Style("red", "1") + Style("black", "0") +
                          "</StyleSet><LayerSet><ILayer ID='l1' Label='Bolts'><LayerInfo ID='7'/><GeometryItems "
                          "Items='m1,bolt3,sub'/></ILayer></LayerSet>") +
            Assembly("top",
                     Instance("bolt1", "p1") + PlacedInstance("bolt2", "p1", "-1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1") +
                         HiddenInstance("lid", "p2") + StyledInstance("sub", "inner", "red"),
                     "<Unit LengthUnit='kUnitType_Millimeter'/>") +
            Assembly("inner", Instance("bolt3", "p1") + Instance("lug", "p3") +
                                  PlacedInstance("loose", "p4", "2 0 0 9 0 2 0 0 0 0 2 0 0 0 0 1")) +
            Part("p1", Mesh("m1"),
                 "<Styles><StyleRef ID='black'/></Styles>" +
                     CustomProperties(NumberProperty("material density", "0.001") + TextProperty("Supplier", "ACME") +
                                      NumberProperty("Length", "20") + TextProperty("Size", "8.5"))) +
            Part("p2", Point("x") + "<IAnnotationCallout ID='n' Label='' Visibility='1'/>",
                 CustomProperties(NumberProperty("mass", "2"), "<MassUnit>kUnitType_Gram</MassUnit>")) +
            Part("p3", Mesh("m3"), "<Unit LengthUnit='kUnitType_Inch'/>") + Part("p4", Mesh("m4")),
        {{"m1", {10, 20, 30}}, {"m3", {1, 1, 1}}, {"m4", {1, 2, 3}, true}});
    return scene;
}

// The ids that occurrences end in.
std::vector<std::string> Asked(std::string const& expression)
{
    std::vector<std::string> ids;
    Query const query(expression);
    for (QueryRun run(query, Gate().Model()); run.Next();)
        ids.emplace_back(run.Values().Shown(QueryField::kId).front());
    return ids;
}

TEST(Query, KindsAndSteps)
{
    EXPECT_THAT(Asked("file"), ElementsAre("f"));
    EXPECT_THAT(Asked("assembly"), ElementsAre("top", "sub"));
    EXPECT_THAT(Asked("part"), ElementsAre("bolt1", "bolt2", "lid", "bolt3", "lug", "loose"));
    EXPECT_THAT(Asked("instance"), ElementsAre("bolt1", "bolt2", "lid", "sub", "bolt3", "lug", "loose"));
    EXPECT_EQ(Asked("*").size(), 9U);
    EXPECT_THAT(Asked("assembly > assembly"), ElementsAre("sub"));
    EXPECT_THAT(Asked("file > part"), IsEmpty());
    EXPECT_THAT(Asked("file // part[name=\"Label of p1\"]"), ElementsAre("bolt1", "bolt2", "bolt3"));
    EXPECT_THAT(Asked("file // assembly > assembly > *"), ElementsAre("bolt3", "lug", "loose"));
    EXPECT_THAT(Asked("file // [depth=3]"), ElementsAre("bolt3", "lug", "loose"));
    EXPECT_THAT(Asked("file or part[id=lid] or assembly > [id=lug]"), ElementsAre("f", "lid", "lug"));
    // A path found does not hold for what stands beside it.
    EXPECT_THAT(Asked("[id=sub] // [id=bolt1]"), IsEmpty());
    EXPECT_THAT(Asked("[id=top] > [id=bolt3]"), IsEmpty());
    EXPECT_THAT(Asked("[id=top] // [id=bolt3]"), ElementsAre("bolt3"));
}

TEST(Query, TextsAreEqualOrFitPatterns)
{
    EXPECT_THAT(Asked("*[name~\"*of bolt?\"]"), ElementsAre("bolt1", "bolt2", "bolt3"));
    EXPECT_THAT(Asked("*[name~'bolt']"), IsEmpty());
    EXPECT_THAT(Asked("part[name!~\"*of p1\"]"), ElementsAre("lid", "lug", "loose"));
    EXPECT_THAT(Asked("part[instance.name=\"Label of p1\"]"), IsEmpty());
    EXPECT_THAT(Asked("part[component.name=\"Label of p2\"]"), ElementsAre("lid"));
    EXPECT_THAT(Asked("part[id=p2]"), ElementsAre("lid"));
    EXPECT_THAT(Asked("part[instance.id~b*1 or component.id='p3']"), ElementsAre("bolt1", "lug"));
    EXPECT_THAT(Asked("*[kind=assembly]"), ElementsAre("top", "sub"));
    EXPECT_THAT(Asked("*[path=\"File/Label of top/Label of lid\"]"), ElementsAre("lid"));
    EXPECT_THAT(Asked("*[idpath~\"f/top/sub/*\"]"), ElementsAre("bolt3", "lug", "loose"));
}

TEST(Query, LayersByTheInstanceWhatItPlacesOrItsGeometry)
{
    EXPECT_THAT(Asked("*[layer=Bolts]"), ElementsAre("bolt1", "bolt2", "sub", "bolt3"));
    EXPECT_THAT(Asked("part[layer=7 and layer=l1]"), ElementsAre("bolt1", "bolt2", "bolt3"));
    EXPECT_THAT(Asked("part[layer!=Bolts]"), ElementsAre("lid", "lug", "loose"));
}

TEST(Query, ColoursAsTheyAreInTheirPlace)
{
    EXPECT_THAT(Asked("*[color=#008000]"), ElementsAre("bolt1", "bolt2"));
    EXPECT_THAT(Asked("part[color=#FF8000]"), ElementsAre("bolt3", "lug", "loose"));
    EXPECT_THAT(Asked("part[color~#ff*]"), ElementsAre("bolt3", "lug", "loose"));
}

TEST(Query, FlagsAndCounts)
{
    EXPECT_THAT(Asked("*[hidden]"), ElementsAre("lid"));
    EXPECT_THAT(Asked("part[not visible]"), ElementsAre("lid"));
    EXPECT_THAT(Asked("part[not not visible and mirrored]"), ElementsAre("bolt2"));
    EXPECT_THAT(Asked("*[notes]"), ElementsAre("lid"));
    EXPECT_THAT(Asked("part[shared]"), ElementsAre("bolt1", "bolt2", "bolt3"));
    EXPECT_THAT(Asked("part[users=3]"), ElementsAre("bolt1", "bolt2", "bolt3"));
    EXPECT_THAT(Asked("part[users=0 and count=1 and not mesh]"), ElementsAre("lid"));
    EXPECT_THAT(Asked("part[not instance]"), IsEmpty());
    EXPECT_THAT(Asked("*[not (instance or kind=file)]"), ElementsAre("top"));
    EXPECT_THAT(Asked("*[body]"), IsEmpty());
}

TEST(Query, SizesHaveUnitsAndFollowTheScaleOfThePlace)
{
    EXPECT_THAT(Asked("part[box.x=1cm and box.y=20mm and box.z<=0.03m]"), ElementsAre("bolt1", "bolt2", "bolt3"));
    EXPECT_THAT(Asked("part[box.max=1in and box.min=25.4mm]"), ElementsAre("lug"));
    EXPECT_THAT(Asked("part[box.min=2mm and box.max=6mm]"), ElementsAre("loose"));
    EXPECT_THAT(Asked("part[volume=6cm3]"), ElementsAre("bolt1", "bolt2", "bolt3"));
    EXPECT_THAT(Asked("part[volume=1in3]"), ElementsAre("lug"));
    // An open mesh has an area alone: five faces of six, four times as large.
    EXPECT_THAT(Asked("part[area=80mm2]"), ElementsAre("loose"));
    EXPECT_THAT(Asked("part[volume!=6cm3 and not volume>1mm3]"), ElementsAre("lid", "loose"));
    EXPECT_THAT(Asked("part[area=22cm2]"), ElementsAre("bolt1", "bolt2", "bolt3"));
    EXPECT_THAT(Asked("part[mass=6g]"), ElementsAre("bolt1", "bolt2", "bolt3"));
    EXPECT_THAT(Asked("part[mass=0.002kg]"), ElementsAre("lid"));
    // Three bolts and a lid.
    EXPECT_THAT(Asked("*[mass=20g]"), ElementsAre("f", "top"));
    EXPECT_THAT(Asked("assembly[box.x>25mm and box.z=30mm]"), ElementsAre("top", "sub"));
}

TEST(Query, PropertiesAreTextsOrNumbers)
{
    EXPECT_THAT(Asked("part[property[\"Supplier\"]=ACME and instance.id=bolt1]"), ElementsAre("bolt1"));
    EXPECT_THAT(Asked("part[property['Supplier']~'A*']").size(), 3U);
    EXPECT_THAT(Asked("part[property['Supplier']!='ACME']"), ElementsAre("lid", "lug", "loose"));
    EXPECT_THAT(Asked("part[property['mass']]"), ElementsAre("lid"));
    EXPECT_EQ(Asked("part[property['Length']>=20 and property['Length']<20.5]").size(), 3U);
    EXPECT_EQ(Asked("part[property['Length']='20']").size(), 3U);
    EXPECT_EQ(Asked("part[property['Size']=8.50]").size(), 3U);
    EXPECT_THAT(Asked("part[property['Size']='8.50']"), IsEmpty());
    EXPECT_THAT(Asked("part[property['Supplier']>1]"), IsEmpty());
}

TEST(Query, PlacesAreThoseOfAWalk)
{
    EXPECT_THAT(Query("part[shared]").Find(Gate().Model()), ElementsAre(2U, 3U, 6U));
    EXPECT_THAT(Query("file").Find(Gate().Model()), ElementsAre(0U));
}

struct Mistake
{
    char const* text;
    std::size_t column;
    char const* said;
};

class QueryMistakes : public testing::TestWithParam<Mistake>
{
};

TEST_P(QueryMistakes, AreToldWithTheirColumn)
{
    try
    {
        Query const query(GetParam().text);
        FAIL() << GetParam().text;
    }
    catch (QueryError const& error)
    {
        EXPECT_EQ(error.Column(), GetParam().column) << error.what();
        EXPECT_THAT(error.what(), HasSubstr(GetParam().said));
        EXPECT_THAT(error.what(), HasSubstr("column " + std::to_string(GetParam().column) + " of the expression"));
    }
}

INSTANTIATE_TEST_SUITE_P(
    All, QueryMistakes,
    testing::Values(
        Mistake{"", 1, "a kind is expected"}, Mistake{"  ", 3, "a kind is expected"},
        Mistake{"bolt", 1, "there is no kind \"bolt\""}, Mistake{"visible", 1, "a condition stands in brackets"},
        Mistake{"part >", 7, "a kind is expected"}, Mistake{"part[", 6, "a condition is expected"},
        Mistake{"part[visible", 13, "] is expected"}, Mistake{"part[(visible]", 14, ") is expected"},
        Mistake{"part[visible] assembly", 15, "nothing more is expected"},
        Mistake{"part[nam='x']", 6, "did you mean name?"}, Mistake{"part[name]", 6, "to be compared"},
        Mistake{"part[visible=1]", 13, "is compared with nothing"}, Mistake{"part[name<'x']", 10, "name is a text"},
        Mistake{"part[depth~3]", 11, "depth is a number"}, Mistake{"part[depth=3mm]", 12, "without a unit"},
        Mistake{"part[box.x<20]", 12, "needs a unit: um, mm, cm, m, in or ft"},
        Mistake{"part[mass>1mm]", 11, "needs a unit: g, kg"}, Mistake{"part[box.x<wide]", 12, "a number is expected"},
        Mistake{"part[box.x<'2mm']", 12, "a number is expected"},
        Mistake{"part[name='x]", 14, "no closing quotation mark"}, Mistake{"part[name=]", 11, "a value is expected"},
        Mistake{"part[property=3]", 14, "a name in brackets is expected"},
        Mistake{"part[property[Name]]", 15, "in quotation marks"},
        Mistake{"part[property['N']<'3']", 20, "with a number without a unit"},
        Mistake{"part[visible and]", 17, "a condition is expected"}, Mistake{"part[not]", 9, "a condition is expected"},
        Mistake{"part['\xC3\xA4\xC3\xB6']", 6, "a condition is expected"},
        Mistake{"part[name='\xC3\xA4\xC3\xB6' x]", 16, "] is expected"}));

TEST(Query, NestingLengthAndStepsAreLimited)
{
    std::string const deep(Query::kMostNesting - 1, '(');
    std::string const back(Query::kMostNesting - 1, ')');
    EXPECT_EQ(Asked("part[" + deep + "visible" + back + "]").size(), 5U);
    EXPECT_THROW(Query("part[(" + deep + "visible" + back + ")]"), QueryError);
    EXPECT_NO_THROW(Query("part[name='" + std::string(100, '(') + "']"));
    std::string const nots(Query::kMostBytes - 20, ' ');
    EXPECT_NO_THROW(Query("part" + nots));
    EXPECT_THROW(Query("part" + nots + std::string(20, ' ')), QueryError);
    std::string all = "part[visible";
    while (all.size() + 20 < Query::kMostBytes)
        all += " and not hidden";
    EXPECT_EQ(Asked(all + "]").size(), 5U);
    std::string steps = "*";
    for (std::size_t i = 1; i < Query::kMostSteps; ++i)
        steps += ">*";
    EXPECT_THAT(Asked(steps), IsEmpty());
    EXPECT_THROW(Query(steps + ">*"), QueryError);
}

TEST(Query, TellsWhatHasToBeReadForIt)
{
    for (char const* const text :
         {"*", "assembly > part", "part[name~\"M6*\" and not layer=\"l\" or depth>2]", "*[notes]"})
        EXPECT_EQ(Query(text).Source(), QuerySource::kDocument) << text;
    EXPECT_EQ(Query("*[visible and property[\"mass\"]]").Source(), QuerySource::kProperties);
    for (char const* const text :
         {"part[not (visible or volume>1l)]", "assembly[color=red] > part", "*[property[\"a\"]] // *[mesh]"})
        EXPECT_EQ(Query(text).Source(), QuerySource::kStores) << text;
}

TEST(Query, BackslashesAreForQuotationMarks)
{
    QueryScene scene(File({"p"}) + "<IPart ID='p' Label='a&quot;b\\c'><ChildSet/></IPart>");
    EXPECT_EQ(Query(R"(part[name="a\"b\\c"])").Find(scene.Model()).size(), 1U);
    EXPECT_EQ(Query(R"(part[name='a"b\\c'])").Find(scene.Model()).size(), 1U);
    EXPECT_EQ(Query(R"(part[name='a"bc'])").Find(scene.Model()).size(), 0U);
}

TEST(Query, ATextIsAnExpressionWhenItBeginsAsOne)
{
    for (char const* const text : {"part[name=x]", "part [ not ( visible", "*[property[\"a\"]]", "[depth=2]",
                                   "assembly > part", "file//part", "part[name", "*>*", "part[nam=x]", "[a <"})
        EXPECT_TRUE(Query::IsExpression(text)) << text;
    for (char const* const text : {"part", "part[1]", "*[1]", "M6*", "*", "bolt[name=x]", "a > b", "part[names]", "[x]",
                                   "> part", "//", "", "part or assembly", "part]", "not visible"})
        EXPECT_FALSE(Query::IsExpression(text)) << text;
}

TEST(Query, CaretsStandUnderTheColumn)
{
    EXPECT_EQ(CaretLines("part[x]", 6), "  part[x]\n       ^");
    EXPECT_EQ(CaretLines("part", 5), "  part\n      ^");
    EXPECT_EQ(CaretLines("\xC3\xA4\tb", 3), "  \xC3\xA4 b\n    ^");
    EXPECT_EQ(CaretLines("part", 0), "");
    std::string const lines = CaretLines(std::string(5000, 'a') + "b" + std::string(5000, 'c'), 5001);
    EXPECT_EQ(lines.find('^') - lines.find('\n') - 1, lines.find('b'));
    EXPECT_LT(lines.size(), 300U);
}

TEST(Query, ASceneOfTooManyOccurrencesIsRefused)
{
    // Each assembly places the next one twice.
    std::string text = File({"a0"});
    for (int i = 0; i < 40; ++i)
    {
        std::string const next = i == 39 ? "p" : "a" + std::to_string(i + 1);
        std::string const id = "a" + std::to_string(i);
        text += Assembly(id, Instance(id + "x", next) + Instance(id + "y", next));
    }
    QueryScene scene(text + Part("p"));
    EXPECT_THROW(Query("part").Find(scene.Model()), QueryError);
}

}  // namespace

}  // namespace KVR::Test

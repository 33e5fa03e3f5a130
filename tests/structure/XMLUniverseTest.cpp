#include "structure/XMLUniverse.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/structure/Answers.h"
#include "tests/support/ParsedDocument.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;

// A universe read from its element, outside of any scene.
class ReadUniverse
{
public:
    explicit ReadUniverse(std::string const& content)
        : m_document("<IUniverse>" + content + "</IUniverse>"), m_universe(Wide("/nowhere/scene.xml"))
    {
        m_isRead = m_universe.ReadFromXML(m_document.Root());
    }

    bool IsRead() const { return m_isRead; }
    IUniverse const& operator*() const { return m_universe; }
    IUniverse const* operator->() const { return &m_universe; }

private:
    ParsedDocument m_document;
    XMLUniverse m_universe;
    bool m_isRead = false;
};

using Fractions = std::vector<double>;

Fractions FractionsOf(Color const& color)
{
    return {color.Red(), color.Green(), color.Blue(), color.Alpha()};
}

// Empty when there is no such colour.
Fractions CurveColorOf(ReadUniverse const& universe)
{
    auto const color = AnswerOf(*universe, &IUniverse::DefaultCurveColor);
    return color ? FractionsOf(*color) : Fractions();
}

Fractions SurfaceColorOf(ReadUniverse const& universe)
{
    auto const color = AnswerOf(*universe, &IUniverse::DefaultSurfaceColor);
    return color ? FractionsOf(*color) : Fractions();
}

std::string ColorText(char const* name, char const* red, char const* green, char const* blue)
{
    return std::string("<") + name + " FractionRed='" + red + "' FractionGreen='" + green + "' FractionBlue='" + blue +
           "'/>";
}

std::string ViewText(std::string const& content)
{
    return "<ViewData>" + content + "</ViewData>";
}

}  // namespace

TEST(XMLUniverse, WithoutChildrenEveryAnswerIsNotSpecifiedAndThereIsNoCustomData)
{
    ReadUniverse const universe("");
    EXPECT_TRUE(universe.IsRead());
    EXPECT_THAT(CurveColorOf(universe), ElementsAre());
    EXPECT_THAT(SurfaceColorOf(universe), ElementsAre());
    EXPECT_FALSE(AnswerOf(*universe, &IUniverse::ViewingDataOf));
    EXPECT_EQ(universe->CustomDataCount(), 0u);
}

TEST(XMLUniverse, ANullNodeIsNotRead)
{
    XMLUniverse universe{UTF16String()};
    EXPECT_FALSE(universe.ReadFromXML(nullptr));
    EXPECT_EQ(universe.CustomDataCount(), 0u);
}

TEST(XMLUniverse, ThePropertyDatabaseIsThereFromTheStartAndStaysTheSame)
{
    XMLUniverse universe{UTF16String()};
    PropertyDatabase* const database = universe.PropertyDatabaseOf();
    ASSERT_NE(database, nullptr);
    ParsedDocument const document("<IUniverse><ViewData/></IUniverse>");
    ASSERT_TRUE(universe.ReadFromXML(document.Root()));
    EXPECT_EQ(universe.PropertyDatabaseOf(), database);
}

TEST(XMLUniverse, AGetterThatIsNotSpecifiedLeavesItsOutputAlone)
{
    ReadUniverse const universe("");
    Color color;
    color.SetFractionalRGBA(0.1, 0.2, 0.3, 0.4);
    EXPECT_EQ(universe->DefaultCurveColor(color), kIsValueSpecified_No);
    EXPECT_EQ(universe->DefaultSurfaceColor(color), kIsValueSpecified_No);
    EXPECT_THAT(FractionsOf(color), ElementsAre(0.1, 0.2, 0.3, 0.4));
    ViewingData data;
    data.SetUpVector(1, 2, 3);
    EXPECT_EQ(universe->ViewingDataOf(data), kIsValueSpecified_No);
    EXPECT_THAT(ComponentsOf(data.UpVector()), ElementsAre(1, 2, 3));
}

TEST(XMLUniverse, ACurveColorWithoutAlphaIsOpaque)
{
    ReadUniverse const universe(ColorText("DefaultCurveColor", "0.25", "0.5", "0.75"));
    EXPECT_THAT(CurveColorOf(universe), ElementsAre(0.25, 0.5, 0.75, 1.0));
    EXPECT_THAT(SurfaceColorOf(universe), ElementsAre());
}

TEST(XMLUniverse, ACurveColorKeepsItsAlphaAndFractionsOutsideOfZeroToOne)
{
    ReadUniverse const universe(
        "<DefaultCurveColor FractionRed='-1' FractionGreen='2' FractionBlue='1e3' FractionAlpha='0.5'/>");
    EXPECT_THAT(CurveColorOf(universe), ElementsAre(-1.0, 2.0, 1000.0, 0.5));
}

TEST(XMLUniverse, ASurfaceColorAloneAnswersTheCurveColorThatWasNeverWritten)
{
    ReadUniverse const universe(ColorText("DefaultSurfaceColor", "0.25", "0.5", "0.75"));
    EXPECT_THAT(CurveColorOf(universe), ElementsAre());
    EXPECT_THAT(SurfaceColorOf(universe), ElementsAre(0.0, 0.0, 0.0, 1.0));
}

TEST(XMLUniverse, WithBothColorsTheSurfaceAnswersTheCurves)
{
    for (bool const isCurveFirst : {true, false})
    {
        std::string const curve = ColorText("DefaultCurveColor", "1", "0", "0");
        std::string const surface = ColorText("DefaultSurfaceColor", "0", "1", "0");
        ReadUniverse const universe(isCurveFirst ? curve + surface : surface + curve);
        EXPECT_THAT(CurveColorOf(universe), ElementsAre(1.0, 0.0, 0.0, 1.0));
        EXPECT_THAT(SurfaceColorOf(universe), ElementsAre(1.0, 0.0, 0.0, 1.0));
    }
}

TEST(XMLUniverse, AColorWithoutOneOfItsThreeFractionsIsIgnored)
{
    for (char const* const attributes :
         {"FractionRed='1' FractionGreen='1'", "FractionRed='1' FractionBlue='1'", "FractionGreen='1' FractionBlue='1'",
          "FractionGreen='1' FractionBlue='1' FractionAlpha='1'", "fractionred='1' FractionGreen='1' FractionBlue='1'",
          ""})
    {
        ReadUniverse const universe(std::string("<DefaultCurveColor ") + attributes + "/><DefaultSurfaceColor " +
                                    attributes + "/>");
        EXPECT_THAT(CurveColorOf(universe), ElementsAre()) << attributes;
        EXPECT_THAT(SurfaceColorOf(universe), ElementsAre()) << attributes;
    }
}

TEST(XMLUniverse, AnIgnoredColorLeavesTheOneBeforeIt)
{
    ReadUniverse const universe(ColorText("DefaultCurveColor", "1", "0", "0") +
                                "<DefaultCurveColor FractionRed='0.5'/>");
    EXPECT_THAT(CurveColorOf(universe), ElementsAre(1.0, 0.0, 0.0, 1.0));
}

TEST(XMLUniverse, ARepeatedColorReplacesTheOneBefore)
{
    ReadUniverse const universe(ColorText("DefaultCurveColor", "1", "0", "0") +
                                ColorText("DefaultCurveColor", "0", "1", "0"));
    EXPECT_THAT(CurveColorOf(universe), ElementsAre(0.0, 1.0, 0.0, 1.0));
}

TEST(XMLUniverse, AFractionThatIsNoNumberIsZeroAndTheColorCounts)
{
    ReadUniverse const universe(
        "<DefaultCurveColor FractionRed='red' FractionGreen='' FractionBlue='0,5' FractionAlpha='none'/>");
    EXPECT_THAT(CurveColorOf(universe), ElementsAre(0.0, 0.0, 0.0, 0.0));
}

TEST(XMLUniverse, ViewDataAnswersBothVectors)
{
    ReadUniverse const universe(
        ViewText("<UpVector>0,0,1</UpVector>\n<FrontVector> 0.5 , -1 , 2e1 </FrontVector>text<Other>1,1,1</Other>"));
    auto const data = AnswerOf(*universe, &IUniverse::ViewingDataOf);
    ASSERT_TRUE(data);
    EXPECT_THAT(ComponentsOf(data->UpVector()), ElementsAre(0, 0, 1));
    EXPECT_THAT(ComponentsOf(data->FrontVector()), ElementsAre(0.5, -1, 20));
}

TEST(XMLUniverse, AVectorOfAnotherNumberOfPiecesLeavesTheVectorAndTheViewDataIsThereAllTheSame)
{
    for (char const* const text : {"1,0", "1,0,0,0", "1", "", "1 0 0", "1,0,0,", "1;0;0"})
    {
        ReadUniverse const universe(ViewText(std::string("<UpVector>") + text + "</UpVector>"));
        auto const data = AnswerOf(*universe, &IUniverse::ViewingDataOf);
        ASSERT_TRUE(data) << text;
        EXPECT_THAT(ComponentsOf(data->UpVector()), ElementsAre(0, 0, 0)) << text;
    }
}

TEST(XMLUniverse, AnEmptyViewDataIsViewDataOfTwoZeroVectors)
{
    ReadUniverse const universe("<ViewData/>");
    auto const data = AnswerOf(*universe, &IUniverse::ViewingDataOf);
    ASSERT_TRUE(data);
    EXPECT_THAT(ComponentsOf(data->UpVector()), ElementsAre(0, 0, 0));
    EXPECT_THAT(ComponentsOf(data->FrontVector()), ElementsAre(0, 0, 0));
}

TEST(XMLUniverse, AComponentThatIsNoNumberIsZero)
{
    ReadUniverse const universe(ViewText("<UpVector>7,7,7</UpVector><UpVector>1,x,</UpVector>"));
    EXPECT_THAT(ComponentsOf(AnswerOf(*universe, &IUniverse::ViewingDataOf)->UpVector()), ElementsAre(1, 0, 0));
}

TEST(XMLUniverse, ASecondViewDataWritesIntoTheSame)
{
    ReadUniverse const universe(ViewText("<UpVector>1,2,3</UpVector><FrontVector>4,5,6</FrontVector>") +
                                ViewText("<FrontVector>7,8,9</FrontVector><UpVector>bad</UpVector>"));
    auto const data = AnswerOf(*universe, &IUniverse::ViewingDataOf);
    ASSERT_TRUE(data);
    EXPECT_THAT(ComponentsOf(data->UpVector()), ElementsAre(1, 2, 3));
    EXPECT_THAT(ComponentsOf(data->FrontVector()), ElementsAre(7, 8, 9));
}

TEST(XMLUniverse, AVectorsTextMayBeCutByCommentsAndCharacterData)
{
    ReadUniverse const universe(ViewText("<UpVector>1,<!-- 9,9 --><![CDATA[2,]]><b>3</b></UpVector>"));
    EXPECT_THAT(ComponentsOf(AnswerOf(*universe, &IUniverse::ViewingDataOf)->UpVector()), ElementsAre(1, 2, 3));
}

TEST(XMLUniverse, NamesOfChildrenAreExact)
{
    ReadUniverse const universe("<viewData/>" + ColorText("defaultCurveColor", "1", "1", "1") +
                                ColorText("DEFAULTSURFACECOLOR", "1", "1", "1") +
                                "<customData><CustomDataItem Type='5' Key='k' Value='v'/></customData>"
                                "<CustomData><customDataItem Type='5' Key='k' Value='v'/></CustomData>"
                                "ViewData<!-- <ViewData/> --><?ViewData?>");
    EXPECT_THAT(CurveColorOf(universe), ElementsAre());
    EXPECT_THAT(SurfaceColorOf(universe), ElementsAre());
    EXPECT_FALSE(AnswerOf(*universe, &IUniverse::ViewingDataOf));
    EXPECT_EQ(universe->CustomDataCount(), 0u);
}

TEST(XMLUniverse, NamesInsideOfViewDataAreExact)
{
    ReadUniverse const universe(ViewText("<upVector>1,2,3</upVector><FRONTVECTOR>1,2,3</FRONTVECTOR>"));
    auto const data = AnswerOf(*universe, &IUniverse::ViewingDataOf);
    ASSERT_TRUE(data);
    EXPECT_THAT(ComponentsOf(data->UpVector()), ElementsAre(0, 0, 0));
    EXPECT_THAT(ComponentsOf(data->FrontVector()), ElementsAre(0, 0, 0));
}

TEST(XMLUniverse, AttributesOfItsOwnElementAreNotRead)
{
    TestScene scene(InScene("<IUniverse ID='u' DefaultCurveColor='1' Label='x'/>"));
    scene.Begin();
    ASSERT_NE(scene.Producer().LoadUniverse(), nullptr);
    EXPECT_FALSE(scene.Has("u"));
}

TEST(XMLUniverse, OfTwoTheLastIsServedAndTheFirstDoesNotAddToIt)
{
    TestScene scene(
        InScene("<IUniverse><ViewData/><CustomData><CustomDataItem Type='5' Key='a'/></CustomData>"
                "</IUniverse><IUniverse>" +
                ColorText("DefaultCurveColor", "1", "0", "0") + "</IUniverse>"));
    scene.Begin();
    IUniverse const* const universe = scene.Producer().LoadUniverse();
    ASSERT_NE(universe, nullptr);
    EXPECT_EQ(universe->CustomDataCount(), 0u);
    EXPECT_FALSE(AnswerOf(*universe, &IUniverse::ViewingDataOf));
    EXPECT_TRUE(AnswerOf(*universe, &IUniverse::DefaultCurveColor));
}

}  // namespace KVR::Test

#include "structure/XMLFileProperties.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "framework/xml_util/XMLStrUtil.h"
#include "tests/structure/Answers.h"
#include "tests/support/ParsedDocument.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;

// File properties read from their element, outside of any scene.
class ReadProperties
{
public:
    explicit ReadProperties(std::string const& content)
        : m_document("<FileProperties>" + content + "</FileProperties>"), m_properties(m_document.Root())
    {
    }
    FileProperties const& operator*() const { return m_properties; }
    FileProperties const* operator->() const { return &m_properties; }

private:
    ParsedDocument m_document;
    XMLFileProperties m_properties;
};

struct TextGetter
{
    char const* key;
    IsValueSpecifiedEnum (FileProperties::*getter)(UTF16String&) const;

    friend std::ostream& operator<<(std::ostream& out, TextGetter const& row) { return out << row.key; }
};

class TextGetters : public testing::TestWithParam<TextGetter>
{
};

std::string ElementText(char const* name, char const* text)
{
    return std::string("<") + name + ">" + text + "</" + name + ">";
}

std::string ViewText(std::string const& content)
{
    return "<ViewData>" + content + "</ViewData>";
}

}  // namespace

INSTANTIATE_TEST_SUITE_P(XMLFileProperties, TextGetters,
                         testing::Values(TextGetter{"Title", &FileProperties::Title},
                                         TextGetter{"Author", &FileProperties::Author},
                                         TextGetter{"Organization", &FileProperties::Organization},
                                         TextGetter{"Description", &FileProperties::Description},
                                         TextGetter{"SendingSystem", &FileProperties::SendingSystem},
                                         TextGetter{"PartNumber", &FileProperties::PartNumber},
                                         TextGetter{"Revision", &FileProperties::Revision},
                                         TextGetter{"Preprocessor", &FileProperties::Preprocessor},
                                         TextGetter{"Authorisation", &FileProperties::Authorisation}),
                         [](auto const& test) { return test.param.key; });

TEST_P(TextGetters, AnswersTheTextOfTheElementOfItsName)
{
    ReadProperties const properties(ElementText(GetParam().key, " some \xC3\xB6 text "));
    EXPECT_EQ(TextOf(*properties, GetParam().getter), " some \xC3\xB6 text ");
}

TEST_P(TextGetters, IsNotSpecifiedWithoutTheElementAndLeavesItsOutputAlone)
{
    std::string others;
    for (char const* const name : {"Title", "Author", "Organization", "Description", "SendingSystem", "PartNumber",
                                   "Revision", "Preprocessor", "Authorisation", "CreationDate", "MassUnit"})
    {
        if (name != std::string(GetParam().key))
            others += ElementText(name, "other");
    }
    ReadProperties const properties(others);
    UTF16String text(L"before");
    EXPECT_EQ(((*properties).*GetParam().getter)(text), kIsValueSpecified_No);
    EXPECT_EQ(Text(text), "before");
}

TEST_P(TextGetters, OfTwoElementsAnswersTheFirst)
{
    ReadProperties const properties(ElementText(GetParam().key, "first") + ElementText(GetParam().key, "second"));
    EXPECT_EQ(TextOf(*properties, GetParam().getter), "first");
}

TEST_P(TextGetters, AnswersAnEmptyTextForAnEmptyElement)
{
    ReadProperties const properties(ElementText(GetParam().key, "") + ElementText(GetParam().key, "second"));
    EXPECT_EQ(TextOf(*properties, GetParam().getter), "");
}

TEST_P(TextGetters, IsNotSpecifiedForItsNameInAnotherCase)
{
    std::string name = GetParam().key;
    name[0] = static_cast<char>(name[0] - 'A' + 'a');
    ReadProperties const properties(ElementText(name.c_str(), "x"));
    EXPECT_EQ(TextOf(*properties, GetParam().getter), std::nullopt);
}

TEST(XMLFileProperties, TheTextOfNestedElementsAndCharacterDataCountsAndCommentsDoNot)
{
    ReadProperties const properties(
        "<Title>A <b>bold <i>title</i></b><!-- no --><![CDATA[ & <more>]]>&amp;<?no no?></Title>");
    EXPECT_EQ(TextOf(*properties, &FileProperties::Title), "A bold title & <more>&");
    EXPECT_EQ(properties->CustomPropertyCount(), 0u);
}

TEST(XMLFileProperties, AnElementInsideOfAnotherIsNoProperty)
{
    ReadProperties const properties("<Other><Title>inner</Title></Other><Title>outer</Title>");
    EXPECT_EQ(TextOf(*properties, &FileProperties::Title), "outer");
}

TEST(XMLFileProperties, AWordSpelledWithAZIsAnotherKey)
{
    ReadProperties const properties("<Authorization>x</Authorization><Organisation>x</Organisation>");
    EXPECT_EQ(TextOf(*properties, &FileProperties::Authorisation), std::nullopt);
    EXPECT_EQ(TextOf(*properties, &FileProperties::Organization), std::nullopt);
}

TEST(XMLFileProperties, TextBetweenTheElementsIsNoProperty)
{
    ReadProperties const properties("Title <Author>a</Author> more");
    EXPECT_EQ(TextOf(*properties, &FileProperties::Title), std::nullopt);
    EXPECT_EQ(TextOf(*properties, &FileProperties::Author), "a");
}

TEST(XMLFileProperties, ANullNodeHasNoProperties)
{
    XMLFileProperties const properties(nullptr);
    EXPECT_EQ(TextOf(properties, &FileProperties::Title), std::nullopt);
    EXPECT_FALSE(AnswerOf(properties, &FileProperties::ViewDataOf));
    EXPECT_EQ(properties.CustomPropertyCount(), 0u);
}

TEST(XMLFileProperties, TheCreationDateIsConvertedWhenAsked)
{
    ReadProperties const properties("<CreationDate>2024-02-29T23:30:15.5-02:00</CreationDate>");
    auto const time = AnswerOf(*properties, &FileProperties::CreationDate);
    ASSERT_TRUE(time);
    struct tm const& value = time->Value();
    EXPECT_THAT((std::array{value.tm_year, value.tm_mon, value.tm_mday, value.tm_hour, value.tm_min, value.tm_sec}),
                ElementsAre(124, 2, 1, 1, 30, 15));
    EXPECT_EQ(value.tm_wday, 5);
    EXPECT_EQ(value.tm_yday, 60);
}

TEST(XMLFileProperties, ABadCreationDateIsNotSpecifiedThoughItsKeyExists)
{
    for (char const* const text : {"yesterday", "", "2024-02-30", "2024-13-01", "01.03.2024", "2024-03-01T25:00:00"})
    {
        // The second element of the name does not stand in for the first.
        ReadProperties const properties(ElementText("CreationDate", text) + ElementText("CreationDate", "2024-03-01"));
        EXPECT_FALSE(AnswerOf(*properties, &FileProperties::CreationDate)) << text;
    }
}

TEST(XMLFileProperties, WithoutACreationDateThereIsNone)
{
    ReadProperties const properties("<Title>2024-03-01</Title>");
    EXPECT_FALSE(AnswerOf(*properties, &FileProperties::CreationDate));
}

TEST(XMLFileProperties, MassAndTimeUnitAnswerTheirUnits)
{
    ReadProperties const properties(ElementText("MassUnit", "kUnitType_Slug") +
                                    ElementText("TimeUnit", "kUnitType_Hour"));
    EXPECT_EQ(AnswerOf(*properties, &FileProperties::MassUnit), kUnitType_Slug);
    EXPECT_EQ(AnswerOf(*properties, &FileProperties::TimeUnit), kUnitType_Hour);
}

TEST(XMLFileProperties, TheKindOfAUnitIsNotTested)
{
    ReadProperties const properties(ElementText("MassUnit", "kUnitType_Inch"));
    EXPECT_EQ(AnswerOf(*properties, &FileProperties::MassUnit), kUnitType_Inch);
}

TEST(XMLFileProperties, AUnitThatIsNoneIsSpecifiedAndLeavesTheOutputAlone)
{
    for (char const* const text : {"kilogram", "", " kUnitType_Gram", "KUNITTYPE_GRAM"})
    {
        ReadProperties const properties(ElementText("MassUnit", text) + ElementText("TimeUnit", text));
        UnitTypeEnum unit = kUnitType_Tonne;
        EXPECT_EQ(properties->MassUnit(unit), kIsValueSpecified_Yes) << text;
        EXPECT_EQ(properties->TimeUnit(unit), kIsValueSpecified_Yes) << text;
        EXPECT_EQ(unit, kUnitType_Tonne) << text;
    }
}

TEST(XMLFileProperties, WithoutTheElementsNoUnitIsSpecified)
{
    ReadProperties const properties("");
    EXPECT_EQ(AnswerOf(*properties, &FileProperties::MassUnit), std::nullopt);
    EXPECT_EQ(AnswerOf(*properties, &FileProperties::TimeUnit), std::nullopt);
}

TEST(XMLFileProperties, ViewDataIsReadInAnyCase)
{
    for (char const* const name : {"ViewData", "viewdata", "VIEWDATA", "vIEWdATA"})
    {
        ReadProperties const properties(
            ElementText(name, "<UpVector>1,2,3</UpVector><FrontVector>-4,5e-1,6</FrontVector>"));
        auto const data = AnswerOf(*properties, &FileProperties::ViewDataOf);
        ASSERT_TRUE(data) << name;
        EXPECT_THAT(ComponentsOf(data->UpVector()), ElementsAre(1, 2, 3));
        EXPECT_THAT(ComponentsOf(data->FrontVector()), ElementsAre(-4, 0.5, 6));
    }
}

TEST(XMLFileProperties, ABadUpVectorWithAGoodFrontVectorIsViewDataWithTheUpVectorLeftAlone)
{
    ReadProperties const properties(ViewText("<UpVector>1,2</UpVector><FrontVector>4,5,6</FrontVector>"));
    ViewData data;
    data.SetUpVector(7, 8, 9);
    EXPECT_EQ(properties->ViewDataOf(data), kIsValueSpecified_Yes);
    EXPECT_THAT(ComponentsOf(data.UpVector()), ElementsAre(7, 8, 9));
    EXPECT_THAT(ComponentsOf(data.FrontVector()), ElementsAre(4, 5, 6));
}

TEST(XMLFileProperties, AGoodUpVectorAloneIsViewData)
{
    ReadProperties const properties(ViewText("<UpVector>1,2,3</UpVector>"));
    ViewData data;
    data.SetFrontVector(7, 8, 9);
    EXPECT_EQ(properties->ViewDataOf(data), kIsValueSpecified_Yes);
    EXPECT_THAT(ComponentsOf(data.UpVector()), ElementsAre(1, 2, 3));
    EXPECT_THAT(ComponentsOf(data.FrontVector()), ElementsAre(7, 8, 9));
}

TEST(XMLFileProperties, TwoBadVectorsOrNoneAreNoViewDataAndLeaveTheOutputAlone)
{
    for (char const* const content :
         {"", "<ViewData/>", "<ViewData><UpVector>1,2,3,4</UpVector><FrontVector/></ViewData>",
          "<ViewData><upvector>1,2,3</upvector></ViewData>", "<ViewData>1,2,3</ViewData>"})
    {
        ReadProperties const properties(content);
        ViewData data;
        data.SetUpVector(7, 8, 9);
        EXPECT_EQ(properties->ViewDataOf(data), kIsValueSpecified_No) << content;
        EXPECT_THAT(ComponentsOf(data.UpVector()), ElementsAre(7, 8, 9)) << content;
    }
}

TEST(XMLFileProperties, AComponentThatIsNoNumberIsZero)
{
    ReadProperties const properties(ViewText("<UpVector>1,up,</UpVector>"));
    EXPECT_THAT(ComponentsOf(AnswerOf(*properties, &FileProperties::ViewDataOf)->UpVector()), ElementsAre(1, 0, 0));
}

TEST(XMLFileProperties, OfSeveralVectorsTheFirstStaysEvenWhenItIsBad)
{
    ReadProperties const good(ViewText("<UpVector>1,2,3</UpVector>") + ViewText("<UpVector>4,5,6</UpVector>"));
    EXPECT_THAT(ComponentsOf(AnswerOf(*good, &FileProperties::ViewDataOf)->UpVector()), ElementsAre(1, 2, 3));
    ReadProperties const bad(ViewText("<UpVector>bad</UpVector><UpVector>4,5,6</UpVector>"));
    EXPECT_FALSE(AnswerOf(*bad, &FileProperties::ViewDataOf));
}

TEST(XMLFileProperties, AVectorOutsideOfViewDataIsTheSameKey)
{
    ReadProperties const properties("<UpVector>1,2,3</UpVector><FrontVector>7,8,9</FrontVector>" +
                                    ViewText("<UpVector>4,5,6</UpVector><FrontVector>4,5,6</FrontVector>"));
    auto const data = AnswerOf(*properties, &FileProperties::ViewDataOf);
    ASSERT_TRUE(data);
    EXPECT_THAT(ComponentsOf(data->UpVector()), ElementsAre(1, 2, 3));
    EXPECT_THAT(ComponentsOf(data->FrontVector()), ElementsAre(7, 8, 9));
}

TEST(XMLFileProperties, OnlyTheVectorsOfViewDataAreKept)
{
    ReadProperties const properties(ViewText("<Title>inner</Title>text"));
    EXPECT_EQ(TextOf(*properties, &FileProperties::Title), std::nullopt);
}

}  // namespace KVR::Test

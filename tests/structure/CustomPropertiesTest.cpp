#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "structure/XMLFileProperties.h"
#include "tests/structure/Answers.h"
#include "tests/support/ParsedDocument.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;

// A property in words: its name, its type and its value.
std::string InWords(CustomProperty const& property)
{
    std::string const name = Text(property.Name()) + " ";
    if (auto const text = TextOf<UTF16String>(property, &CustomProperty::Value))
        return name + "text " + *text;
    if (auto const integer = AnswerOf<int>(property, &CustomProperty::Value))
        return name + "int " + std::to_string(*integer);
    if (auto const number = AnswerOf<double>(property, &CustomProperty::Value))
        return name + "double " + std::to_string(*number);
    if (auto const flag = AnswerOf<bool>(property, &CustomProperty::Value))
        return name + (*flag ? "true" : "false");
    if (auto const time = AnswerOf<struct tm>(property, &CustomProperty::Value))
        return name + "time " + std::to_string(time->tm_year + 1900) + " day " + std::to_string(time->tm_yday) + " " +
               std::to_string(time->tm_hour) + ":" + std::to_string(time->tm_min);
    return name + "nothing";
}

std::vector<std::string> Read(std::string const& content)
{
    ParsedDocument const document("<FileProperties>" + content + "</FileProperties>");
    XMLFileProperties const properties(document.Root());
    std::vector<std::string> words;
    for (unsigned long long i = 0; i < properties.CustomPropertyCount(); ++i)
    {
        CustomProperty property;
        EXPECT_EQ(properties.CustomPropertyAt(i, property), kIsValueSpecified_Yes);
        words.push_back(InWords(property));
    }
    return words;
}

std::vector<std::string> ReadItems(std::string const& items)
{
    return Read("<CustomProperties>" + items + "</CustomProperties>");
}

std::string Item(std::string const& key, char const* type, char const* value)
{
    return "<CustomProperty Key='" + key + "' Type='" + type + "' Value='" + value + "'/>";
}

}  // namespace

TEST(CustomProperties, AStringIsTakenAsWritten)
{
    EXPECT_THAT(ReadItems(Item("k \xC3\xB6", "kString", " a  b ")), ElementsAre("k \xC3\xB6 text  a  b "));
}

TEST(CustomProperties, AnIntIsConvertedAndIsZeroWhenItIsNone)
{
    EXPECT_THAT(ReadItems(Item("a", "kInt", "-42") + Item("b", "kInt", "4.5") + Item("c", "kInt", "") +
                          Item("d", "kInt", "99999999999") + Item("e", "kInt", " 7 ")),
                ElementsAre("a int -42", "b int 0", "c int 0", "d int 0", "e int 7"));
}

TEST(CustomProperties, ADoubleIsConvertedAndIsZeroWhenItIsNone)
{
    EXPECT_THAT(ReadItems(Item("a", "kDouble", "-2.5e1") + Item("b", "kDouble", "2,5") + Item("c", "kDouble", "inf") +
                          Item("d", "kDouble", "")),
                ElementsAre("a double -25.000000", "b double 0.000000", "c double 0.000000", "d double 0.000000"));
}

TEST(CustomProperties, ABoolIsTrueForTheOneWordTrue)
{
    EXPECT_THAT(ReadItems(Item("a", "kBool", "True") + Item("b", "kBool", "true") + Item("c", "kBool", "TRUE") +
                          Item("d", "kBool", "1") + Item("e", "kBool", "") + Item("f", "kBool", " True")),
                ElementsAre("a true", "b false", "c false", "d false", "e false", "f false"));
}

TEST(CustomProperties, ATimeIsBrokenDownInUTC)
{
    EXPECT_THAT(ReadItems(Item("a", "kTime", "2024-03-01T00:30:00+01:00") + Item("b", "kTime", "2023-12-31")),
                ElementsAre("a time 2024 day 59 23:30", "b time 2023 day 364 0:0"));
}

TEST(CustomProperties, ATimeThatDoesNotConvertIsMissingAndThoseBehindItAreRead)
{
    EXPECT_THAT(ReadItems(Item("a", "kTime", "soon") + Item("b", "kString", "x") + Item("c", "kTime", "") +
                          Item("d", "kInt", "1")),
                ElementsAre("b text x", "d int 1"));
}

TEST(CustomProperties, ATypeOutsideTheTableKeepsThatOfThePropertyBefore)
{
    EXPECT_THAT(
        ReadItems(Item("a", "kInt", "1") + Item("b", "kFloat", "2") + Item("c", "", "3") + Item("d", "kBool", "True") +
                  Item("e", "KINT", "True") + "<CustomProperty Key='f' Value='True'/>" + Item("g", "kDouble", "1") +
                  Item("h", " kInt", "2")),
        ElementsAre("a int 1", "b int 2", "c int 3", "d true", "e true", "f true", "g double 1.000000",
                    "h double 2.000000"));
}

TEST(CustomProperties, ADroppedTimeLeavesItsTypeToThoseBehindIt)
{
    EXPECT_THAT(ReadItems(Item("a", "kTime", "soon") + Item("b", "?", "2024-01-01") + Item("c", "?", "soon") +
                          Item("d", "?", "2024-01-02T10:20:00")),
                ElementsAre("b time 2024 day 0 0:0", "d time 2024 day 1 10:20"));
}

TEST(CustomProperties, AFirstTypeOutsideTheTableIsAString)
{
    EXPECT_THAT(ReadItems(Item("a", "kFloat", "1.5") + "<CustomProperty Key='b' Value='2'/>"),
                ElementsAre("a text 1.5", "b text 2"));
}

TEST(CustomProperties, ASecondElementStartsWithStringsAgainAndAppends)
{
    EXPECT_THAT(Read("<CustomProperties>" + Item("a", "kInt", "1") + "</CustomProperties><CustomProperties>" +
                     Item("b", "?", "2") + "</CustomProperties>"),
                ElementsAre("a int 1", "b text 2"));
}

TEST(CustomProperties, AMissingKeyOrValueIsEmpty)
{
    EXPECT_THAT(ReadItems("<CustomProperty Type='kString'/>"), ElementsAre(" text "));
}

TEST(CustomProperties, RepeatedKeysStayInDocumentOrder)
{
    EXPECT_THAT(ReadItems(Item("b", "kInt", "1") + Item("a", "kInt", "2") + Item("b", "kInt", "3")),
                ElementsAre("b int 1", "a int 2", "b int 3"));
}

TEST(CustomProperties, OtherNamesAreSkipped)
{
    EXPECT_THAT(ReadItems("CustomProperty<customProperty Key='x' Type='kInt' Value='1'/><Other Type='kInt'/>" +
                          Item("a", "?", "1")),
                ElementsAre("a text 1"));
    EXPECT_THAT(Read("<customProperties>" + Item("a", "kInt", "1") + "</customProperties>"), ElementsAre());
}

TEST(CustomProperties, AnIndexAtOrBeyondTheCountIsNotSpecifiedAndLeavesTheOutputAlone)
{
    ParsedDocument const document("<FileProperties><CustomProperties>" + Item("a", "kInt", "1") +
                                  "</CustomProperties></FileProperties>");
    XMLFileProperties const properties(document.Root());
    CustomProperty property;
    property.SetProperty(Wide("before"), 7);
    for (unsigned long long const index : {properties.CustomPropertyCount(), 2ull, ~0ull})
    {
        EXPECT_EQ(properties.CustomPropertyAt(index, property), kIsValueSpecified_No);
        EXPECT_EQ(InWords(property), "before int 7");
    }
}

}  // namespace KVR::Test

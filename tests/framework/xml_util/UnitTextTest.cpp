#include <gtest/gtest.h>

#include <array>
#include <set>
#include <string>

#include "framework/xml_util/XMLStrUtil.h"

namespace
{

using namespace KVR;

struct Row
{
    char const* text;
    int value;
};

constexpr Row kUnits[] = {
    {"kUnitType_Unknown", 0},
    // length
    {"kUnitType_Micrometer", 1},
    {"kUnitType_Millimeter", 2},
    {"kUnitType_Centimeter", 3},
    {"kUnitType_Decimeter", 4},
    {"kUnitType_Meter", 5},
    {"kUnitType_Kilometer", 6},
    {"kUnitType_Microinch", 7},
    {"kUnitType_Mil", 8},
    {"kUnitType_Inch", 9},
    {"kUnitType_Foot", 10},
    {"kUnitType_Yard", 11},
    {"kUnitType_Mile", 12},
    // angle
    {"kUnitType_Radian", 32},
    {"kUnitType_Degree", 33},
    {"kUnitType_Gradian", 34},
    // mass
    {"kUnitType_Milligram", 48},
    {"kUnitType_Gram", 49},
    {"kUnitType_Kilogram", 50},
    {"kUnitType_Tonne", 51},
    {"kUnitType_Ounce", 52},
    {"kUnitType_Pound", 53},
    {"kUnitType_Slug", 54},
    // time
    {"kUnitType_Millisecond", 64},
    {"kUnitType_Second", 65},
    {"kUnitType_Minute", 66},
    {"kUnitType_Hour", 67},
    {"kUnitType_Day", 68},
};

void ExpectRefused(std::string const& text)
{
    UnitTypeEnum unit = kUnitType_Slug;
    EXPECT_FALSE(XMLStrUtil::StringToUnitType(UTF8String(text), unit)) << '"' << text << '"';
    EXPECT_EQ(unit, kUnitType_Slug) << '"' << text << '"';
}

TEST(UnitText, NamesEveryUnit)
{
    for (Row const& row : kUnits)
    {
        UnitTypeEnum unit = row.value == kUnitType_Slug ? kUnitType_Day : kUnitType_Slug;
        EXPECT_TRUE(XMLStrUtil::StringToUnitType(row.text, unit)) << row.text;
        EXPECT_EQ(static_cast<int>(unit), row.value) << row.text;
    }
}

TEST(UnitText, IsGivenBackForEveryUnit)
{
    for (Row const& row : kUnits)
        EXPECT_STREQ(XMLStrUtil::UnitTypeToString(static_cast<UnitTypeEnum>(row.value)), row.text);
}

TEST(UnitText, IsNullForAValueThatIsNoUnit)
{
    std::set<int> values;
    for (Row const& row : kUnits)
        values.insert(row.value);
    for (int value = 0; value < 128; ++value)
    {
        if (values.count(value) == 0)
        {
            EXPECT_EQ(XMLStrUtil::UnitTypeToString(static_cast<UnitTypeEnum>(value)), nullptr) << value;
        }
    }
}

TEST(UnitText, IsComparedExactly)
{
    for (Row const& row : kUnits)
    {
        std::string const text = row.text;
        ExpectRefused(std::string(" ").append(text));
        ExpectRefused(text + ' ');
        ExpectRefused(text + '\n');
        ExpectRefused(text.substr(0, text.size() - 2));
        ExpectRefused(text.substr(1));
        ExpectRefused(text + 's');
        ExpectRefused(text + std::string(1, '\0'));
        std::string otherCase = text;
        for (char& c : otherCase)
            c = static_cast<char>(c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c);
        ExpectRefused(otherCase);
        ExpectRefused(std::string("K").append(text, 1));
    }
}

TEST(UnitText, OfAnyOtherKindIsRefused)
{
    for (char const* const text : {"", " ", "mm", "Millimeter", "millimeter", "2", "kUnitType_", "kUnitType_Parsec"})
        ExpectRefused(text);
}

}  // namespace

#include <gtest/gtest.h>

#include <string>

#include "framework/api/UnitText.h"

namespace
{

using namespace KVR;

TEST(UnitTexts, EveryUnitHasOneThatLeadsBackToIt)
{
    int count = 0;
    for (int number = -1; number < 256; ++number)
    {
        char const* const text = TextOfUnit(static_cast<UnitTypeEnum>(number));
        if (!text)
            continue;
        ++count;
        EXPECT_TRUE(std::string(text).starts_with("kUnitType_"));
        UnitTypeEnum unit = number == kUnitType_Mile ? kUnitType_Day : kUnitType_Mile;
        EXPECT_TRUE(UnitOfText(text, unit)) << text;
        EXPECT_EQ(static_cast<int>(unit), number) << text;
    }
    EXPECT_EQ(count, 28);
    EXPECT_STREQ(TextOfUnit(kUnitType_Inch), "kUnitType_Inch");
    EXPECT_STREQ(TextOfUnit(kUnitType_Unknown), "kUnitType_Unknown");
}

TEST(UnitTexts, AnyOtherTextLeavesTheUnit)
{
    for (char const* const text : {"", "Inch", "kUnitType_inch", "kUnitType_Inch ", "kUnitType_", "9"})
    {
        UnitTypeEnum unit = kUnitType_Slug;
        EXPECT_FALSE(UnitOfText(text, unit)) << text;
        EXPECT_EQ(unit, kUnitType_Slug) << text;
    }
}

}  // namespace

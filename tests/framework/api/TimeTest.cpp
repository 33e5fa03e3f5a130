#include "framework/api/Time.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <ctime>
#include <string>

namespace
{

using namespace KVR;

// The fields that a struct tm takes part in, in one text: date, clock, week day, year day.
std::string TextOf(struct tm const& t)
{
    char text[100];
    std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02d %d %d", t.tm_year + 1900, t.tm_mon + 1, t.tm_mday,
                  t.tm_hour, t.tm_min, t.tm_sec, t.tm_wday, t.tm_yday);
    return text;
}

std::string Read(char const* text)
{
    Time time;
    return Time::FromString(text, time) ? TextOf(time.Value()) : "no time";
}

TEST(Time, IsTheFirstOfJanuary1970UntilRead)
{
    EXPECT_EQ(TextOf(Time().Value()), "1970-01-01T00:00:00 4 0");
}

TEST(Time, ReadsDateAndClock)
{
    EXPECT_EQ(Read("2024-03-01T12:30:00"), "2024-03-01T12:30:00 5 60");
    EXPECT_EQ(Read("2024-03-01 12:30:59"), "2024-03-01T12:30:59 5 60");
    EXPECT_EQ(Read("2024-03-01T12:30"), "2024-03-01T12:30:00 5 60");
    EXPECT_EQ(Read("2024-03-01T00:00:00"), "2024-03-01T00:00:00 5 60");
    EXPECT_EQ(Read("2024-03-01T23:59:59"), "2024-03-01T23:59:59 5 60");
}

TEST(Time, ADateAloneIsMidnight)
{
    EXPECT_EQ(Read("2024-03-01"), "2024-03-01T00:00:00 5 60");
    EXPECT_EQ(Read("1969-07-20"), "1969-07-20T00:00:00 0 200");
}

TEST(Time, WhiteSpaceMayStandAround)
{
    EXPECT_EQ(Read(" \t\r\n2024-03-01T12:30:00 \n"), "2024-03-01T12:30:00 5 60");
}

TEST(Time, AFractionOfASecondIsDropped)
{
    EXPECT_EQ(Read("2024-03-01T12:30:00.999999999"), "2024-03-01T12:30:00 5 60");
    EXPECT_EQ(Read("2024-03-01T12:30:00.5Z"), "2024-03-01T12:30:00 5 60");
    EXPECT_EQ(Read("2024-03-01T12:30:00.5+01:00"), "2024-03-01T11:30:00 5 60");
}

TEST(Time, AZoneBringsTheValueToUtc)
{
    EXPECT_EQ(Read("2024-03-01T12:30:00Z"), "2024-03-01T12:30:00 5 60");
    EXPECT_EQ(Read("2024-03-01T12:30:00+02:00"), "2024-03-01T10:30:00 5 60");
    EXPECT_EQ(Read("2024-03-01T12:30:00-02:00"), "2024-03-01T14:30:00 5 60");
    EXPECT_EQ(Read("2024-03-01T12:30:00+05:45"), "2024-03-01T06:45:00 5 60");
    EXPECT_EQ(Read("2024-03-01T12:30:00+00:00"), "2024-03-01T12:30:00 5 60");
}

TEST(Time, AZoneCarriesOverDaysMonthsAndYears)
{
    EXPECT_EQ(Read("2024-03-02T01:00:00+02:00"), "2024-03-01T23:00:00 5 60");
    EXPECT_EQ(Read("2024-03-01T01:00:00+02:00"), "2024-02-29T23:00:00 4 59");
    EXPECT_EQ(Read("2023-03-01T01:00:00+02:00"), "2023-02-28T23:00:00 2 58");
    EXPECT_EQ(Read("2024-01-01T01:00:00+02:00"), "2023-12-31T23:00:00 0 364");
    EXPECT_EQ(Read("2025-01-01T01:00:00+02:00"), "2024-12-31T23:00:00 2 365");
    EXPECT_EQ(Read("2023-12-31T23:00:00-02:00"), "2024-01-01T01:00:00 1 0");
    EXPECT_EQ(Read("1970-01-01T00:00:00+00:01"), "1969-12-31T23:59:00 3 364");
}

TEST(Time, LeapDaysFollowTheGregorianCalendar)
{
    EXPECT_EQ(Read("2024-02-29"), "2024-02-29T00:00:00 4 59");
    EXPECT_EQ(Read("2000-02-29"), "2000-02-29T00:00:00 2 59");
    EXPECT_EQ(Read("2000-12-31"), "2000-12-31T00:00:00 0 365");
    EXPECT_EQ(Read("1900-12-31"), "1900-12-31T00:00:00 1 364");
    EXPECT_EQ(Read("2023-02-29"), "no time");
    EXPECT_EQ(Read("1900-02-29"), "no time");
    EXPECT_EQ(Read("2100-02-29"), "no time");
}

TEST(Time, EveryDayOfFourCenturiesHasItsWeekDayAndYearDay)
{
    // Counted on from Saturday, 1 January 2000, without any calendar's formula.
    int weekDay = 6;
    for (int year = 2000; year < 2400; ++year)
    {
        bool const leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
        int const lengths[] = {31, leap ? 29 : 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
        int yearDay = 0;
        for (int month = 0; month < 12; ++month)
        {
            for (int day = 1; day <= lengths[month]; ++day)
            {
                char text[40];
                std::snprintf(text, sizeof text, "%04d-%02d-%02d", year, month + 1, day);
                Time time;
                ASSERT_TRUE(Time::FromString(text, time)) << text;
                ASSERT_EQ(time.Value().tm_wday, weekDay) << text;
                ASSERT_EQ(time.Value().tm_yday, yearDay) << text;
                ASSERT_EQ(time.Value().tm_mday, day) << text;
                ASSERT_EQ(time.Value().tm_mon, month) << text;
                ASSERT_EQ(time.Value().tm_year, year - 1900) << text;
                weekDay = (weekDay + 1) % 7;
                ++yearDay;
            }
        }
    }
}

class TimeRefused : public testing::TestWithParam<char const*>
{
};

TEST_P(TimeRefused, TheTextDoesNotConvertAndTheOutputIsLeftAlone)
{
    Time time;
    ASSERT_TRUE(Time::FromString("2001-02-03T04:05:06", time));
    EXPECT_FALSE(Time::FromString(GetParam(), time)) << GetParam();
    EXPECT_EQ(TextOf(time.Value()), "2001-02-03T04:05:06 6 33");
}

INSTANTIATE_TEST_SUITE_P(OutOfRange, TimeRefused,
                         testing::Values("2024-13-01", "2024-00-01", "2024-02-30", "2024-04-31", "2024-01-32",
                                         "2024-01-00", "2024-01-01T24:00:00", "2024-01-01T12:60:00",
                                         "2024-01-01T12:30:60", "2024-01-01T12:30:00+24:00",
                                         "2024-01-01T12:30:00+02:60"));

INSTANTIATE_TEST_SUITE_P(
    Malformed, TimeRefused,
    testing::Values("", " ", "today", "2024", "2024-03", "2024-03-", "2024-3-1", "24-03-01", "02024-03-01",
                    "2024/03/01", "01.03.2024", "-024-03-01", "+2024-03-01", "2024-03-01T", "2024-03-01Z",
                    "2024-03-01+02:00", "2024-03-01t12:30:00", "2024-03-01T12", "2024-03-01T12:", "2024-03-01T1:30:00",
                    "2024-03-01T12:3", "2024-03-01T12:30:", "2024-03-01T12:30:0", "2024-03-01T12:30:00.",
                    "2024-03-01T12:30:00.Z", "2024-03-01T12:30:00.5x", "2024-03-01T12:30:00x",
                    "2024-03-01T12:30:00 +02:00", "2024-03-01T12:30:00+", "2024-03-01T12:30:00+2",
                    "2024-03-01T12:30:00+02:", "2024-03-01T12:30:00+02:0", "2024-03-01T12:30:00+02:00x",
                    "2024-03-01T12:30:00ZZ", "2024-03-01T12:30:00Z+02:00", "2024-03-01  12:30:00",
                    "2024-03-01T12:30:00 2024", "2024-0a-01", "2024-03-01T-1:30:00", "20240301", "2024-W09-5"));

TEST(Time, AZeroByteDoesNotConvert)
{
    Time time;
    EXPECT_FALSE(Time::FromString(UTF8String(std::string("2024-03-01\0", 11)), time));
}

TEST(Time, EveryPrefixOfATextIsTakenOrRefusedWithoutHarm)
{
    std::string const whole = "2024-03-01T12:30:45.25+02:00";
    std::string taken;
    for (std::size_t length = 0; length <= whole.size(); ++length)
    {
        Time time;
        taken += Time::FromString(UTF8String(whole.substr(0, length)), time) ? 'y' : '.';
    }
    // Taken: the date, the clock without and with seconds, each digit of the fraction, zone hours, zone minutes.
    EXPECT_EQ(taken, "..........y.....y..y.yy..y..y");
}

}  // namespace

#include "framework/api/LocaleHelper.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <string>
#include <thread>

#include <locale.h>

namespace
{

using namespace KVR;

constexpr char const* kCommaLocale = "de_DE.UTF-8";

// The decimal sign of the calling thread, as its number conversions use it.
char DecimalSign()
{
    if (std::strtod("1,5", nullptr) == 1.5)
        return ',';
    return std::strtod("1.5", nullptr) == 1.5 ? '.' : '?';
}

class LocaleHelperUnderACommaLocale : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_NE(std::setlocale(LC_ALL, kCommaLocale), nullptr) << "scripts/setup makes the locale " << kCommaLocale;
        ASSERT_EQ(DecimalSign(), ',');
    }
    void TearDown() override { std::setlocale(LC_ALL, "C"); }
};

TEST_F(LocaleHelperUnderACommaLocale, TheEmptyNameMakesTheClassicLocaleCurrentAndTheFormerOneAgainAtItsEnd)
{
    {
        LocaleHelper const helper("");
        EXPECT_EQ(DecimalSign(), '.');
        EXPECT_STREQ(localeconv()->decimal_point, ".");
    }
    EXPECT_EQ(DecimalSign(), ',');
    EXPECT_STREQ(localeconv()->decimal_point, ",");
}

TEST_F(LocaleHelperUnderACommaLocale, OtherThreadsAreNotTouched)
{
    LocaleHelper const helper("");
    char elsewhere = '?';
    std::thread([&] { elsewhere = DecimalSign(); }).join();
    EXPECT_EQ(elsewhere, ',');
    EXPECT_EQ(DecimalSign(), '.');
    EXPECT_STREQ(std::setlocale(LC_NUMERIC, nullptr), kCommaLocale) << "the locale of the process stays";
}

TEST_F(LocaleHelperUnderACommaLocale, AHelperOnAnotherThreadDoesNotTouchThisOne)
{
    char inside = '?';
    char here = '?';
    // Two threads in turn: the helper begins on one, this thread looks, the helper ends.
    std::thread(
        [&]
        {
            LocaleHelper const helper("");
            inside = DecimalSign();
            std::thread([&] { here = DecimalSign(); }).join();
        })
        .join();
    EXPECT_EQ(inside, '.');
    EXPECT_EQ(here, ',');
    EXPECT_EQ(DecimalSign(), ',');
}

TEST_F(LocaleHelperUnderACommaLocale, HelpersNest)
{
    {
        LocaleHelper const outer("");
        {
            LocaleHelper const inner(kCommaLocale);
            EXPECT_EQ(DecimalSign(), ',');
            {
                LocaleHelper const innermost("C");
                EXPECT_EQ(DecimalSign(), '.');
            }
            EXPECT_EQ(DecimalSign(), ',');
        }
        EXPECT_EQ(DecimalSign(), '.');
    }
    EXPECT_EQ(DecimalSign(), ',');
}

TEST_F(LocaleHelperUnderACommaLocale, AnUnknownNameChangesNothing)
{
    {
        LocaleHelper const helper("no_SUCH.LOCALE");
        EXPECT_EQ(DecimalSign(), ',');
        LocaleHelper const classic("");
        EXPECT_EQ(DecimalSign(), '.');
    }
    EXPECT_EQ(DecimalSign(), ',');
}

TEST_F(LocaleHelperUnderACommaLocale, AThreadsOwnLocaleComesBack)
{
    locale_t const classic = newlocale(LC_ALL_MASK, "C", nullptr);
    ASSERT_NE(classic, nullptr);
    locale_t const former = uselocale(classic);
    {
        LocaleHelper const helper(kCommaLocale);
        EXPECT_EQ(DecimalSign(), ',');
    }
    EXPECT_EQ(uselocale(nullptr), classic);
    EXPECT_EQ(DecimalSign(), '.');
    uselocale(former);
    freelocale(classic);
    EXPECT_EQ(DecimalSign(), ',');
}

TEST(LocaleHelper, ManyHelpersOneAfterTheOtherLeaveTheClassicLocaleAsItWas)
{
    for (int i = 0; i < 1000; ++i)
    {
        LocaleHelper const helper(i % 2 ? "" : kCommaLocale);
        ASSERT_EQ(DecimalSign(), i % 2 ? '.' : ',') << "scripts/setup makes the locale " << kCommaLocale;
    }
    EXPECT_EQ(DecimalSign(), '.');
    EXPECT_EQ(uselocale(nullptr), LC_GLOBAL_LOCALE);
}

}  // namespace

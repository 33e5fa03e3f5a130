// Numbers to text and back: under a locale whose decimal sign is a comma, and for every double that a writer prints.

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <array>
#include <bit>
#include <charconv>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <locale>
#include <string>

#include "framework/api/StringUtil.h"

namespace
{

using namespace KVR;

constexpr char const* kCommaLocale = "de_DE.UTF-8";

void ExpectNumbersToConvertAsEver()
{
    double value = -1.0;
    EXPECT_EQ(StringUtil::ToDouble("1234.5", value), 0);
    EXPECT_EQ(value, 1234.5);
    EXPECT_EQ(StringUtil::ToDouble(UTF8String(" -1.25e-2 "), value), 0);
    EXPECT_EQ(value, -0.0125);
    for (char const* const text : {"1,5", "1.234,5", "0,5", ",5", "1.234.567"})
        EXPECT_NE(StringUtil::ToDouble(text, value), 0) << text;
    EXPECT_EQ(value, -0.0125);

    int asInt = 0;
    EXPECT_EQ(StringUtil::ToInt("1234", asInt, 10), 0);
    EXPECT_EQ(asInt, 1234);
    EXPECT_NE(StringUtil::ToInt("1.234", asInt, 10), 0);
    unsigned long asUnsigned = 0;
    EXPECT_EQ(StringUtil::ToUnsignedlong("1234567", asUnsigned, 10), 0);
    EXPECT_EQ(asUnsigned, 1234567U);
    EXPECT_NE(StringUtil::ToUnsignedlong("1.234.567", asUnsigned, 10), 0);
    EXPECT_EQ(StringUtil::FromUnsignedlong(1234567, "%lu"), UTF8String("1234567"));
}

class NumberTextUnderACommaLocale : public testing::Test
{
protected:
    ~NumberTextUnderACommaLocale() override
    {
        std::locale::global(m_former);
        std::setlocale(LC_ALL, "C");
    }

private:
    std::locale m_former;
};

TEST_F(NumberTextUnderACommaLocale, TheLocaleOfTheCLibraryIsWithoutEffect)
{
    ASSERT_NE(std::setlocale(LC_ALL, kCommaLocale), nullptr) << "scripts/setup makes the locale " << kCommaLocale;
    ASSERT_EQ(std::strtod("1,5", nullptr), 1.5) << "the locale is not in force";
    ExpectNumbersToConvertAsEver();
}

TEST_F(NumberTextUnderACommaLocale, TheGlobalLocaleOfTheCppLibraryIsWithoutEffect)
{
    ASSERT_NO_THROW(std::locale::global(std::locale(kCommaLocale)))
        << "scripts/setup makes the locale " << kCommaLocale;
    ASSERT_EQ(std::use_facet<std::numpunct<char>>(std::locale()).decimal_point(), ',');
    ExpectNumbersToConvertAsEver();
}

TEST(NumberText, ConvertsUnderTheClassicLocale)
{
    ExpectNumbersToConvertAsEver();
}

// The bits of what is read back from a printed double, or those of a NaN when the text does not convert.
std::uint64_t ReadBack(double value, std::chars_format format)
{
    std::array<char, 2000> text{};
    auto const [end, error] = std::to_chars(text.data(), text.data() + text.size() - 1, value, format);
    double read = std::numeric_limits<double>::quiet_NaN();
    if (error == std::errc())
    {
        *end = '\0';
        StringUtil::ToDouble(text.data(), read);
    }
    return std::bit_cast<std::uint64_t>(read);
}

RC_GTEST_PROP(NumberText, EveryFiniteDoubleIsReadBackBitByBit, (std::uint64_t bits))
{
    auto const value = std::bit_cast<double>(bits);
    RC_PRE(std::isfinite(value));
    RC_ASSERT(ReadBack(value, std::chars_format::general) == bits);
    RC_ASSERT(ReadBack(value, std::chars_format::scientific) == bits);
    RC_ASSERT(ReadBack(value, std::chars_format::fixed) == bits);
}

RC_GTEST_PROP(NumberText, EveryDoubleOfTheSizeOfAModelIsReadBackBitByBit, (int whole, std::uint16_t fraction))
{
    double const value = whole + fraction / 65521.0;
    RC_ASSERT(ReadBack(value, std::chars_format::general) == std::bit_cast<std::uint64_t>(value));
}

TEST(NumberText, DoublesSpreadOverAllBitPatternsAreReadBackBitByBit)
{
    // A Weyl sequence: its step is odd, so it goes through signs, exponents and mantissas evenly.
    std::uint64_t bits = 0;
    int checked = 0;
    for (int i = 0; i < 200000; ++i)
    {
        bits += 0x9E3779B97F4A7C15ULL;
        if (!std::isfinite(std::bit_cast<double>(bits)))
            continue;
        ASSERT_EQ(ReadBack(std::bit_cast<double>(bits), std::chars_format::general), bits) << std::hex << bits;
        ++checked;
    }
    EXPECT_GT(checked, 199000);
}

RC_GTEST_PROP(NumberText, EveryIntIsReadBackInEveryBase, (int value))
{
    for (int base = 2; base <= 36; ++base)
    {
        std::array<char, 40> text{};
        *std::to_chars(text.data(), text.data() + text.size() - 1, value, base).ptr = '\0';
        int read = ~value;
        RC_ASSERT(StringUtil::ToInt(text.data(), read, base) == StringUtil::kConversionStatus_Success);
        RC_ASSERT(read == value);
    }
}

RC_GTEST_PROP(NumberText, EveryUnsignedlongIsReadBack, (unsigned long value))
{
    unsigned long read = ~value;
    UTF8String const text = StringUtil::FromUnsignedlong(value, "%lu");
    RC_ASSERT(StringUtil::ToUnsignedlong(text.Value(), read, 10) == StringUtil::kConversionStatus_Success);
    RC_ASSERT(read == value);
}

RC_GTEST_PROP(NumberText, NoBytesCrashAConversionOrChangeAnOutputOnFailure, (std::string const& bytes))
{
    UTF8String const text(bytes);
    double asDouble = 1.25;
    if (StringUtil::ToDouble(text, asDouble) != StringUtil::kConversionStatus_Success)
        RC_ASSERT(asDouble == 1.25);
    else
        RC_ASSERT(std::isfinite(asDouble));
    int asInt = 125;
    if (StringUtil::ToInt(text, asInt, 10) != StringUtil::kConversionStatus_Success)
        RC_ASSERT(asInt == 125);
}

}  // namespace

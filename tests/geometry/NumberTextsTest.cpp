#include "geometry/NumberTexts.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "framework/api/StringUtil.h"
#include "framework/xml_util/ReadObserver.h"

namespace KVR::Test
{

namespace
{

std::u16string Wide16(std::string const& text)
{
    return std::u16string(text.begin(), text.end());
}

NumberTexts Of(std::string const& text)
{
    NumberTexts texts;
    texts.Append(Wide16(text).c_str());
    return texts;
}

// Whether each list of numbers converts, as an observer is told.
class ListNotes final : public ReadObserver
{
public:
    void TextRead(TextReading const& reading) override
    {
        EXPECT_EQ(reading.form, TextForm::kNumberList);
        texts.emplace_back(reading.text);
        understood.push_back(reading.isUnderstood);
    }

    std::vector<std::u16string> texts;
    std::vector<bool> understood;
};

constexpr double kUntouched = -77.25;

std::array<double, 3> RowOf(NumberTexts const& texts, std::size_t index)
{
    std::array<double, 3> row = {kUntouched, kUntouched, kUntouched};
    texts.ReadRow(index, row[0], row[1], row[2]);
    return row;
}

std::uint64_t BitsOf(double value)
{
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

}  // namespace

TEST(NumberTexts, ThreeTextsMakeARow)
{
    EXPECT_EQ(Of("").RowCount(), 0U);
    EXPECT_EQ(Of("1 2").RowCount(), 0U);
    EXPECT_EQ(Of("1 2 3").RowCount(), 1U);
    EXPECT_EQ(Of("1 2 3 4 5").RowCount(), 1U);
    EXPECT_EQ(Of("1 2 3 4 5 6").RowCount(), 2U);
}

TEST(NumberTexts, BlanksAndWhiteSpaceAroundATextDoNoHarm)
{
    NumberTexts const texts = Of("  1  \t2\n   3\r \t \n 4 5 6  ");
    ASSERT_EQ(texts.RowCount(), 2U);
    EXPECT_EQ(RowOf(texts, 0), (std::array<double, 3>{1, 2, 3}));
    EXPECT_EQ(RowOf(texts, 1), (std::array<double, 3>{4, 5, 6}));
}

TEST(NumberTexts, OnlyABlankSeparates)
{
    NumberTexts const texts = Of("1\t2 3 4,5");
    ASSERT_EQ(texts.RowCount(), 1U);
    EXPECT_EQ(RowOf(texts, 0), (std::array<double, 3>{kUntouched, 3, kUntouched}));
}

TEST(NumberTexts, ATextThatIsNoNumberLeavesItsOutputAlone)
{
    for (char const* const text : {"x", "-", ".", "-.", "1e", "1e+", "0x10", "inf", "nan", "-inf", "--1", "+-1",
                                   "1.2.3", "1-", "1f", "1e999", "1e-999"})
    {
        NumberTexts const texts = Of(std::string("1 ") + text + " 3");
        EXPECT_EQ(RowOf(texts, 0), (std::array<double, 3>{1, kUntouched, 3})) << text;
    }
}

TEST(NumberTexts, CharactersBeyondAsciiAreNoNumber)
{
    NumberTexts texts;
    texts.Append(u"1 \u0661 \uFF12 4 5\u00A06 \U0001D7D7");
    ASSERT_EQ(texts.RowCount(), 2U);
    EXPECT_EQ(RowOf(texts, 0), (std::array<double, 3>{1, kUntouched, kUntouched}));
    EXPECT_EQ(RowOf(texts, 1), (std::array<double, 3>{4, kUntouched, kUntouched}));
}

TEST(NumberTexts, SeveralTextsMakeOneList)
{
    NumberTexts texts;
    texts.Append(u"1 2");
    texts.Append(nullptr);
    texts.Append(u"");
    texts.Append(u"3 4");
    texts.Append(u" 5 6 7");
    ASSERT_EQ(texts.RowCount(), 2U);
    EXPECT_EQ(RowOf(texts, 0), (std::array<double, 3>{1, 2, 3}));
    EXPECT_EQ(RowOf(texts, 1), (std::array<double, 3>{4, 5, 6}));
}

TEST(NumberTexts, AnObserverIsToldOfEachListWhetherAllOfItAreNumbers)
{
    std::u16string const lists[] = {u"1 2 3",     u"",        u" -1.5\t +2e3 \n", u"1 x 3", u"x",
                                    u"1 2 3,4 5", u"0 1e999", u"7 \u0661",        u"4 5 6"};
    ListNotes notes;
    {
        ReadObserverScope const scope(notes);
        NumberTexts texts;
        texts.Append(nullptr);
        for (std::u16string const& list : lists)
            texts.Append(list.c_str());
    }
    // Whole lists, each judged by itself.
    EXPECT_EQ(notes.texts, std::vector<std::u16string>(std::begin(lists), std::end(lists)));
    EXPECT_EQ(notes.understood, (std::vector<bool>{true, true, true, false, false, false, false, false, true}));
}

TEST(NumberTexts, GivingBackSpareMemoryChangesNothing)
{
    NumberTexts texts = Of("1 2 3" + std::string(100000, ' ') + "4 5 6");
    texts.ReleaseSpare();
    EXPECT_EQ(RowOf(texts, 0), (std::array<double, 3>{1, 2, 3}));
    EXPECT_EQ(RowOf(texts, 1), (std::array<double, 3>{4, 5, 6}));
    NumberTexts none;
    none.ReleaseSpare();
    EXPECT_EQ(none.RowCount(), 0U);
}

TEST(NumberTexts, ManyTextsOfBlanksTakeLinearTime)
{
    NumberTexts texts = Of(std::string(300000, '1') + " 2 3");
    std::u16string const blanks(100, u' ');
    for (int i = 0; i < 100000; ++i)
        texts.Append(blanks.c_str());
    texts.ReleaseSpare();
    EXPECT_EQ(texts.RowCount(), 1U);
    EXPECT_EQ(RowOf(texts, 0)[2], 3.0);
}

TEST(NumberTexts, FormsOfNumbersAreReadAsElsewhere)
{
    for (char const* const text : {"0",
                                   "-0",
                                   "0.0",
                                   "-0.000",
                                   "00012",
                                   ".5",
                                   "-.5",
                                   "1.",
                                   "-1.",
                                   "+3",
                                   "+.25",
                                   "1e3",
                                   "1E-3",
                                   "-2.5e+10",
                                   "0.1",
                                   "9007199254740992",
                                   "9007199254740993",
                                   "9007199254740994",
                                   "-9007199254740993",
                                   "0.9007199254740993",
                                   "9999999999999999999",
                                   "18446744073709551615",
                                   "18446744073709551617",
                                   "99999999999999999999",
                                   "0.0000000000000000001",
                                   "0.00000000000000000001",
                                   "123456789.0123456789",
                                   "4.9e-324",
                                   "2.2250738585072011e-308",
                                   "1.7976931348623157e308",
                                   "179769313486231570000",
                                   "0.1234567890123456789",
                                   "8.5",
                                   "1234567890123456789.5"})
    {
        double expected = kUntouched;
        ASSERT_EQ(StringUtil::ToDouble(text, expected), StringUtil::kConversionStatus_Success) << text;
        EXPECT_EQ(BitsOf(RowOf(Of(std::string(text) + " 0 0"), 0)[0]), BitsOf(expected)) << text;
        EXPECT_EQ(BitsOf(RowOf(Of(std::string("0 0 ") + text), 0)[2]), BitsOf(expected)) << text;
    }
}

TEST(NumberTexts, RandomNumbersOfEveryLengthAreExactToTheLastBit)
{
    std::mt19937_64 random(20240301);
    for (int i = 0; i < 200000; ++i)
    {
        // Any digits, with a point somewhere, or nowhere.
        std::string text = random() % 2 ? "-" : "";
        auto const length = 1 + random() % 21;
        auto const point = random() % (length + 4);
        for (std::uint64_t at = 0; at < length; ++at)
        {
            if (at == point)
                text += '.';
            text += static_cast<char>('0' + random() % 10);
        }
        if (random() % 8 == 0)
            text += "e" + std::to_string(static_cast<int>(random() % 40) - 20);
        double const value = RowOf(Of(text + " 0 0"), 0)[0];
        ASSERT_EQ(BitsOf(value), BitsOf(std::strtod(text.c_str(), nullptr))) << text;
    }
}

TEST(NumberTexts, NumbersWrittenInFullComeBackExactly)
{
    std::mt19937_64 random(7);
    for (int i = 0; i < 50000; ++i)
    {
        double const value = (static_cast<double>(random()) / 0x1p64 - 0.5) * static_cast<double>(random() % 100000);
        std::array<char, 64> text{};
        std::snprintf(text.data(), text.size(), "%.17g", value);
        ASSERT_EQ(BitsOf(RowOf(Of(std::string("0 ") + text.data() + " 0"), 0)[1]), BitsOf(value)) << text.data();
    }
}

}  // namespace KVR::Test

#include <gtest/gtest.h>

#include <fcntl.h>
#include <unistd.h>
#include <fstream>
#include <iterator>
#include <limits>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "output/JsonWriter.h"
#include "output/Output.h"
#include "output/SafeText.h"
#include "tests/support/TempFolder.h"

namespace KVR::Test
{

namespace
{

// What the action writes.
template <class Action>
std::string Written(Action action)
{
    TempFolder const folder;
    std::string const path = folder.NarrowPathOf("out");
    int const descriptor = open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    Output out(descriptor);
    action(out);
    out.Flush();
    close(descriptor);
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace

// Bytes are looked at in words.
TEST(JsonText, WhatIsEscapedIsSoAtEachPlaceOfATextOfAnyLength)
{
    std::vector<std::pair<std::string, std::string>> const escapes = {
        {"\"", "\\\""},           {"\\", "\\\\"},   {"\n", "\\n"},           {"\x1f", "\\u001f"}, {"\x7f", "\\u007f"},
        {"\xff", "\xef\xbf\xbd"}, {"\x20", "\x20"}, {"\x21", "\x21"},        {"\x23", "\x23"},    {"\x5b", "\x5b"},
        {"\x5d", "\x5d"},         {"\x7e", "\x7e"}, {"\xc3\xa9", "\xc3\xa9"}};
    for (std::size_t length = 0; length < 20; ++length)
        for (std::size_t place = 0; place <= length; ++place)
            for (auto const& [text, escaped] : escapes)
            {
                std::string const before(place, 'a');
                std::string const behind(length - place, 'z');
                EXPECT_EQ(Escaped(before + text + behind), before + escaped + behind);
            }
}

TEST(JsonText, LettersOfTwoBytesStandAndPiecesOfThemDoNot)
{
    std::string const letters = "Tr\xc3\xa4ger \xce\xa9 \xd0\x96 \xd7\xbf";
    EXPECT_EQ(Escaped(letters), letters);
    std::string const unknown = "\xef\xbf\xbd";
    EXPECT_EQ(Escaped("a\xc3"), "a" + unknown);
    EXPECT_EQ(Escaped("\xc3\xc3\xa4"), unknown + "\xc3\xa4");
    EXPECT_EQ(Escaped("\xc3z"), unknown + "z");
    EXPECT_EQ(Escaped("\xc1\x81"), unknown + unknown);
    EXPECT_EQ(Escaped("\xc2\x85"), "\\u0085");
    EXPECT_EQ(Escaped("\xc3\xa4\xd8\x9c"), "\xc3\xa4\\u061c");
    EXPECT_EQ(Escaped("\xc3\xa4\""), "\xc3\xa4\\\"");
}

TEST(JsonText, ARowOfNumbersIsAListOnOneLine)
{
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    std::vector<double> const numbers{0.1, -0.0, 1e300, kNaN, 5e-324};
    std::vector<int> const integers{-2147483647 - 1, 0};
    std::vector<unsigned int> const indices{4294967295U};
    EXPECT_EQ(Written(
                  [&](Output& out)
                  {
                      JsonWriter json(out);
                      json.BeginList();
                      json.Row(std::span<double const>(numbers));
                      json.Row(std::span<int const>(integers));
                      json.Row(std::span<unsigned int const>(indices));
                      json.Row(std::span<int const>());
                      json.EndList();
                  }),
              "[\n  [0.1, -0.0, 1e+300, null, 5e-324],\n  [-2147483648, 0],\n  [4294967295],\n  []\n]");
}

TEST(JsonText, NothingIsLostWhereTheBufferEnds)
{
    std::vector<unsigned int> const numbers(50'000, 1'234'567);
    std::string const text = Written(
        [&](Output& out)
        {
            JsonWriter json(out);
            json.Row(std::span<unsigned int const>(numbers));
            out.PutSpaces(70'000);
            out.Put(std::string(70'000, 'x'));
        });
    std::string expected = "[";
    for (std::size_t i = 0; i < numbers.size(); ++i)
        expected += i == 0 ? "1234567" : ", 1234567";
    EXPECT_EQ(text, expected + ']' + std::string(70'000, ' ') + std::string(70'000, 'x'));
}

}  // namespace KVR::Test

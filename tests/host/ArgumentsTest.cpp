// What the program says of arguments that make no sense.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/NumberRange.h"
#include "tests/support/TempFolder.h"
#include "tests/tool/ToolRun.h"

namespace KVR::Test
{

namespace
{

using testing::HasSubstr;

// The complaint, which is one line.
std::string Complaint(std::vector<std::string> const& arguments)
{
    ToolRun const run = RunTool(arguments);
    EXPECT_EQ(run.status, 2) << run.error;
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(std::count(run.error.begin(), run.error.end(), '\n'), 1) << run.error;
    return run.error;
}

}  // namespace

TEST(Arguments, AnUnknownCommandNamesTheNearest)
{
    EXPECT_EQ(Complaint({"imprt", "a", "b"}), "kvr: there is no command imprt; did you mean import?; see kvr --help\n");
    EXPECT_EQ(Complaint({"xyzzy"}), "kvr: there is no command xyzzy; see kvr --help\n");
    EXPECT_EQ(Complaint({"tre\x1b[2J"}), "kvr: there is no command tre\\u001b[2J; see kvr --help\n");
}

TEST(Arguments, AnUnknownOptionNamesTheNearest)
{
    EXPECT_EQ(Complaint({"tree", "--depht", "3", "a.xml"}),
              "kvr: tree has no option --depht; did you mean --depth?; see kvr --help\n");
    EXPECT_EQ(Complaint({"export", "a.xml", "b.stl", "--defletcion=1%"}),
              "kvr: export has no option --defletcion; did you mean --deflection?; see kvr --help\n");
    EXPECT_EQ(Complaint({"dump", "--mas", "a.xml"}),
              "kvr: dump has no option --mas; did you mean --mass?; see kvr --help\n");
    EXPECT_EQ(Complaint({"dump", "--frobnicate", "a.xml"}), "kvr: dump has no option --frobnicate; see kvr --help\n");
    EXPECT_EQ(Complaint({"--jsn", "tree", "a.xml"}), "kvr: kvr has no option --jsn; see kvr --help\n");
}

TEST(Arguments, ANumberOutOfItsRangeIsRefusedWithTheRange)
{
    constexpr char kDepths[] = " is no whole number from 0 to 1000000; see kvr --help\n";
    for (char const* const text : {"-1", "1.5", "nan", "inf", "1e400", "99999999999999999999", "", "x", "3x", "0x3"})
        EXPECT_EQ(Complaint({"tree", "--depth", text, "a.xml"}), "kvr: --depth: " + std::string(text) + kDepths);
    EXPECT_THAT(Complaint({"tree", "--max-occurrences", "0", "a.xml"}), HasSubstr("0 is no whole number from 1 to 1"));
    EXPECT_THAT(Complaint({"import", "--angle", "0", "a", "b"}), HasSubstr("0 is no number from 0.1 to 180"));
    EXPECT_THAT(Complaint({"export", "--angle", "180.1", "a", "b.stl"}), HasSubstr("no number from 0.1 to 180"));
    for (char const* const text : {"1e-9", "0", "-1%", "101%", "nan", "nan%", "inf", "1e7", "%", "1 %"})
        EXPECT_EQ(Complaint({"convert", "--deflection", text, "a", "b.stl"}),
                  "kvr: --deflection: " + std::string(text) +
                      " is no length, a number from 1e-06 to 1000000, and no percentage, a number from 0.0001 to 100 "
                      "before %; see kvr --help\n");
}

TEST(Arguments, WhatCannotStandTogetherIsRefused)
{
    EXPECT_THAT(Complaint({"import", "--relative", "--deflection", "2", "a", "b"}), HasSubstr("--relative takes"));
    EXPECT_THAT(Complaint({"convert", "--scene", "c.xml", "a.xml", "b.stl"}), HasSubstr("is a scene already"));
}

TEST(NumberRange, TakesBothEndsAndNothingBeyond)
{
    NumberRange const range{-1, 2};
    EXPECT_EQ(range.Read("-1"), -1.0);
    EXPECT_EQ(range.Read("2"), 2.0);
    EXPECT_EQ(range.Read("1e-400"), std::nullopt);
    EXPECT_EQ(range.Read("2.0000001"), std::nullopt);
    EXPECT_EQ(range.Read("-1.0000001"), std::nullopt);
    EXPECT_EQ(range.Text(), "number from -1 to 2");
}

TEST(UnknownCommands, AreAnsweredWithTheNearestOneThatThereIs)
{
    for (auto const& [text, meant] : {std::pair("improt", "import"), std::pair("exprt", "export"),
                                      std::pair("tee", "tree"), std::pair("conv", "convert")})
        EXPECT_THAT(Complaint({text}), HasSubstr(std::string("did you mean ") + meant + "?")) << text;
    for (std::string const& text : {std::string("dmpu"), std::string(100'000, 'e')})
        EXPECT_THAT(Complaint({text}), testing::Not(HasSubstr("did you mean"))) << text.substr(0, 8);
}

}  // namespace KVR::Test

#include "output/JsonDepth.h"

#include <gtest/gtest.h>

#include <string>

namespace KVR::Test
{

namespace
{

std::string Levels(std::size_t count)
{
    std::string text;
    for (std::size_t i = 0; i < count; ++i)
        text += i % 2 == 0 ? "[" : "{\"\":";
    return text;
}

}  // namespace

TEST(JsonDepth, TwoHundredLevelsAreAllowed)
{
    EXPECT_TRUE(IsShallowJson(""));
    EXPECT_TRUE(IsShallowJson(Levels(200)));
    EXPECT_FALSE(IsShallowJson(Levels(201)));
}

TEST(JsonDepth, WhatIsClosedIsNoLevel)
{
    std::string text = Levels(199);
    for (int i = 0; i < 1000; ++i)
        text += i % 2 == 0 ? "[]," : "{},";
    EXPECT_TRUE(IsShallowJson(text));
    EXPECT_TRUE(IsShallowJson("]]]]" + Levels(200)));
}

TEST(JsonDepth, BracketsInTextsDoNotCount)
{
    std::string const brackets(300, '[');
    EXPECT_TRUE(IsShallowJson('"' + brackets + '"'));
    EXPECT_TRUE(IsShallowJson('"' + brackets));
    EXPECT_TRUE(IsShallowJson(R"("\")" + brackets + '"'));
    EXPECT_FALSE(IsShallowJson(R"("\\")" + brackets + '"'));
    EXPECT_TRUE(IsShallowJson(R"("\\\")" + brackets));
}

}  // namespace KVR::Test

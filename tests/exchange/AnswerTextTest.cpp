#include "exchange/run/AnswerText.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace KVR::Test
{

TEST(AnswerText, ComesBackAsItWas)
{
    AnswerText answer;
    answer.Add(std::string_view("a:\n\0b", 5));
    answer.Add(std::string_view());
    answer.Add(std::numeric_limits<std::int64_t>::max());
    answer.Add(true);
    answer.Add(0.1);
    AnswerReader reader(answer.Text());
    EXPECT_EQ(reader.Text(), std::string("a:\n\0b", 5));
    EXPECT_EQ(reader.Text(), "");
    EXPECT_EQ(reader.Value<std::int64_t>(), std::numeric_limits<std::int64_t>::max());
    EXPECT_TRUE(reader.Value<bool>());
    EXPECT_EQ(reader.Value<double>(), 0.1);
    EXPECT_THROW(reader.Text(), std::runtime_error);
}

TEST(AnswerText, WhatIsNoneIsRefused)
{
    for (char const* const text : {"", "3", ":", "x:", "-1:a", "4:abc", "99999999999999999999999:a"})
        EXPECT_THROW(AnswerReader(text).Text(), std::runtime_error) << text;
    EXPECT_THROW(AnswerReader("3:abc").Value<int>(), std::runtime_error);
    EXPECT_THROW(AnswerReader("2:1x").Value<double>(), std::runtime_error);
    EXPECT_THROW(AnswerReader("0:").Value<int>(), std::runtime_error);
}

}  // namespace KVR::Test

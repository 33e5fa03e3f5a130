#include <gtest/gtest.h>

#include "exchange/model/Part21File.h"

namespace KVR::Test
{

namespace
{

Part21File::Values ParametersOf(std::string const& entity)
{
    Part21File const file(Part21File::Bytes{"DATA;\n#1=" + entity + ";\nENDSEC;\n"});
    return file.Entities().empty() ? Part21File::Values() : file.ParametersOf(file.Entities().front(), "A");
}

}  // namespace

TEST(Part21File, CommentsStandBetweenParameters)
{
    Part21File::Values const values = ParametersOf("A(1./* one */,/**/ 'two' /*/*/)");
    ASSERT_EQ(values.size(), 2U);
    EXPECT_EQ(values[0].number, 1.0);
    EXPECT_EQ(values[1].text, "two");
}

TEST(Part21File, ACommentWithoutAnEndEndsTheParameters)
{
    EXPECT_EQ(ParametersOf("A(1.,/* two)").size(), 1U);
    EXPECT_EQ(ParametersOf("A(1.,/*/ two)").size(), 1U);
}

TEST(Part21File, AnEntityIsFoundByItsNumberInWhateverOrderTheyStand)
{
    auto const placesOf = [](char const* numbers, std::vector<Part21File::Number> const& wanted)
    {
        std::string bytes = "DATA;\n";
        for (char const* number = numbers; *number != 0; ++number)
            bytes += std::string("#1") + *number + "=A();\n";
        Part21File const file(Part21File::Bytes{bytes});
        std::vector<std::size_t> places;
        for (Part21File::Number const number : wanted)
            places.push_back(file.PlaceOf(number));
        return places;
    };
    std::vector<Part21File::Number> const wanted{10, 11, 12, 13, 14, 17, 18, 19, 1};
    using Places = std::vector<std::size_t>;
    EXPECT_EQ(placesOf("01234567", wanted), (Places{0, 1, 2, 3, 4, 7, 8, 8, 8}));
    EXPECT_EQ(placesOf("1278", wanted), (Places{4, 0, 1, 4, 4, 2, 3, 4, 4}));
    EXPECT_EQ(placesOf("8127", wanted), (Places{4, 1, 2, 4, 4, 3, 0, 4, 4}));
    // Of two of one number the first.
    EXPECT_EQ(placesOf("71217", wanted), (Places{5, 1, 2, 5, 5, 0, 5, 5, 5}));
    EXPECT_EQ(placesOf("", wanted), Places(9, 0));
}

}  // namespace KVR::Test

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

}  // namespace KVR::Test

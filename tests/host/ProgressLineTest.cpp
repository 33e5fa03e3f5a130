#include "host/ProgressLine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace KVR::Test
{

namespace
{

using testing::EndsWith;
using testing::Not;

ProgressReport At(double whole, char const* stage = "meshing")
{
    return {stage, std::nullopt, whole};
}

}  // namespace

TEST(ProgressLine, HasTheStageTheBarAndTheTimeLeft)
{
    ProgressLine line;
    EXPECT_EQ(line.Text(At(0.0, "reading"), 0.0, 79), "reading      [                              ]   0%");
    EXPECT_EQ(line.Text(At(0.5), 70.0, 79), "meshing      [###############               ]  50%  1:10 left");
    EXPECT_EQ(line.Text(At(1.0, "comparing"), 70.0, 79), "comparing    [##############################] 100%");
}

TEST(ProgressLine, NeverGoesBack)
{
    ProgressLine line;
    line.Text(At(0.5), 0.0, 79);
    EXPECT_THAT(line.Text(At(0.1, "reading"), 0.0, 79), EndsWith(" 50%"));
    EXPECT_THAT(line.Text(At(7.0), 0.0, 79), EndsWith("100%"));
}

TEST(ProgressLine, TheTimeLeftGoesByWhileTheBarStands)
{
    ProgressLine line;
    EXPECT_THAT(line.Text(At(0.5), 10.0, 79), EndsWith("0:10 left"));
    EXPECT_THAT(line.Text(At(0.5), 14.0, 79), EndsWith("0:06 left"));
    // More than was thought: nothing is said rather than something wrong.
    EXPECT_THAT(line.Text(At(0.5), 30.0, 79), EndsWith(" 50%"));
}

TEST(ProgressLine, OneFastPieceMovesTheTimeLeftALittle)
{
    ProgressLine line;
    line.Text(At(0.1), 10.0, 79);
    // By this alone 9 seconds would be left.
    EXPECT_THAT(line.Text(At(0.55), 11.0, 79), EndsWith("0:45 left"));
}

TEST(ProgressLine, SaysNothingOfTheTimeWhereNothingIsKnown)
{
    ProgressLine line;
    EXPECT_THAT(line.Text(At(0.01), 10.0, 79), Not(EndsWith("left")));
    EXPECT_THAT(line.Text(At(0.3), 0.5, 79), Not(EndsWith("left")));
}

TEST(ProgressLine, FitsANarrowTerminal)
{
    ProgressLine line;
    EXPECT_EQ(line.Text(At(0.5), 10.0, 40), "meshing  50%");
    EXPECT_EQ(line.Text(At(0.5), 10.0, 4), "mesh");
}

}  // namespace KVR::Test

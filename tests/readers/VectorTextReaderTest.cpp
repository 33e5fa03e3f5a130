#include "readers/VectorTextReader.h"

#include <gtest/gtest.h>

#include <vector>

namespace KVR::Test
{

namespace
{

using Triple = std::vector<double>;

// The outputs, or nothing for a text that was refused.
Triple Read(char const* text)
{
    Triple out{7.0, 8.0, 9.0};
    if (!ReadVectorText(text, out[0], out[1], out[2]))
    {
        EXPECT_EQ(out, (Triple{7.0, 8.0, 9.0})) << "left alone: " << text;
        return {};
    }
    return out;
}

}  // namespace

TEST(ReadVectorText, TakesThreeNumbersWithCommasBetweenThem)
{
    EXPECT_EQ(Read("0,0,1"), (Triple{0, 0, 1}));
    EXPECT_EQ(Read(" 1.5 , -2e1\n,+3 "), (Triple{1.5, -20.0, 3}));
}

TEST(ReadVectorText, TakesAPieceThatIsNoNumberForZero)
{
    EXPECT_EQ(Read("a,2,"), (Triple{0, 2, 0}));
    EXPECT_EQ(Read(",,"), (Triple{0, 0, 0}));
    EXPECT_EQ(Read("1 2,inf,3"), (Triple{0, 0, 3}));
}

TEST(ReadVectorText, RefusesAnyOtherCount)
{
    for (char const* const text : {"", "1", "1,2", "1,2,3,4", "1,2,3,", "1 2 3", "1;2;3"})
        EXPECT_TRUE(Read(text).empty()) << text;
}

}  // namespace KVR::Test

#include "host/stats/Treemap.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace KVR::Test
{

namespace
{

TEST(Treemap, PartsHaveTheAreasOfTheirWeightsAndFillTheWhole)
{
    std::vector<double> const weights{6, 6, 4, 3, 2, 2, 1};
    auto const parts = TreemapOf(weights, {10, 20, 6, 4});
    ASSERT_EQ(parts.size(), weights.size());
    for (std::size_t i = 0; i < parts.size(); ++i)
    {
        EXPECT_NEAR(parts[i].width * parts[i].height, weights[i], 1e-9);
        EXPECT_GE(parts[i].x, 10.0 - 1e-9);
        EXPECT_GE(parts[i].y, 20.0 - 1e-9);
        EXPECT_LE(parts[i].x + parts[i].width, 16.0 + 1e-9);
        EXPECT_LE(parts[i].y + parts[i].height, 24.0 + 1e-9);
        // Squarer than slices would be.
        EXPECT_LE(std::max(parts[i].width / parts[i].height, parts[i].height / parts[i].width), 3.0);
        for (std::size_t k = 0; k < i; ++k)
        {
            double const across =
                std::min(parts[i].x + parts[i].width, parts[k].x + parts[k].width) - std::max(parts[i].x, parts[k].x);
            double const down =
                std::min(parts[i].y + parts[i].height, parts[k].y + parts[k].height) - std::max(parts[i].y, parts[k].y);
            EXPECT_TRUE(across < 1e-9 || down < 1e-9) << i << " lies on " << k;
        }
    }
    // The first row: two parts of the largest weight, one below the other.
    EXPECT_NEAR(parts[0].width, 3.0, 1e-9);
    EXPECT_NEAR(parts[1].y, 22.0, 1e-9);
}

TEST(Treemap, OnePartIsTheWhole)
{
    auto const parts = TreemapOf({5}, {0, 0, 3, 2});
    ASSERT_EQ(parts.size(), 1U);
    EXPECT_NEAR(parts[0].width, 3.0, 1e-12);
    EXPECT_NEAR(parts[0].height, 2.0, 1e-12);
    EXPECT_TRUE(TreemapOf({}, {0, 0, 3, 2}).empty());
}

}  // namespace

}  // namespace KVR::Test

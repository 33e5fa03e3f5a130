#include "inspect/statistics/RigidFit.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace KVR::Test
{

namespace
{

std::vector<FitPoint> Points()
{
    return {{0, 0, 0}, {10, 0, 0}, {0, 20, 1}, {3, 4, 50}, {-7, 2, 5}};
}

std::vector<FitPoint> Moved(std::vector<FitPoint> points, Matrix const& m)
{
    for (FitPoint& p : points)
        p = {m[0] * p[0] + m[1] * p[1] + m[2] * p[2] + m[3], m[4] * p[0] + m[5] * p[1] + m[6] * p[2] + m[7],
             m[8] * p[0] + m[9] * p[1] + m[10] * p[2] + m[11]};
    return points;
}

Matrix TurnAndMove()
{
    double const c = std::cos(0.7);
    double const s = std::sin(0.7);
    return Product({c, -s, 0, 100, s, c, 0, -30, 0, 0, 1, 7, 0, 0, 0, 1},
                   {1, 0, 0, 0, 0, c, -s, 0, 0, s, c, 0, 0, 0, 0, 1});
}

TEST(RigidFit, FindsTheMotion)
{
    auto const motion = RigidFit(Points(), Moved(Points(), TurnAndMove()), 1e-9);
    ASSERT_TRUE(motion);
    for (std::size_t i = 0; i < 16; ++i)
        EXPECT_NEAR((*motion)[i], TurnAndMove()[i], 1e-12);
}

TEST(RigidFit, NoMirrorsNoScalesAndNothingBeyondTheTolerance)
{
    EXPECT_FALSE(RigidFit(Points(), Moved(Points(), {-1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}), 1e-3));
    EXPECT_FALSE(RigidFit(Points(), Moved(Points(), Scaling(1.01)), 1e-3));
    std::vector<FitPoint> other = Points();
    other.back()[1] += 1e-3;
    EXPECT_FALSE(RigidFit(Points(), other, 0.9e-3));
    EXPECT_TRUE(RigidFit(Points(), other, 1.1e-3));
    other.pop_back();
    EXPECT_FALSE(RigidFit(Points(), other, 1.0));
    EXPECT_FALSE(RigidFit({}, {}, 1.0));
}

TEST(RigidFit, PointsOnALineAndInOnePlaceFitAsWell)
{
    std::vector<FitPoint> const line{{0, 0, 0}, {1, 2, 3}, {2, 4, 6}};
    EXPECT_TRUE(RigidFit(line, Moved(line, TurnAndMove()), 1e-9));
    std::vector<FitPoint> const along{{0, 0, 0}, {5, 0, 0}};
    EXPECT_TRUE(RigidFit(along, Moved(along, TurnAndMove()), 1e-9));
    std::vector<FitPoint> const one{{4, 5, 6}};
    EXPECT_TRUE(RigidFit(one, Moved(one, TurnAndMove()), 1e-9));
}

}  // namespace

}  // namespace KVR::Test

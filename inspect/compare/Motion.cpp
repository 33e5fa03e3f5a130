#include "inspect/compare/Motion.h"

#include <array>
#include <cmath>

namespace KVR
{

namespace
{

constexpr std::size_t kRow = 4;

struct Axes
{
    /// Columns of length 1, and the lengths that they had.
    std::array<std::array<double, 3>, 3> columns{};
    std::array<double, 3> lengths{};

    explicit Axes(Matrix const& matrix)
    {
        for (std::size_t c = 0; c < 3; ++c)
        {
            std::array<double, 3>& column = columns[c];
            column = {matrix[c], matrix[kRow + c], matrix[2 * kRow + c]};
            lengths[c] = std::hypot(column[0], column[1], column[2]);
            for (double& x : column)
                x /= lengths[c];
        }
    }
};

}  // namespace

Motion Motion::Of(Matrix const& from, double metres, Matrix const& to, double otherMetres)
{
    Motion motion;
    std::array<double, 3> way{};
    for (std::size_t i = 0; i < 3; ++i)
        way[i] = to[kRow * i + 3] * otherMetres - from[kRow * i + 3] * metres;
    motion.distance = std::hypot(way[0], way[1], way[2]);
    if (!IsSolid(from) || !IsSolid(to) || !HasRightAngles(from) || !HasRightAngles(to) || Mirrors(from) != Mirrors(to))
        return motion;
    constexpr double kSameLength = 1e-9;
    Axes const first(from);
    Axes const second(to);
    for (std::size_t c = 0; c < 3; ++c)
        if (std::abs(second.lengths[c] - first.lengths[c]) > kSameLength * first.lengths[c])
            return motion;
    // The turn that leads from one to the other, element by element.
    std::array<std::array<double, 3>, 3> turn{};
    for (std::size_t row = 0; row < 3; ++row)
        for (std::size_t column = 0; column < 3; ++column)
            for (std::size_t c = 0; c < 3; ++c)
                turn[row][column] += second.columns[c][row] * first.columns[c][column];
    double const sine = std::hypot(turn[2][1] - turn[1][2], turn[0][2] - turn[2][0], turn[1][0] - turn[0][1]);
    motion.angle = std::atan2(sine, turn[0][0] + turn[1][1] + turn[2][2] - 1.0);
    return motion;
}

}  // namespace KVR

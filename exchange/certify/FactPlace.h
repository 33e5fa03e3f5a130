#pragma once

#include <array>
#include <cmath>
#include <cstddef>

namespace KVR::Certification
{

using FactPoint = std::array<double, 3>;

inline double Dot(FactPoint const& a, FactPoint const& b)
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

inline FactPoint Cross(FactPoint const& a, FactPoint const& b)
{
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

/// A place of something: a matrix of four rows, applied to points as columns.
struct FactPlace
{
    std::array<double, 16> rows{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

    static FactPlace Scaling(double factor)
    {
        FactPlace place;
        place.rows[0] = place.rows[5] = place.rows[10] = factor;
        return place;
    }
    FactPoint Of(FactPoint const& p) const
    {
        FactPoint moved{};
        for (std::size_t i = 0; i < 3; ++i)
            moved[i] = rows[4 * i] * p[0] + rows[4 * i + 1] * p[1] + rows[4 * i + 2] * p[2] + rows[4 * i + 3];
        return moved;
    }
    FactPoint OfDirection(FactPoint const& p) const
    {
        FactPoint moved{};
        for (std::size_t i = 0; i < 3; ++i)
            moved[i] = rows[4 * i] * p[0] + rows[4 * i + 1] * p[1] + rows[4 * i + 2] * p[2];
        return moved;
    }
    /// This after the other.
    FactPlace operator*(FactPlace const& other) const
    {
        FactPlace product;
        for (std::size_t row = 0; row < 4; ++row)
            for (std::size_t column = 0; column < 4; ++column)
            {
                double sum = 0.0;
                for (std::size_t i = 0; i < 4; ++i)
                    sum += rows[4 * row + i] * other.rows[4 * i + column];
                product.rows[4 * row + column] = sum;
            }
        return product;
    }
    /// Below 0 for one that mirrors.
    double Determinant() const
    {
        return rows[0] * (rows[5] * rows[10] - rows[6] * rows[9]) - rows[1] * (rows[4] * rows[10] - rows[6] * rows[8]) +
               rows[2] * (rows[4] * rows[9] - rows[5] * rows[8]);
    }
    /// That of a place that turns, mirrors, moves and scales alike in all directions.
    FactPlace Inverse() const
    {
        double const square = std::cbrt(Determinant() * Determinant());
        FactPlace inverse;
        for (std::size_t row = 0; row < 3; ++row)
            for (std::size_t column = 0; column < 3; ++column)
                inverse.rows[4 * row + column] = square > 0.0 ? rows[4 * column + row] / square : 0.0;
        FactPoint const back = inverse.OfDirection({rows[3], rows[7], rows[11]});
        for (std::size_t row = 0; row < 3; ++row)
            inverse.rows[4 * row + 3] = -back[row];
        return inverse;
    }
};

}  // namespace KVR::Certification

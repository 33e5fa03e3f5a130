#include "host/export/Placing.h"

#include <algorithm>
#include <cmath>

#include "framework/api/Mixins.h"
#include "framework/api/IObject.h"

namespace KVR
{

namespace
{

// Of the upper left 3 by 3 elements.
double Determinant(Matrix const& m)
{
    return m[0] * (m[5] * m[10] - m[6] * m[9]) - m[1] * (m[4] * m[10] - m[6] * m[8]) +
           m[2] * (m[4] * m[9] - m[5] * m[8]);
}

Matrix Scaling(double factor)
{
    Matrix scaling = kIdentity;
    scaling[0] = scaling[5] = scaling[10] = factor;
    return scaling;
}

}  // namespace

Matrix Sound(Matrix const& transform)
{
    if (!std::all_of(transform.begin(), transform.end(), [](double element) { return std::abs(element) < 1e30; }))
        return kIdentity;
    Matrix sound = transform;
    sound[12] = sound[13] = sound[14] = 0.0;
    sound[15] = 1.0;
    return sound;
}

Matrix UnitChange(ModelComponent const& from, ModelComponent const& into)
{
    return Scaling(from.metresPerUnit / into.metresPerUnit);
}

Matrix GeometryPlace(ModelGeometry const& geometry, ModelComponent const& component)
{
    UnitTypeEnum unit = kUnitType_Unknown;
    auto const* const measured = dynamic_cast<IUnit const*>(geometry.object);
    double const metres = measured && measured->LengthUnit(unit) == kIsValueSpecified_Yes ? MetresPer(unit) : 0.0;
    Matrix const own = Sound(geometry.transform);
    return metres > 0.0 && metres != component.metresPerUnit ? Product(Scaling(metres / component.metresPerUnit), own)
                                                             : own;
}

bool IsDecomposable(Matrix const& m)
{
    constexpr double kSlant = 1e-6;
    auto const dot = [&](std::size_t a, std::size_t b)
    { return m[a] * m[b] + m[4 + a] * m[4 + b] + m[8 + a] * m[8 + b]; };
    std::array<double, 3> lengths{};
    for (std::size_t column = 0; column < 3; ++column)
    {
        lengths[column] = std::sqrt(dot(column, column));
        if (!(lengths[column] > 1e-12))
            return false;
    }
    return std::abs(dot(0, 1)) <= kSlant * lengths[0] * lengths[1] &&
           std::abs(dot(0, 2)) <= kSlant * lengths[0] * lengths[2] &&
           std::abs(dot(1, 2)) <= kSlant * lengths[1] * lengths[2];
}

bool IsMirrored(Matrix const& transform)
{
    return Determinant(transform) < 0.0;
}

Triple PlacedPoint(Matrix const& m, Triple const& p)
{
    return {m[0] * p[0] + m[1] * p[1] + m[2] * p[2] + m[3], m[4] * p[0] + m[5] * p[1] + m[6] * p[2] + m[7],
            m[8] * p[0] + m[9] * p[1] + m[10] * p[2] + m[11]};
}

// The inverse transposed, without its divisor but with that one's sign.
NormalPlacing::NormalPlacing(Matrix const& m)
    : m_cofactors{m[5] * m[10] - m[6] * m[9], m[6] * m[8] - m[4] * m[10], m[4] * m[9] - m[5] * m[8],
                  m[2] * m[9] - m[1] * m[10], m[0] * m[10] - m[2] * m[8], m[1] * m[8] - m[0] * m[9],
                  m[1] * m[6] - m[2] * m[5],  m[2] * m[4] - m[0] * m[6],  m[0] * m[5] - m[1] * m[4]}
{
    if (IsMirrored(m))
        for (double& cofactor : m_cofactors)
            cofactor = -cofactor;
}

Triple NormalPlacing::Placed(Triple const& normal) const
{
    Triple placed{};
    for (std::size_t row = 0; row < 3; ++row)
        for (std::size_t column = 0; column < 3; ++column)
            placed[row] += m_cofactors[3 * row + column] * normal[column];
    double const length = std::hypot(placed[0], placed[1], placed[2]);
    if (!(length > 0.0) || !std::isfinite(length))
        return {0.0, 0.0, 1.0};
    return {placed[0] / length, placed[1] / length, placed[2] / length};
}

}  // namespace KVR

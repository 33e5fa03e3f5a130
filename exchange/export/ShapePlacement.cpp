#include "exchange/export/ShapePlacement.h"

#include <BRepBuilderAPI_GTransform.hxx>
#include <BRepBuilderAPI_Transform.hxx>
#include <Standard_Failure.hxx>
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <gp_GTrsf.hxx>
#include <gp_Trsf.hxx>

namespace KVR
{

namespace
{

constexpr double kTolerance = 1e-6;
// Bits in which a change is told, so that the rounding of products of transforms makes no new one.
constexpr int kChangeBits = 40;

bool IsFinite(gp_Mat const& matrix, gp_XYZ const& translation)
{
    for (int row = 1; row <= 3; ++row)
    {
        for (int column = 1; column <= 3; ++column)
        {
            if (!std::isfinite(matrix(row, column)))
                return false;
        }
    }
    return std::isfinite(translation.X()) && std::isfinite(translation.Y()) && std::isfinite(translation.Z());
}

double LargestElement(gp_Mat const& matrix)
{
    double largest = 0.0;
    for (double const element : ElementsOf(matrix))
        largest = std::max(largest, std::abs(element));
    return largest;
}

// The value to so many bits of the size of a reference.
double Rounded(double value, double reference)
{
    int exponent = 0;
    std::frexp(reference, &exponent);
    return std::ldexp(std::round(std::ldexp(value, kChangeBits - exponent)), exponent - kChangeBits);
}

gp_Mat Rounded(gp_Mat const& matrix)
{
    double const largest = LargestElement(matrix);
    gp_Mat rounded;
    for (int row = 1; row <= 3; ++row)
    {
        for (int column = 1; column <= 3; ++column)
            rounded(row, column) = Rounded(matrix(row, column), largest);
    }
    return rounded;
}

// The rotation or reflection nearest to a matrix, by Newton's iteration for the polar decomposition.
gp_Mat NearestOrthogonal(gp_Mat const& matrix)
{
    constexpr int kSteps = 100;
    gp_Mat nearest = matrix;
    for (int i = 0; i < kSteps; ++i)
    {
        gp_Mat const next = (nearest + nearest.Inverted().Transposed()) * 0.5;
        double const moved = LargestElement(next - nearest);
        nearest = next;
        if (moved < 1e-15)
            break;
    }
    return nearest;
}

// A mirror at the plane z = 0.
gp_Mat Mirror()
{
    return {1.0, 0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, -1.0};
}

// What is left of a regular matrix after its rotation is taken off: a number alone where it is the same in all
// directions.
gp_Mat ChangeOf(gp_Mat const& matrix)
{
    gp_Mat unit;
    unit.SetIdentity();
    double const scale = std::cbrt(std::abs(matrix.Determinant()));
    gp_Mat const square = matrix.Transposed() * matrix * (1.0 / (scale * scale));
    bool const isMirrored = matrix.Determinant() < 0.0;
    if (LargestElement(square - unit) <= kTolerance)
    {
        double const size = std::abs(scale - 1.0) <= kTolerance ? 1.0 : Rounded(scale, scale);
        return (isMirrored ? Mirror() : unit) * size;
    }
    gp_Mat const change = Rounded(NearestOrthogonal(matrix).Transposed() * matrix);
    return isMirrored ? Mirror() * change : change;
}

}  // namespace

std::array<double, 9> ElementsOf(gp_Mat const& matrix)
{
    std::array<double, 9> elements{};
    for (int i = 0; i < 9; ++i)
        elements[static_cast<std::size_t>(i)] = matrix(i / 3 + 1, i % 3 + 1);
    return elements;
}

bool ShapePlacement::IsRigid() const
{
    gp_Mat unit;
    unit.SetIdentity();
    return ElementsOf(change) == ElementsOf(unit);
}

std::unique_ptr<ShapePlacement> ShapePlacement::Of(Matrix const& transform, double scale, gp_Mat const& change)
{
    gp_Mat linear;
    gp_XYZ translation;
    for (int row = 1; row <= 3; ++row)
    {
        double const* const numbers = transform.data() + std::ptrdiff_t{4} * (row - 1);
        for (int column = 1; column <= 3; ++column)
            linear(row, column) = scale * numbers[column - 1];
        translation.SetCoord(row, scale * numbers[3]);
    }
    linear = change * linear;
    translation.Multiply(change);
    if (!IsFinite(linear, translation))
        return nullptr;
    double const largest = LargestElement(linear);
    if (largest == 0.0 || std::abs((linear * (1.0 / largest)).Determinant()) < 1e-12)
        return nullptr;
    auto placement = std::make_unique<ShapePlacement>();
    placement->change = ChangeOf(linear);
    gp_Mat const rotation = NearestOrthogonal(linear * placement->change.Inverted());
    gp_Trsf motion;
    motion.SetValues(rotation(1, 1), rotation(1, 2), rotation(1, 3), translation.X(), rotation(2, 1), rotation(2, 2),
                     rotation(2, 3), translation.Y(), rotation(3, 1), rotation(3, 2), rotation(3, 3), translation.Z());
    placement->motion = TopLoc_Location(motion);
    return placement;
}

ChangedShape::ChangedShape(TopoDS_Shape const& shape, gp_Mat const& change)
{
    gp_Mat unit;
    unit.SetIdentity();
    double const scale = std::cbrt(std::abs(change.Determinant()));
    gp_Mat const square = change.Transposed() * change * (1.0 / (scale * scale));
    if (LargestElement(square - unit) <= kTolerance)
    {
        gp_Trsf transform;
        transform.SetValues(change(1, 1), change(1, 2), change(1, 3), 0.0, change(2, 1), change(2, 2), change(2, 3),
                            0.0, change(3, 1), change(3, 2), change(3, 3), 0.0);
        m_change = std::make_unique<BRepBuilderAPI_Transform>(shape, transform, Standard_True);
    }
    else
    {
        m_change = std::make_unique<BRepBuilderAPI_GTransform>(shape, gp_GTrsf(change, gp_XYZ()), Standard_True);
    }
    m_shape = m_change->Shape();
}

ChangedShape::~ChangedShape() = default;
ChangedShape::ChangedShape(ChangedShape&&) noexcept = default;
ChangedShape& ChangedShape::operator=(ChangedShape&&) noexcept = default;

TopoDS_Shape ChangedShape::PartOf(TopoDS_Shape const& part) const
{
    try
    {
        return m_change->ModifiedShape(part);
    }
    catch (Standard_Failure const&)
    {
        return {};
    }
}

}  // namespace KVR

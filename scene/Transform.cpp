#include "scene/Transform.h"

#include <algorithm>
#include <cmath>
#include <math_Jacobi.hxx>
#include <math_Matrix.hxx>

#include "framework/api/Matrix3d.h"

namespace KVR
{

namespace
{

using Column = std::array<double, 3>;

// How far from a right angle two columns may be, as the cosine between them.
constexpr double kMostCosine = 1e-6;

Column ColumnOf(Matrix const& matrix, std::size_t column)
{
    return {matrix[column], matrix[4 + column], matrix[8 + column]};
}

double Dot(Column const& a, Column const& b)
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

Column Cross(Column const& a, Column const& b)
{
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

Column Scaled(Column const& a, double factor)
{
    return {a[0] * factor, a[1] * factor, a[2] * factor};
}

// A unit vector at right angles to another.
Column Beside(Column const& a)
{
    std::size_t least = 0;
    for (std::size_t i = 1; i < 3; ++i)
        if (std::abs(a[i]) < std::abs(a[least]))
            least = i;
    Column axis{};
    axis[least] = 1.0;
    Column const beside = Cross(a, axis);
    return Scaled(beside, 1.0 / std::sqrt(Dot(beside, beside)));
}

}  // namespace

Matrix Product(Matrix const& left, Matrix const& right)
{
    Matrix product{};
    for (std::size_t row = 0; row < 4; ++row)
        for (std::size_t column = 0; column < 4; ++column)
            for (std::size_t i = 0; i < 4; ++i)
                product[4 * row + column] += left[4 * row + i] * right[4 * i + column];
    return product;
}

Matrix Scaling(double factor)
{
    Matrix scaling = kIdentity;
    scaling[0] = scaling[5] = scaling[10] = factor;
    return scaling;
}

Matrix PlaceOf(Matrix3d const* transform)
{
    constexpr double kMost = 1e30;
    if (!transform)
        return kIdentity;
    Matrix const& elements = transform->Elements();
    bool const isUsable =
        std::all_of(elements.begin(), elements.end(), [](double element) { return std::abs(element) < kMost; });
    if (!isUsable)
        return kIdentity;
    // No format has a place for a perspective.
    Matrix affine = elements;
    std::copy(kIdentity.begin() + 12, kIdentity.end(), affine.begin() + 12);
    return affine;
}

bool HasRightAngles(Matrix const& transform)
{
    for (std::size_t a = 0; a < 3; ++a)
    {
        Column const first = ColumnOf(transform, a);
        Column const second = ColumnOf(transform, (a + 1) % 3);
        double const lengths = std::sqrt(Dot(first, first) * Dot(second, second));
        if (!(lengths > 0.0) || !(std::abs(Dot(first, second)) <= kMostCosine * lengths))
            return false;
    }
    return true;
}

bool IsSolid(Matrix const& transform)
{
    constexpr double kLeast = 1e-9;
    Column const across = Cross(ColumnOf(transform, 0), ColumnOf(transform, 1));
    double const volume = std::abs(Dot(across, ColumnOf(transform, 2)));
    double lengths = 1.0;
    for (std::size_t column = 0; column < 3; ++column)
        lengths *= std::sqrt(Dot(ColumnOf(transform, column), ColumnOf(transform, column)));
    return volume > kLeast * lengths && std::isfinite(volume);
}

bool Mirrors(Matrix const& transform)
{
    return Dot(Cross(ColumnOf(transform, 0), ColumnOf(transform, 1)), ColumnOf(transform, 2)) < 0.0;
}

// By its singular values: M = U S V', with U S as the outer and V' as the inner transform.
TwoTransforms TwoTransforms::Of(Matrix const& transform)
{
    math_Matrix square(1, 3, 1, 3);
    for (std::size_t row = 0; row < 3; ++row)
        for (std::size_t column = 0; column < 3; ++column)
            square(static_cast<int>(row) + 1, static_cast<int>(column) + 1) =
                Dot(ColumnOf(transform, row), ColumnOf(transform, column));
    math_Jacobi const jacobi(square);
    std::array<Column, 3> v{};
    std::array<double, 3> scale{};
    std::array<std::size_t, 3> order{0, 1, 2};
    std::sort(order.begin(), order.end(),
              [&](std::size_t a, std::size_t b)
              { return jacobi.Value(static_cast<int>(a) + 1) > jacobi.Value(static_cast<int>(b) + 1); });
    for (std::size_t i = 0; i < 3; ++i)
    {
        int const place = static_cast<int>(order[i]) + 1;
        scale[i] = std::sqrt(std::max(0.0, jacobi.Value(place)));
        v[i] = {jacobi.Vectors()(1, place), jacobi.Vectors()(2, place), jacobi.Vectors()(3, place)};
    }
    if (Dot(Cross(v[0], v[1]), v[2]) < 0.0)
        v[2] = Scaled(v[2], -1.0);
    // What the small ones have lost of their digits must not slant the result: each is made at right angles to those
    // before it, and the last one takes its direction alone from what it should be.
    std::array<Column, 3> u{};
    double const least = 1e-12 * scale[0];
    for (std::size_t i = 0; i < 3; ++i)
    {
        Column image{};
        for (std::size_t row = 0; row < 3; ++row)
            image[row] = Dot({transform[4 * row], transform[4 * row + 1], transform[4 * row + 2]}, v[i]);
        if (i == 2)
        {
            u[2] = Cross(u[0], u[1]);
            if (Dot(u[2], image) < 0.0)
                u[2] = Scaled(u[2], -1.0);
            continue;
        }
        if (i == 1)
        {
            double const along = Dot(image, u[0]);
            for (std::size_t row = 0; row < 3; ++row)
                image[row] -= along * u[0][row];
        }
        double const length = std::sqrt(Dot(image, image));
        u[i] = length > least ? Scaled(image, 1.0 / length) : i == 0 ? Column{1.0, 0.0, 0.0} : Beside(u[0]);
    }
    TwoTransforms result{kIdentity, kIdentity};
    for (std::size_t row = 0; row < 3; ++row)
        for (std::size_t column = 0; column < 3; ++column)
        {
            result.outer[4 * row + column] = u[column][row] * scale[column];
            result.inner[4 * row + column] = v[row][column];
        }
    for (std::size_t row = 0; row < 3; ++row)
        result.outer[4 * row + 3] = transform[4 * row + 3];
    return result;
}

}  // namespace KVR

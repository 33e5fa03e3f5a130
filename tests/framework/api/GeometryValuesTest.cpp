// Position, Vector, UnitVector, Plane, Interval, Matrix3d, Color, ViewingData.

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <stdexcept>
#include <type_traits>
#include <utility>

#include "framework/api/Color.h"
#include "framework/api/Interval.h"
#include "framework/api/MathUtil.h"
#include "framework/api/Matrix3d.h"
#include "framework/api/Plane.h"
#include "framework/api/Position.h"
#include "framework/api/Vector.h"
#include "framework/api/ViewingData.h"

namespace
{

using namespace KVR;

void ExpectIs(Position const& position, double x, double y, double z)
{
    EXPECT_EQ(position.X(), x);
    EXPECT_EQ(position.Y(), y);
    EXPECT_EQ(position.Z(), z);
}

void ExpectIs(Vector const& vector, double x, double y, double z)
{
    EXPECT_EQ(vector[0], x);
    EXPECT_EQ(vector[1], y);
    EXPECT_EQ(vector[2], z);
}

template <class Call>
void ExpectInvalidSubscript(Call call)
{
    try
    {
        call();
        FAIL() << "no exception";
    }
    catch (std::out_of_range const& error)
    {
        EXPECT_STREQ(error.what(), "invalid vector<T> subscript");
    }
}

TEST(Position, IsTheOriginUntilSet)
{
    ExpectIs(Position(), 0.0, 0.0, 0.0);
    Position position(1.0, 2.0, 3.0);
    ExpectIs(position, 1.0, 2.0, 3.0);
    position.Set(-1.0, 0.5, 1e300);
    ExpectIs(position, -1.0, 0.5, 1e300);
}

TEST(Vector, HasThreeComponentsToReadAndWrite)
{
    Vector vector;
    ExpectIs(vector, 0.0, 0.0, 0.0);
    vector.Set(1.0, 2.0, 3.0);
    vector[1] = 20.0;
    ExpectIs(vector, 1.0, 20.0, 3.0);
}

TEST(Vector, AFourthComponentIsOutOfRange)
{
    Vector vector;
    Vector const& constant = vector;
    ExpectInvalidSubscript([&] { vector[3] = 1.0; });
    ExpectInvalidSubscript([&] { static_cast<void>(constant[3]); });
    ExpectInvalidSubscript([&] { static_cast<void>(constant[~0ULL]); });
}

TEST(Vector, IsZeroWhenNoComponentExceedsTheTolerance)
{
    constexpr double kTolerance = MathUtil::kZEROTOLERANCE;
    static_assert(kTolerance == 1e-12);
    Vector vector;
    EXPECT_TRUE(vector.IsZero(0.0));
    vector.Set(kTolerance, -kTolerance, kTolerance);
    EXPECT_TRUE(vector.IsZero(kTolerance)) << "each component by itself, the limit included";
    for (unsigned long long i = 0; i < 3; ++i)
    {
        vector.Set(0.0, 0.0, 0.0);
        vector[i] = -std::nextafter(kTolerance, 1.0);
        EXPECT_FALSE(vector.IsZero(kTolerance)) << i;
        vector[i] = std::numeric_limits<double>::quiet_NaN();
        EXPECT_FALSE(vector.IsZero(kTolerance)) << i;
    }
}

TEST(UnitVector, KeepsTheNumbersItIsGiven)
{
    ExpectIs(UnitVector(), 0.0, 0.0, 0.0);
    UnitVector vector(3.0, 0.0, 4.0);
    ExpectIs(vector, 3.0, 0.0, 4.0);
    vector.Set(0.0, 2.0, 0.0);
    ExpectIs(vector, 0.0, 2.0, 0.0);
}

TEST(Plane, HasAReferenceDirectionOnlyWhenMadeWithOne)
{
    Position const origin(1.0, 2.0, 3.0);
    UnitVector const normal(0.0, 0.0, 1.0);
    UnitVector reference(7.0, 8.0, 9.0);
    EXPECT_EQ(Plane().ReferenceDirection(reference), kIsValueSpecified_No);
    EXPECT_EQ(Plane(origin, normal).ReferenceDirection(reference), kIsValueSpecified_No);
    ExpectIs(reference, 7.0, 8.0, 9.0);

    Plane const plane(origin, normal, UnitVector(1.0, 0.0, 0.0));
    EXPECT_EQ(plane.ReferenceDirection(reference), kIsValueSpecified_Yes);
    ExpectIs(reference, 1.0, 0.0, 0.0);
    ExpectIs(plane.Origin(), 1.0, 2.0, 3.0);
    ExpectIs(plane.Normal(), 0.0, 0.0, 1.0);
}

TEST(Plane, AZeroReferenceDirectionCountsAsGiven)
{
    UnitVector reference(7.0, 8.0, 9.0);
    EXPECT_EQ(Plane(Position(), UnitVector(), UnitVector()).ReferenceDirection(reference), kIsValueSpecified_Yes);
    ExpectIs(reference, 0.0, 0.0, 0.0);
}

TEST(Plane, CopiesTakeTheReferenceDirectionAlong)
{
    Plane const with(Position(), UnitVector(0.0, 0.0, 1.0), UnitVector(1.0, 0.0, 0.0));
    Plane const without(Position(4.0, 5.0, 6.0), UnitVector(0.0, 1.0, 0.0));
    UnitVector reference;
    Plane copy(with);
    EXPECT_EQ(copy.ReferenceDirection(reference), kIsValueSpecified_Yes);
    copy = without;
    EXPECT_EQ(copy.ReferenceDirection(reference), kIsValueSpecified_No);
    ExpectIs(copy.Origin(), 4.0, 5.0, 6.0);
    ExpectIs(copy.Normal(), 0.0, 1.0, 0.0);
}

TEST(Interval, KeepsItsEnds)
{
    Interval interval(1.0, -2.0);
    EXPECT_EQ(interval.Lower(), 1.0);
    EXPECT_EQ(interval.Upper(), -2.0);
    interval = Interval(3.0, 4.0);
    EXPECT_EQ(interval.Lower(), 3.0);
    EXPECT_EQ(interval.Upper(), 4.0);
}

TEST(Matrix3d, IsTheIdentityUntilSet)
{
    Matrix3d const matrix;
    EXPECT_EQ(matrix.RowDimension(), 4);
    EXPECT_EQ(matrix.ColDimension(), 4);
    for (int row = 0; row < 4; ++row)
    {
        for (int column = 0; column < 4; ++column)
            EXPECT_EQ(matrix.Element(row, column), row == column ? 1.0 : 0.0);
    }
    EXPECT_TRUE(matrix.IsIdentity());
}

TEST(Matrix3d, IsNoIdentityWhenAnyElementDiffersByTheSmallestAmount)
{
    for (int row = 0; row < 4; ++row)
    {
        for (int column = 0; column < 4; ++column)
        {
            Matrix3d matrix;
            double const was = matrix.Element(row, column);
            matrix.SetElement(row, column, std::nextafter(was, 2.0));
            EXPECT_FALSE(matrix.IsIdentity()) << row << " " << column;
            matrix.SetElement(row, column, std::numeric_limits<double>::quiet_NaN());
            EXPECT_FALSE(matrix.IsIdentity()) << row << " " << column;
            matrix.SetElement(row, column, was);
            EXPECT_TRUE(matrix.IsIdentity()) << row << " " << column;
        }
    }
}

TEST(Matrix3d, HoldsItsElementsRowByRowWithTheTranslationInTheLastColumn)
{
    Matrix3d matrix;
    matrix.SetElements({0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15});
    for (int i = 0; i < 16; ++i)
    {
        EXPECT_EQ(matrix.Element(i / 4, i % 4), i);
        EXPECT_EQ(matrix.Elements()[static_cast<std::size_t>(i)], i);
    }
    matrix.SetElement(2, 3, 55.0);
    EXPECT_EQ(matrix.Elements()[11], 55.0);
}

TEST(Matrix3d, ABadIndexIsOutOfRange)
{
    Matrix3d matrix;
    for (auto const& [row, column] :
         {std::pair(-1, 0), std::pair(0, -1), std::pair(4, 0), std::pair(0, 4), std::pair(1, -4), std::pair(-1, 4),
          std::pair(std::numeric_limits<int>::max(), 0), std::pair(0, std::numeric_limits<int>::min())})
    {
        int const r = row;
        int const c = column;
        ExpectInvalidSubscript([&] { static_cast<void>(matrix.Element(r, c)); });
        ExpectInvalidSubscript([&] { matrix.SetElement(r, c, 1.0); });
    }
    EXPECT_TRUE(matrix.IsIdentity());
}

TEST(Matrix3d, IsCopiedMovedAndReadThroughItsBase)
{
    Matrix3d matrix;
    matrix.SetElement(0, 3, 2.5);
    Matrix3d const copy(matrix);
    Matrix3d assigned;
    assigned = matrix;
    EXPECT_TRUE(std::is_move_constructible_v<Matrix3d> && std::is_move_assignable_v<Matrix3d>);
    std::unique_ptr<IMatrix const> const base = std::make_unique<Matrix3d>(copy);
    EXPECT_EQ(assigned.Elements(), copy.Elements());
    EXPECT_EQ(base->Element(0, 3), 2.5);
    EXPECT_EQ(base->RowDimension(), 4);
    EXPECT_EQ(base->ColDimension(), 4);
}

TEST(Color, IsOpaqueBlackUntilSet)
{
    Color const color;
    EXPECT_EQ(color.Red(), 0.0);
    EXPECT_EQ(color.Green(), 0.0);
    EXPECT_EQ(color.Blue(), 0.0);
    EXPECT_EQ(color.Alpha(), 1.0);
}

TEST(Color, KeepsFractionsAsGivenAndAnRgbColorIsOpaque)
{
    Color color;
    color.SetFractionalRGBA(0.25, -1.0, 255.0, 0.5);
    EXPECT_EQ(color.Red(), 0.25);
    EXPECT_EQ(color.Green(), -1.0);
    EXPECT_EQ(color.Blue(), 255.0);
    EXPECT_EQ(color.Alpha(), 0.5);
    color.SetFractionalRGB(0.1, 0.2, 0.3);
    EXPECT_EQ(color.Red(), 0.1);
    EXPECT_EQ(color.Green(), 0.2);
    EXPECT_EQ(color.Blue(), 0.3);
    EXPECT_EQ(color.Alpha(), 1.0);
}

template <class Data>
void ExpectTwoDirections()
{
    Data data;
    ExpectIs(data.UpVector(), 0.0, 0.0, 0.0);
    ExpectIs(data.FrontVector(), 0.0, 0.0, 0.0);
    data.SetUpVector(0.0, 0.0, 2.0);
    data.SetFrontVector(0.0, -3.0, 0.0);
    Data const copy = data;
    ExpectIs(copy.UpVector(), 0.0, 0.0, 2.0);
    ExpectIs(copy.FrontVector(), 0.0, -3.0, 0.0);
}

TEST(ViewingData, KeepsBothDirectionsAsGiven)
{
    ExpectTwoDirections<ViewingData>();
    ExpectTwoDirections<ViewData>();
}

}  // namespace

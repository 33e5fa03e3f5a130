#pragma once

#include <GeomAbs_Shape.hxx>
#include <TopAbs_Orientation.hxx>
#include <TopAbs_ShapeEnum.hxx>
#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

#include "framework/kernel/store/ShapeBytes.h"

namespace KVR
{

/// The fields of shapes in Open CASCADE's binary form, in the order of their bytes. Numbers are little-endian, as the
/// machines are that this is built for.
class BinaryShapes final : public ShapeBytes
{
public:
    using ShapeBytes::ShapeBytes;

    /// Versions 3 and 4. Those before are not for stores: in version 1 faces are measured as they are read, and in
    /// version 2 what a vertex has can be read in two ways.
    void Version(bool isFile);
    bool HasUVPoints() const noexcept { return m_version == 3; }
    bool HasNormals() const noexcept { return m_version == 4; }
    bool KeepsChecked() const noexcept { return m_version == 3; }
    bool MeasuresFaces() const noexcept { return false; }
    /// A face without a surface has a tolerance and a place all the same, and an offset surface is made of what is
    /// smooth alone.
    static constexpr bool kIsStrict = true;

    /// Fails where there cannot be so many numbers ahead, so that memory may be had for them.
    void RequireAhead(std::uint64_t reals, std::uint64_t integers)
    {
        Require(reals * sizeof(double) + integers * sizeof(std::int32_t) <= Left());
    }

    /// What says of which kind a thing is.
    int Kind() { return Number<unsigned char>(); }
    bool Flag();
    int Degree() { return Number<std::uint16_t>(); }
    int Integer() { return Number<std::int32_t>(); }
    double Real() { return Number<double>(); }
    /// Of which the form may make a number of anything.
    double LooseReal() { return Real(); }
    /// Numbers that have a value, in their order.
    template <std::size_t Count>
    std::array<double, Count> Numbers()
    {
        auto const numbers = Number<std::array<double, Count>>();
        Require(std::all_of(numbers.begin(), numbers.end(), [](double number) { return std::isfinite(number); }));
        return numbers;
    }
    double Weight() { return Numbers<1>()[0]; }
    std::array<float, 3> Normal() { return Number<std::array<float, 3>>(); }
    GeomAbs_Shape Continuity();
    int IntegerAndContinuity(GeomAbs_Shape& continuity)
    {
        int const value = Integer();
        continuity = Continuity();
        return value;
    }
    double Deflection() { return Real(); }

    TopAbs_ShapeEnum ShapeKind();
    /// What a vertex has of a point, with its parameter.
    int PointKind(double& parameter);
    void EndOfFace(int& triangulation);
    /// From the first to the last of Open CASCADE's flags.
    std::array<bool, 7> ShapeFlags();
    /// False at the end of a shape's children.
    bool Child(TopAbs_Orientation& orientation, int& index, int& location);

private:
    template <class Value>
    Value Number()
    {
        Value value{};
        if (char const* const bytes = Take(sizeof value))
            std::memcpy(&value, bytes, sizeof value);
        return value;
    }

    int m_version = 0;
};

}  // namespace KVR

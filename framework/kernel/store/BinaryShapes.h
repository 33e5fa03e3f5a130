#pragma once

#include <TopAbs_ShapeEnum.hxx>
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

    /// What says of which kind a thing is.
    int Kind() { return Number<unsigned char>(); }
    bool Flag();
    int Degree() { return Number<std::uint16_t>(); }
    int Integer() { return Number<std::int32_t>(); }
    double Real() { return Number<double>(); }
    void Reals(std::uint64_t count) { SkipItems(count, sizeof(double)); }
    /// None of them without a value.
    void FiniteReals(std::uint64_t count);
    /// With weights behind their coordinates, or without.
    void Poles(std::uint64_t count, int space, bool haveWeights)
    {
        FiniteReals(count * static_cast<std::uint64_t>(haveWeights ? space + 1 : space));
    }
    void Normals(std::uint64_t count) { SkipItems(count, 3 * sizeof(float)); }
    void Continuity() { Require(Kind() <= 6); }
    int IntegerAndContinuity()
    {
        int const value = Integer();
        Continuity();
        return value;
    }
    void Deflection() { Real(); }

    TopAbs_ShapeEnum ShapeKind();
    /// What a vertex has of a point, with its parameter.
    int PointKind();
    void EndOfFace(int& triangulation);
    void ShapeFlags();
    /// False at the end of a shape's children.
    bool Child(int& index, int& location);

    /// Around a curve or surface. What Open CASCADE cannot make ends its reading.
    void BeginGeometry() {}
    template <class Geometry>
    void EndGeometry(bool)
    {
    }

private:
    template <class Value>
    Value Number()
    {
        Value value{};
        if (char const* const bytes = Take(sizeof value))
            std::memcpy(&value, bytes, sizeof value);
        return value;
    }
    void SkipItems(std::uint64_t count, std::uint64_t size)
    {
        Require(count <= UINT64_MAX / size);
        if (IsGood())
            Skip(count * size);
    }

    int m_version = 0;
};

}  // namespace KVR

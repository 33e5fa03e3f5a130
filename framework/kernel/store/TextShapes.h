#pragma once

#include <GeomAbs_Shape.hxx>
#include <TopAbs_Orientation.hxx>
#include <TopAbs_ShapeEnum.hxx>
#include <array>
#include <cmath>

#include "framework/kernel/store/ShapeBytes.h"

namespace KVR
{

/// The fields of shapes in Open CASCADE's text form: words with blanks between them.
class TextShapes final : public ShapeBytes
{
public:
    using ShapeBytes::ShapeBytes;

    /// Versions 2 and 3, and of files also 1, in which faces are measured as they are read.
    void Version(bool isFile);
    bool HasUVPoints() const noexcept { return m_version == 2; }
    bool HasNormals() const noexcept { return m_version == 3; }
    bool KeepsChecked() const noexcept { return m_version == 2; }
    bool MeasuresFaces() const noexcept { return m_version == 1; }
    /// A face without a surface has nothing else of its own, and an offset surface is made of anything.
    static constexpr bool kIsStrict = false;

    /// Fails where there cannot be so many numbers ahead, each of a digit and a blank at the least, so that memory may
    /// be had for them.
    void RequireAhead(std::uint64_t reals, std::uint64_t integers) { Require(2 * (reals + integers) <= Left()); }

    /// What says of which kind a thing is.
    int Kind() { return Integer(); }
    bool Flag();
    int Degree() { return Integer(); }
    int Integer();
    double Real();
    /// Open CASCADE makes a number of any word.
    double LooseReal();
    /// Numbers that have a value, in their order.
    template <std::size_t Count>
    std::array<double, Count> Numbers()
    {
        std::array<double, Count> numbers{};
        for (double& number : numbers)
        {
            number = Real();
            Require(std::isfinite(number));
        }
        return numbers;
    }
    double Weight();
    std::array<float, 3> Normal();
    GeomAbs_Shape Continuity() { return Continuity(Word()); }
    /// With nothing between them.
    int IntegerAndContinuity(GeomAbs_Shape& continuity);
    /// Of a polygon on a triangulation.
    double Deflection();

    TopAbs_ShapeEnum ShapeKind();
    /// What a vertex has of a point, with its parameter.
    int PointKind(double& parameter);
    void EndOfFace(int& triangulation);
    /// From the first to the last of Open CASCADE's flags.
    std::array<bool, 7> ShapeFlags();
    /// False at the end of a shape's children.
    bool Child(TopAbs_Orientation& orientation, int& index, int& location);

private:
    std::string_view Word();
    GeomAbs_Shape Continuity(std::string_view word);

    int m_version = 0;
};

}  // namespace KVR

#pragma once

#include <TopAbs_ShapeEnum.hxx>
#include <string>
#include <vector>

#include "framework/kernel/store/ShapeBytes.h"

namespace KVR
{

/// The fields of shapes in Open CASCADE's text form: words with blanks between them.
class TextShapes final : public ShapeBytes
{
public:
    using ShapeBytes::ShapeBytes;

    /// Versions 2 and 3. In version 1 faces are measured as they are read: that one is not for stores.
    void Version(bool isFile);
    bool HasUVPoints() const noexcept { return m_version == 2; }
    bool HasNormals() const noexcept { return m_version == 3; }

    /// What says of which kind a thing is.
    int Kind() { return Integer(); }
    bool Flag();
    int Degree() { return Integer(); }
    int Integer();
    double Real();
    void Reals(std::uint64_t count);
    /// None of them without a value.
    void FiniteReals(std::uint64_t count);
    /// With weights behind their coordinates, or without.
    void Poles(std::uint64_t count, int space, bool haveWeights);
    void Normals(std::uint64_t count) { Reals(3 * count); }
    void Continuity() { Continuity(Word()); }
    /// With nothing between them.
    int IntegerAndContinuity();
    /// Of a polygon on a triangulation.
    void Deflection();

    TopAbs_ShapeEnum ShapeKind();
    /// What a vertex has of a point, with its parameter.
    int PointKind();
    void EndOfFace(int& triangulation);
    void ShapeFlags();
    /// False at the end of a shape's children.
    bool Child(int& index, int& location);

    /// Around a curve or surface, of which is known whether Open CASCADE makes one of it in any case. Where it cannot,
    /// it goes on in the midst of the numbers, or builds another one on nothing: in doubt it is let read this one
    /// alone.
    void BeginGeometry();
    template <class Geometry>
    void EndGeometry(bool isMade)
    {
        Require(IsGood() && (isMade || IsMade<Geometry>(m_words.substr(m_begins.back()))));
        m_begins.pop_back();
        if (m_begins.empty())
            m_words.clear();
    }

private:
    std::string_view Word();
    void Continuity(std::string_view word);
    template <class Geometry>
    static bool IsMade(std::string const& words);

    int m_version = 0;
    /// The words of the geometry, and where in them it and what it stands on began.
    std::string m_words;
    std::vector<std::size_t> m_begins;
};

}  // namespace KVR

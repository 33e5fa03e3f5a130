#pragma once

#include <cstddef>
#include <limits>
#include <span>
#include <vector>

#include "framework/kernel/CurveTolerance.h"
#include "scene/Export.h"
#include "scene/MeshQuality.h"

class TopoDS_Shape;

namespace KVR
{

class curve;
class ICurve;
class ICurveData;

/// Polylines as flat arrays.
struct KVR_SCENE_API SceneLines
{
    /// Three for each point. No number is greater than fits a float.
    std::vector<double> points;
    /// For each line the number of points in front of its end: those of the lines before, and its own, which are two or
    /// more.
    std::vector<std::size_t> ends;
    /// The pieces that make no line: those without an end, and those whose numbers make no sense.
    unsigned long long missing = 0;

    /// The number of lines.
    std::size_t Count() const noexcept { return ends.size(); }
    /// Whether there is no line, however many pieces are missing.
    bool IsEmpty() const noexcept { return ends.empty(); }
    /// The numbers of a line; the place is to be below the count.
    std::span<double const> At(std::size_t place) const;
    /// Adds a line, of three numbers for each point.
    void Add(std::span<double const> line);
};

/// The polylines of curves, by chord deviation: no point of a curve is farther from its chord than the tolerance says.
/// Straight pieces and polylines are exact; a NURBS curve has at least the ends of its spans. A piece has no more than
/// some 100,000 points, or four for each span, however fine the tolerance, and is then less close. A tolerance that is
/// no positive number counts as the default. Points are in the object's own coordinates and unit of length, before its
/// transform. An arc ends after one turn.
struct KVR_SCENE_API CurvePoints
{
    /// For the box around a curve: right to a millionth of its size.
    static constexpr CurveTolerance kForBoxes{5e-7, 0.0};

    /// As far from curves as triangles from bodies; a fraction is one of the box of each piece.
    static CurveTolerance ToleranceOf(Deflection const& deflection) noexcept
    {
        return deflection.isFraction ? CurveTolerance{deflection.value, 0.0} : CurveTolerance{0.0, deflection.value};
    }

    /// Those of all pieces, of curve data and then of the kernel. The segments of a composite are one line where they
    /// meet.
    static SceneLines Of(ICurve const& curve, CurveTolerance const& tolerance);
    static SceneLines Of(ICurveData& data, CurveTolerance const& tolerance);
    /// None for a curve that was destroyed.
    static SceneLines Of(KVR::curve const& kernelCurve, CurveTolerance const& tolerance);
    /// Those of the edges of a shape, each edge once; edges without a curve, such as the tip of a cone, have none. When
    /// there are more than `most` points, the edges behind are left out.
    static SceneLines OfEdges(TopoDS_Shape const& shape, CurveTolerance const& tolerance,
                              std::size_t most = std::numeric_limits<std::size_t>::max());
    /// Adds the line of one edge; false when there is none.
    static bool AddEdge(SceneLines& lines, TopoDS_Shape const& edge, CurveTolerance const& tolerance);
};

}  // namespace KVR

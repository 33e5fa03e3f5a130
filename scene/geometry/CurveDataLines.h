#pragma once

#include <span>
#include <vector>

#include "framework/api/CurveDataVisitor.h"
#include "scene/CurvePoints.h"

namespace KVR
{

class CurveSampler;

/// Adds the lines of curve data, of composites those of all that they are made of.
class CurveDataLines final : private CurveDataVisitor
{
public:
    CurveDataLines(SceneLines& lines, CurveTolerance const& tolerance) : m_lines(lines), m_tolerance(tolerance) {}

    void Add(ICurveData& data);

private:
    struct Piece
    {
        ICurveData* data;
        unsigned level;
    };

    using CurveDataVisitor::Visit;
    void Visit(IStraightData* data) override;
    void Visit(IRayData* data) override;
    void Visit(IEllipseData* data) override;
    void Visit(IPolyLineData* data) override;
    void Visit(INurbsCurveData* data) override;
    void Visit(ICompositeCurveData* data) override;

    void AddOfUnknownKind(ICurveData& data);
    void AddNurbs(INurbsCurveData const& data);
    /// Counts a piece that could not be followed.
    void Finish(bool isGood, CurveSampler const& sampler);
    /// As a line of its own, or behind the last one where that belongs to the same composite and ends there.
    void AddLine(std::span<double const> line);

    SceneLines& m_lines;
    CurveTolerance m_tolerance;
    std::vector<Piece> m_pieces;
    unsigned m_level = 0;
    bool m_isKnown = false;
    /// The lines that there were before.
    std::size_t m_linesBefore = 0;
};

}  // namespace KVR

#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "framework/kernel/CurveTolerance.h"
#include "framework/kernel/Export.h"

namespace KVR
{

/// A curve by its parameter.
class KVR_KERNEL_API CurveSource
{
public:
    using Point = std::array<double, 3>;

    virtual ~CurveSource() = default;
    /// False where the curve has no point.
    virtual bool PointAt(double parameter, Point& point) const = 0;

protected:
    CurveSource() = default;
    CurveSource(CurveSource const&) = default;
    CurveSource& operator=(CurveSource const&) = default;
};

/// Follows one piece of a curve by points, three numbers for each. Every operation answers false, with points of no
/// meaning, when the curve has no point somewhere or one that no float could hold.
class KVR_KERNEL_API CurveSampler
{
public:
    using Point = CurveSource::Point;

    CurveSampler(CurveSource const& curve, CurveTolerance const& tolerance);

    /// A chord from each parameter to the next; they may fall.
    bool Straight(std::vector<double> const& parameters);
    /// A circle or an ellipse in its angle, of this larger radius.
    bool Turning(double first, double last, double radius);
    /// A curve that is smooth between one parameter and the next, of which there are two or more, as a polynomial of
    /// the degree is.
    bool Smooth(std::vector<double> spans, unsigned degree);

    std::vector<double> const& Points() const noexcept { return m_points; }

private:
    struct Node
    {
        double parameter = 0.0;
        Point point{};
    };

    bool Take(double parameter, Node& node) const;
    void Put(Point const& point) { m_points.insert(m_points.end(), point.begin(), point.end()); }
    void Weigh(std::vector<Node> const& nodes);
    bool IsNear(Node const& start, Node const& end, Point const& point) const;
    /// The points behind a node up to another one, of the span in hand.
    bool Refine(Node const& start, Node const& middle, Node const& end, unsigned depth);
    bool AddSpan(std::vector<Node> const& nodes, std::size_t first, std::size_t last, std::size_t spansLeft);

    CurveSource const& m_curve;
    CurveTolerance m_tolerance;
    /// In the curve's unit of length.
    double m_distance = 0.0;
    /// The points that may still be added.
    std::size_t m_left = 0;
    std::vector<double> m_points;
    /// All points that were looked at in the span in hand.
    std::vector<Point> m_seen;
};

}  // namespace KVR

#include "framework/kernel/tessellation/CurveSampler.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

namespace KVR
{

namespace
{

// Graphics formats hold floats.
constexpr double kMost = std::numeric_limits<float>::max();
constexpr double kTurn = 6.283185307179586;
// An arc has so many chords for a turn at the least.
constexpr double kWidestStep = kTurn / 8.0;
constexpr std::size_t kMostPoints = std::size_t{1} << 16U;
constexpr unsigned kDeepest = 20;
// Steps of evaluation, of which a point takes half the square of the degree.
constexpr double kMostSteps = 4e8;
// Between the points that are looked at, a curve may be a little farther from its chord than at them.
constexpr double kShare = 0.8;
// No distance is told from rounding below this fraction of the largest coordinate.
constexpr double kRounding = 1e-14;

double Usable(double value, double otherwise)
{
    return value > 0.0 && std::isfinite(value) ? value : otherwise;
}

}  // namespace

CurveSampler::CurveSampler(CurveSource const& curve, CurveTolerance const& tolerance)
    : m_curve(curve), m_tolerance{Usable(tolerance.fraction, CurveTolerance().fraction), Usable(tolerance.length, 0.0)}
{
}

bool CurveSampler::Take(double parameter, Node& node) const
{
    node.parameter = parameter;
    return m_curve.PointAt(parameter, node.point) &&
           std::all_of(node.point.begin(), node.point.end(), [](double x) { return std::abs(x) <= kMost; });
}

void CurveSampler::Weigh(std::vector<Node> const& nodes)
{
    Point low = nodes.front().point;
    Point high = low;
    double largest = 0.0;
    for (Node const& node : nodes)
        for (std::size_t axis = 0; axis < 3; ++axis)
        {
            low[axis] = std::min(low[axis], node.point[axis]);
            high[axis] = std::max(high[axis], node.point[axis]);
            largest = std::max(largest, std::abs(node.point[axis]));
        }
    double const extent = std::hypot(high[0] - low[0], high[1] - low[1], high[2] - low[2]);
    double const wanted = m_tolerance.length > 0.0 ? m_tolerance.length : m_tolerance.fraction * extent;
    m_distance = std::max(wanted, kRounding * largest);
}

bool CurveSampler::Straight(std::vector<double> const& parameters)
{
    m_points.clear();
    m_points.reserve(3 * parameters.size());
    Node node;
    for (double const parameter : parameters)
    {
        if (!Take(parameter, node))
            return false;
        Put(node.point);
    }
    return parameters.size() > 1;
}

bool CurveSampler::Turning(double first, double last, double radius)
{
    last = std::clamp(last, first - kTurn, first + kTurn);
    double const range = last - first;
    if (!std::isfinite(range) || range == 0.0)
        return false;
    constexpr unsigned kLooks = 32;
    std::vector<Node> nodes(kLooks + 1);
    for (unsigned i = 0; i <= kLooks; ++i)
        if (!Take(first + range * i / kLooks, nodes[i]))
            return false;
    Weigh(nodes);
    // The middle of an arc is by radius * (1 - cos(step / 2)) from its chord, and nearer on an ellipse.
    double const rise = radius > 0.0 ? std::min(m_distance / radius, 1.0) : 1.0;
    double const step = std::min(4.0 * std::asin(std::sqrt(0.5 * rise)), kWidestStep);
    double const count = std::ceil(std::abs(range) / step * (1.0 - 1e-9));
    auto pieces = static_cast<std::size_t>(std::clamp(count, 1.0, static_cast<double>(kMostPoints)));
    // So that the ends of both axes of a whole ellipse are among the points.
    if (std::abs(range) > kTurn * (1.0 - 1e-9))
        pieces = (pieces + 3) / 4 * 4;
    std::vector<double> parameters;
    parameters.reserve(pieces + 1);
    for (std::size_t i = 0; i < pieces; ++i)
        parameters.push_back(first + range * static_cast<double>(i) / static_cast<double>(pieces));
    parameters.push_back(last);
    return Straight(parameters);
}

bool CurveSampler::IsNear(Node const& start, Node const& end, Point const& point) const
{
    Point along{};
    Point away{};
    double length = 0.0;
    double part = 0.0;
    for (std::size_t axis = 0; axis < 3; ++axis)
    {
        along[axis] = end.point[axis] - start.point[axis];
        away[axis] = point[axis] - start.point[axis];
        length += along[axis] * along[axis];
        part += along[axis] * away[axis];
    }
    double const share = length > 0.0 ? std::clamp(part / length, 0.0, 1.0) : 0.0;
    double const distance =
        std::hypot(away[0] - share * along[0], away[1] - share * along[1], away[2] - share * along[2]);
    return distance <= kShare * m_distance;
}

bool CurveSampler::Refine(Node const& start, Node const& middle, Node const& end, unsigned depth)
{
    Node before;
    Node behind;
    if (!Take(0.5 * (start.parameter + middle.parameter), before) ||
        !Take(0.5 * (middle.parameter + end.parameter), behind))
        return false;
    m_seen.insert(m_seen.end(), {before.point, behind.point});
    if (depth == 0 ||
        (IsNear(start, end, before.point) && IsNear(start, end, middle.point) && IsNear(start, end, behind.point)))
    {
        Put(end.point);
        return true;
    }
    return Refine(start, before, middle, depth - 1) && Refine(middle, behind, end, depth - 1);
}

bool CurveSampler::AddSpan(std::vector<Node> const& nodes, std::size_t first, std::size_t last, std::size_t spansLeft)
{
    std::size_t const before = m_points.size();
    m_seen.clear();
    std::size_t const share = std::max<std::size_t>(m_left / spansLeft / (last - first), 1);
    unsigned const depth = std::min(kDeepest, static_cast<unsigned>(std::bit_width(share)) - 1);
    for (std::size_t i = first; i < last; ++i)
    {
        Node middle;
        if (!Take(0.5 * (nodes[i].parameter + nodes[i + 1].parameter), middle))
            return false;
        m_seen.insert(m_seen.end(), {middle.point, nodes[i + 1].point});
        if (!Refine(nodes[i], middle, nodes[i + 1], depth))
            return false;
    }
    // A straight span is one chord.
    bool const isStraight = std::all_of(m_seen.begin(), m_seen.end(),
                                        [&](Point const& point) { return IsNear(nodes[first], nodes[last], point); });
    if (isStraight)
    {
        m_points.resize(before);
        Put(nodes[last].point);
    }
    m_left -= std::min(m_left, (m_points.size() - before) / 3);
    return true;
}

bool CurveSampler::Smooth(std::vector<double> spans, unsigned degree)
{
    if (degree <= 1)
        return Straight(spans);
    double const cost = 0.5 * degree * degree;
    auto const most = static_cast<std::size_t>(std::min(static_cast<double>(4 * kMostPoints), kMostSteps / cost / 8.0));
    std::size_t count = spans.size() - 1;
    if (count > most)
    {
        // What is too long is followed by every other end of a span, or fewer.
        std::size_t const stride = count / most + 1;
        std::vector<double> fewer;
        for (std::size_t i = 0; i < count; i += stride)
            fewer.push_back(spans[i]);
        fewer.push_back(spans.back());
        spans.swap(fewer);
        count = spans.size() - 1;
    }
    std::size_t const pieces = std::clamp<std::size_t>(most / count, 1, degree + std::size_t{1});
    std::vector<Node> nodes(count * pieces + 1);
    for (std::size_t i = 0; i < nodes.size(); ++i)
    {
        std::size_t const span = std::min(i / pieces, count - 1);
        double const part = static_cast<double>(i - span * pieces) / static_cast<double>(pieces);
        double const parameter = part == 1.0 ? spans[span + 1] : spans[span] + part * (spans[span + 1] - spans[span]);
        if (!Take(parameter, nodes[i]))
            return false;
    }
    Weigh(nodes);
    m_left = std::max(kMostPoints, 4 * nodes.size());
    m_left = std::max<std::size_t>(1, std::min(m_left, static_cast<std::size_t>(kMostSteps / cost / 4.0)));
    m_points.clear();
    Put(nodes.front().point);
    for (std::size_t span = 0; span < count; ++span)
        if (!AddSpan(nodes, span * pieces, (span + 1) * pieces, count - span))
            return false;
    return true;
}

}  // namespace KVR

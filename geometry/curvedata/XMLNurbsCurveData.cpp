#include "geometry/curvedata/XMLNurbsCurveData.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "geometry/curvedata/CurveMath.h"

using namespace KVR;

namespace
{
// Beyond this degree no modeller goes, and the evaluation would be slow without end.
constexpr std::uint32_t kHighestDegree = 64;
// Samples per span of the basis from which the nearest point is sought: as many for each degree, and fewer on a curve
// of so many spans that they would take long.
constexpr int kSamplesPerDegree = 8;
constexpr int kFewestSamples = 2;
constexpr double kMostSampleSteps = 2e7;
}  // namespace

XMLNurbsCurveData::XMLNurbsCurveData(StoreCursor& store) : INurbsCurveData(nullptr)
{
    store.Read(m_isClosed);
    store.Read(m_isPeriodic);
    m_knots.resize(ReadCurveCount(store, sizeof(double), sizeof(double)));
    store.ReadDoubles(m_knots.data(), m_knots.size());
    m_points.resize(ReadCurveCount(store, sizeof(CurveVector), sizeof(CurveVector)));
    store.ReadDoubles(reinterpret_cast<double*>(m_points.data()), 3 * m_points.size());
    unsigned long long isRational = 0;
    store.Read(isRational);
    m_isRational = isRational != 0;
    if (m_isRational)
    {
        store.Expect(m_points.size(), sizeof(double), sizeof(double));
        m_weights.resize(m_points.size());
        store.ReadDoubles(m_weights.data(), m_weights.size());
    }
    // The degree stands behind the control points.
    unsigned long long degree = 0;
    store.Read(degree);
    m_degree = static_cast<std::uint32_t>(degree);
    store.Read(m_start);
    store.Read(m_end);
    m_makesCurve = MakesCurve();
}

XMLNurbsCurveData::~XMLNurbsCurveData() = default;

DataReturnCodeEnum XMLNurbsCurveData::Degree(std::uint32_t& degree) const
{
    degree = m_degree;
    return kDataReturnCode_Ok;
}

DataReturnCodeEnum XMLNurbsCurveData::KnotCount(std::uint32_t& count) const
{
    count = static_cast<std::uint32_t>(m_knots.size());
    return kDataReturnCode_Ok;
}

DataReturnCodeEnum XMLNurbsCurveData::ControlPointCount(std::uint32_t& count) const
{
    count = static_cast<std::uint32_t>(m_points.size());
    return kDataReturnCode_Ok;
}

DataReturnCodeEnum XMLNurbsCurveData::IsRational(bool& rational) const
{
    rational = m_isRational;
    return kDataReturnCode_Ok;
}

DataReturnCodeEnum XMLNurbsCurveData::Knot(int index, double& knot) const
{
    knot = CheckedAt(m_knots, static_cast<unsigned long long>(index));
    return kDataReturnCode_Ok;
}

DataReturnCodeEnum XMLNurbsCurveData::ControlPoint(int index, double& x, double& y, double& z, double& w) const
{
    CheckedAt(m_points, static_cast<unsigned long long>(index)).Get(x, y, z);
    w = m_isRational ? m_weights[static_cast<std::size_t>(index)] : 1.0;
    return kDataReturnCode_Ok;
}

DataReturnCodeEnum XMLNurbsCurveData::FitTolerance(double& tolerance) const
{
    tolerance = 0.0;
    return kDataReturnCode_Ok;
}

DataReturnCodeEnum XMLNurbsCurveData::ParameterShift(double& shift) const
{
    shift = 0.0;
    return kDataReturnCode_Ok;
}

DataReturnCodeEnum XMLNurbsCurveData::ParameterRange(Interval& range) const
{
    range = Interval(m_start, m_end);
    return kDataReturnCode_Ok;
}

DataReturnCodeEnum XMLNurbsCurveData::IsClosed(bool& closed) const
{
    closed = m_isClosed;
    return kDataReturnCode_Ok;
}

DataReturnCodeEnum XMLNurbsCurveData::IsPeriodic(bool& periodic) const
{
    periodic = m_isPeriodic;
    return kDataReturnCode_Ok;
}

bool XMLNurbsCurveData::MakesCurve() const
{
    std::size_t const full = m_points.size() + m_degree + 1;
    if (m_degree < 1 || m_degree > kHighestDegree || m_points.size() <= m_degree ||
        (m_knots.size() != full && m_knots.size() + 2 != full))
        return false;
    return std::is_sorted(m_knots.begin(), m_knots.end()) && std::isfinite(m_knots.front()) &&
           std::isfinite(m_knots.back()) && FullKnot(m_degree) < FullKnot(m_points.size()) && std::isfinite(m_start) &&
           std::isfinite(m_end);
}

double XMLNurbsCurveData::FullKnot(std::size_t index) const
{
    if (m_knots.size() == m_points.size() + m_degree + 1)
        return m_knots[index];
    // The outermost knots are left out: each is as the one next to it.
    return m_knots[std::min(index == 0 ? 0 : index - 1, m_knots.size() - 1)];
}

double XMLNurbsCurveData::FirstParameter() const
{
    return std::clamp(std::min(m_start, m_end), FullKnot(m_degree), FullKnot(m_points.size()));
}

double XMLNurbsCurveData::LastParameter() const
{
    return std::clamp(std::max(m_start, m_end), FullKnot(m_degree), FullKnot(m_points.size()));
}

// De Boor's algorithm on points in homogeneous form (Piegl and Tiller, The NURBS Book, chapters 2 and 4).
CurveVector XMLNurbsCurveData::PointAt(double parameter) const
{
    std::size_t span = m_degree;
    // The last span whose first knot is not above the parameter; the end of the curve belongs to the last of all.
    std::size_t low = m_degree;
    std::size_t high = m_points.size();
    while (low < high)
    {
        std::size_t const middle = (low + high) / 2;
        if (FullKnot(middle) <= parameter)
            low = middle + 1;
        else
            high = middle;
    }
    span = std::max<std::size_t>(low, m_degree + 1) - 1;
    while (span > m_degree && FullKnot(span) == FullKnot(span + 1))
        --span;

    std::array<Weighted, kHighestDegree + 1> points;
    for (std::size_t i = 0; i <= m_degree; ++i)
    {
        std::size_t const at = span - m_degree + i;
        double const weight = m_isRational ? m_weights[at] : 1.0;
        points[i] = {weight * m_points[at], weight};
    }
    for (std::size_t level = 1; level <= m_degree; ++level)
    {
        for (std::size_t i = m_degree; i >= level; --i)
        {
            double const left = FullKnot(span - m_degree + i);
            double const right = FullKnot(span + 1 + i - level);
            double const part = right > left ? (parameter - left) / (right - left) : 0.0;
            points[i].point = (1.0 - part) * points[i - 1].point + part * points[i].point;
            points[i].weight = (1.0 - part) * points[i - 1].weight + part * points[i].weight;
        }
    }
    return 1.0 / points[m_degree].weight * points[m_degree].point;
}

DataReturnCodeEnum XMLNurbsCurveData::StartPoint_ex(Position& point) const
{
    return Evaluate_ex(m_start, point);
}
DataReturnCodeEnum XMLNurbsCurveData::EndPoint_ex(Position& point) const
{
    return Evaluate_ex(m_end, point);
}

DataReturnCodeEnum XMLNurbsCurveData::Evaluate_ex(double parameter, Position& point) const
{
    if (!m_makesCurve)
        return kDataReturnCode_NotAvailable;
    if (!(parameter >= FirstParameter() && parameter <= LastParameter()))
        return kDataReturnCode_BadArgument;
    return CurveMath::Answer(PointAt(parameter), point);
}

int XMLNurbsCurveData::SamplesPerSpan() const
{
    // The point at a parameter takes about half as many steps as the square of the degree.
    double const degree = m_degree;
    double const spanCount = static_cast<double>(m_points.size()) - degree;
    return static_cast<int>(std::clamp<double>(kMostSampleSteps / (0.5 * degree * degree * spanCount), kFewestSamples,
                                               kSamplesPerDegree * degree));
}

DataReturnCodeEnum XMLNurbsCurveData::Param_ex(Position const& point, double& parameter) const
{
    if (!m_makesCurve)
        return kDataReturnCode_NotAvailable;
    CurveVector const wanted = CurveMath::VectorOf(point);
    auto const pointAt = [&](double t) { return PointAt(t); };
    double const first = FirstParameter();
    double const last = LastParameter();
    int const count = SamplesPerSpan();
    std::vector<double> samples = {first};
    for (std::size_t i = m_degree; i < m_points.size(); ++i)
    {
        double const low = std::max(first, FullKnot(i));
        double const high = std::min(last, FullKnot(i + 1));
        for (int k = 1; k <= count && low < high; ++k)
            samples.push_back(low + (high - low) * k / count);
    }
    if (!IsFinite(PointAt(first) - wanted))
        return kDataReturnCode_NotAvailable;
    parameter = CurveMath::Nearest(pointAt, wanted, samples);
    return kDataReturnCode_Ok;
}

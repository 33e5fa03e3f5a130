#include "geometry/curvedata/XMLEllipseData.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "geometry/curvedata/CurveMath.h"

using namespace KVR;

namespace
{
// Samples per turn from which the nearest point is sought: an ellipse has at most four points of extreme distance.
constexpr int kSamples = 64;
constexpr double kTurn = 6.283185307179586;
}  // namespace

XMLEllipseData::XMLEllipseData(StoreCursor& store) : IEllipseData(nullptr)
{
    store.Read(m_isClosed);
    store.Read(m_isPeriodic);
    m_center.ReadFrom(store);
    m_majorAxis.ReadFrom(store);
    m_normal.ReadFrom(store);
    store.Read(m_ratio);
    store.Read(m_start);
    store.Read(m_end);
}

XMLEllipseData::~XMLEllipseData() = default;

DataReturnCodeEnum XMLEllipseData::Center(double& x, double& y, double& z) const
{
    m_center.Get(x, y, z);
    return kDataReturnCode_Ok;
}

DataReturnCodeEnum XMLEllipseData::MajorAxis(double& x, double& y, double& z) const
{
    m_majorAxis.Get(x, y, z);
    return kDataReturnCode_Ok;
}

DataReturnCodeEnum XMLEllipseData::Normal(double& x, double& y, double& z) const
{
    m_normal.Get(x, y, z);
    return kDataReturnCode_Ok;
}

DataReturnCodeEnum XMLEllipseData::RadiusRatio(double& ratio) const
{
    ratio = m_ratio;
    return kDataReturnCode_Ok;
}

DataReturnCodeEnum XMLEllipseData::ParameterRange(Interval& range) const
{
    range = Interval(m_start, m_end);
    return kDataReturnCode_Ok;
}

DataReturnCodeEnum XMLEllipseData::IsClosed(bool& closed) const
{
    closed = m_isClosed;
    return kDataReturnCode_Ok;
}

DataReturnCodeEnum XMLEllipseData::IsPeriodic(bool& periodic) const
{
    periodic = m_isPeriodic;
    return kDataReturnCode_Ok;
}

CurveVector XMLEllipseData::MinorAxis() const
{
    return m_ratio / std::sqrt(Dot(m_normal, m_normal)) * Cross(m_normal, m_majorAxis);
}

CurveVector XMLEllipseData::PointAt(double parameter) const
{
    return m_center + std::cos(parameter) * m_majorAxis + std::sin(parameter) * MinorAxis();
}

DataReturnCodeEnum XMLEllipseData::StartPoint_ex(Position& point) const
{
    return Evaluate_ex(m_start, point);
}
DataReturnCodeEnum XMLEllipseData::EndPoint_ex(Position& point) const
{
    return Evaluate_ex(m_end, point);
}

DataReturnCodeEnum XMLEllipseData::Evaluate_ex(double parameter, Position& point) const
{
    return CurveMath::Answer(PointAt(parameter), point);
}

DataReturnCodeEnum XMLEllipseData::Param_ex(Position const& point, double& parameter) const
{
    double const low = std::min(m_start, m_end);
    double const high = std::max(m_start, m_end);
    CurveVector const wanted = CurveMath::VectorOf(point);
    auto const pointAt = [&](double t) { return PointAt(t); };
    if (!IsFinite(PointAt(low) - wanted) || !std::isfinite(high - low))
        return kDataReturnCode_NotAvailable;
    // Beyond a turn the curve repeats itself.
    double const span = std::min(high - low, kTurn);
    std::vector<double> samples;
    for (int i = 0; i <= kSamples; ++i)
        samples.push_back(low + span * i / kSamples);
    parameter = CurveMath::Nearest(pointAt, wanted, samples);
    return kDataReturnCode_Ok;
}

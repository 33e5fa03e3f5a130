#include "geometry/curvedata/XMLPolylineData.h"

#include <algorithm>
#include <cmath>

#include "geometry/curvedata/CurveMath.h"

using namespace KVR;

XMLPolylineData::XMLPolylineData(StoreCursor& store) : IPolyLineData(nullptr)
{
    store.Read(m_isClosed);
    store.Read(m_isPeriodic);
    std::size_t const count = ReadCurveCount(store, sizeof(CurveVector), sizeof(CurveVector));
    m_points.reserve(count + (m_isClosed ? 1 : 0));
    m_points.resize(count);
    store.ReadDoubles(reinterpret_cast<double*>(m_points.data()), 3 * count);
    // A closed line without points has no first one to repeat; it gets the origin.
    if (m_isClosed)
        m_points.push_back(m_points.empty() ? CurveVector() : m_points.front());
    unsigned long long hasVectors = 0;
    store.Read(hasVectors);
    m_hasVectors = hasVectors != 0;
    if (!m_hasVectors)
        return;
    store.Expect(count, sizeof(CurveVector), sizeof(CurveVector));
    m_vectors.resize(count);
    store.ReadDoubles(reinterpret_cast<double*>(m_vectors.data()), 3 * count);
}

XMLPolylineData::~XMLPolylineData() = default;

DataReturnCodeEnum XMLPolylineData::HasVectors(bool& has) const
{
    has = m_hasVectors;
    return kDataReturnCode_Ok;
}

DataReturnCodeEnum XMLPolylineData::PointCount(std::uint32_t& count) const
{
    count = static_cast<std::uint32_t>(m_points.size());
    return kDataReturnCode_Ok;
}

DataReturnCodeEnum XMLPolylineData::Point(int index, double& x, double& y, double& z) const
{
    CheckedAt(m_points, static_cast<unsigned long long>(index)).Get(x, y, z);
    return kDataReturnCode_Ok;
}

DataReturnCodeEnum XMLPolylineData::VectorAt(int index, double& x, double& y, double& z) const
{
    if (m_hasVectors)
        CheckedAt(m_vectors, static_cast<unsigned long long>(index)).Get(x, y, z);
    return kDataReturnCode_Ok;
}

DataReturnCodeEnum XMLPolylineData::IsClosed(bool& closed) const
{
    closed = m_isClosed;
    return kDataReturnCode_Ok;
}

DataReturnCodeEnum XMLPolylineData::IsPeriodic(bool& periodic) const
{
    periodic = m_isPeriodic;
    return kDataReturnCode_Ok;
}

DataReturnCodeEnum XMLPolylineData::StartPoint_ex(Position& point) const
{
    return Evaluate_ex(0.0, point);
}

DataReturnCodeEnum XMLPolylineData::EndPoint_ex(Position& point) const
{
    return Evaluate_ex(static_cast<double>(m_points.size()) - 1.0, point);
}

DataReturnCodeEnum XMLPolylineData::Evaluate_ex(double parameter, Position& point) const
{
    if (m_points.empty())
        return kDataReturnCode_NotAvailable;
    double const last = static_cast<double>(m_points.size() - 1);
    if (!(parameter >= 0.0 && parameter <= last))
        return kDataReturnCode_BadArgument;
    auto const from = static_cast<std::size_t>(parameter);
    double const part = parameter - static_cast<double>(from);
    if (part == 0.0)
        return CurveMath::Answer(m_points[from], point);
    return CurveMath::Answer(m_points[from] + part * (m_points[from + 1] - m_points[from]), point);
}

DataReturnCodeEnum XMLPolylineData::Param_ex(Position const& point, double& parameter) const
{
    CurveVector const wanted = CurveMath::VectorOf(point);
    bool isFound = false;
    double least = 0.0;
    for (std::size_t i = 0; i < m_points.size(); ++i)
    {
        double part = 0.0;
        CurveVector near = m_points[i];
        if (i + 1 < m_points.size())
        {
            CurveVector const direction = m_points[i + 1] - m_points[i];
            // A stretch without length is its point.
            if (CurveMath::ParameterOnLine(m_points[i], direction, point, part))
                part = std::clamp(part, 0.0, 1.0);
            near = m_points[i] + part * direction;
        }
        double const distance = Dot(near - wanted, near - wanted);
        if (std::isfinite(distance) && (!isFound || distance < least))
        {
            isFound = true;
            least = distance;
            parameter = static_cast<double>(i) + part;
        }
    }
    return isFound ? kDataReturnCode_Ok : kDataReturnCode_NotAvailable;
}

#include "geometry/curvedata/XMLLineData.h"

#include <algorithm>

#include "geometry/curvedata/CurveMath.h"

using namespace KVR;

XMLLineData::XMLLineData(StoreCursor& store) : IStraightData(nullptr)
{
    m_root.ReadFrom(store);
    m_direction.ReadFrom(store);
    store.Read(m_start);
    store.Read(m_end);
}

XMLLineData::~XMLLineData() = default;

DataReturnCodeEnum XMLLineData::RootPoint(double& x, double& y, double& z) const
{
    m_root.Get(x, y, z);
    return kDataReturnCode_Ok;
}

DataReturnCodeEnum XMLLineData::Direction(double& x, double& y, double& z) const
{
    m_direction.Get(x, y, z);
    return kDataReturnCode_Ok;
}

DataReturnCodeEnum XMLLineData::ParameterRange(Interval& range) const
{
    range = Interval(m_start, m_end);
    return kDataReturnCode_Ok;
}

DataReturnCodeEnum XMLLineData::StartPoint_ex(Position& point) const
{
    return Evaluate_ex(m_start, point);
}
DataReturnCodeEnum XMLLineData::EndPoint_ex(Position& point) const
{
    return Evaluate_ex(m_end, point);
}

DataReturnCodeEnum XMLLineData::Evaluate_ex(double parameter, Position& point) const
{
    return CurveMath::Answer(m_root + parameter * m_direction, point);
}

DataReturnCodeEnum XMLLineData::Param_ex(Position const& point, double& parameter) const
{
    double along = 0.0;
    if (!CurveMath::ParameterOnLine(m_root, m_direction, point, along))
        return kDataReturnCode_NotAvailable;
    parameter = std::clamp(along, std::min(m_start, m_end), std::max(m_start, m_end));
    return kDataReturnCode_Ok;
}

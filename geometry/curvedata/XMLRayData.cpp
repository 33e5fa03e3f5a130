#include "geometry/curvedata/XMLRayData.h"

#include <algorithm>

#include "geometry/curvedata/CurveMath.h"

using namespace KVR;

XMLRayData::XMLRayData(StoreCursor& store) : IRayData(nullptr)
{
    m_origin.ReadFrom(store);
    m_direction.ReadFrom(store);
}

XMLRayData::~XMLRayData() = default;

DataReturnCodeEnum XMLRayData::Origin(double& x, double& y, double& z) const
{
    m_origin.Get(x, y, z);
    return kDataReturnCode_Ok;
}

DataReturnCodeEnum XMLRayData::Direction(double& x, double& y, double& z) const
{
    m_direction.Get(x, y, z);
    return kDataReturnCode_Ok;
}

DataReturnCodeEnum XMLRayData::StartPoint_ex(Position& point) const
{
    return Evaluate_ex(0.0, point);
}

DataReturnCodeEnum XMLRayData::Evaluate_ex(double parameter, Position& point) const
{
    if (!(parameter >= 0.0))
        return kDataReturnCode_BadArgument;
    return CurveMath::Answer(m_origin + parameter * m_direction, point);
}

DataReturnCodeEnum XMLRayData::Param_ex(Position const& point, double& parameter) const
{
    double along = 0.0;
    if (!CurveMath::ParameterOnLine(m_origin, m_direction, point, along))
        return kDataReturnCode_NotAvailable;
    parameter = std::max(along, 0.0);
    return kDataReturnCode_Ok;
}

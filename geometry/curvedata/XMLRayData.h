#pragma once

#include "framework/api/CurveDataVisitor.h"
#include "framework/api/ICurveData.h"
#include "geometry/curvedata/CurveRecord.h"

/// A half line: the point at parameter t, 0 or above, is the origin and t times the direction. It has no end.
class XMLRayData : public KVR::IRayData, public KVR::CurveDataVisitor
{
public:
    explicit XMLRayData(KVR::StoreCursor& store);
    ~XMLRayData() override;

    KVR::DataReturnCodeEnum Origin(double& x, double& y, double& z) const override;
    KVR::DataReturnCodeEnum Direction(double& x, double& y, double& z) const override;
    KVR::DataReturnCodeEnum StartPoint_ex(KVR::Position& point) const override;
    KVR::DataReturnCodeEnum Evaluate_ex(double parameter, KVR::Position& point) const override;
    KVR::DataReturnCodeEnum Param_ex(KVR::Position const& point, double& parameter) const override;

private:
    KVR::CurveVector m_origin;
    KVR::CurveVector m_direction{1.0, 0.0, 0.0};
};

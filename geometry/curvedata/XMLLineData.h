#pragma once

#include "framework/api/CurveDataVisitor.h"
#include "framework/api/ICurveData.h"
#include "geometry/curvedata/CurveRecord.h"

/// A stretch of a straight line: the point at parameter t is the root point and t times the direction.
class XMLLineData : public KVR::IStraightData, public KVR::CurveDataVisitor
{
public:
    explicit XMLLineData(KVR::StoreCursor& store);
    ~XMLLineData() override;

    KVR::DataReturnCodeEnum RootPoint(double& x, double& y, double& z) const override;
    KVR::DataReturnCodeEnum Direction(double& x, double& y, double& z) const override;
    KVR::DataReturnCodeEnum ParameterRange(KVR::Interval& range) const override;
    KVR::DataReturnCodeEnum StartPoint_ex(KVR::Position& point) const override;
    KVR::DataReturnCodeEnum EndPoint_ex(KVR::Position& point) const override;
    KVR::DataReturnCodeEnum Evaluate_ex(double parameter, KVR::Position& point) const override;
    KVR::DataReturnCodeEnum Param_ex(KVR::Position const& point, double& parameter) const override;

private:
    KVR::CurveVector m_root;
    KVR::CurveVector m_direction;
    double m_start = 0.0;
    double m_end = 0.0;
};

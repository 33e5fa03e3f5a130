#pragma once

#include "framework/api/CurveDataVisitor.h"
#include "framework/api/ICurveData.h"
#include "geometry/curvedata/CurveRecord.h"

/// An ellipse or a stretch of one: the point at parameter t, in radians, is the centre, cos t times the major axis and
/// sin t times the minor axis, which stands on normal and major axis and has the major's length times the ratio.
class XMLEllipseData : public KVR::IEllipseData, public KVR::CurveDataVisitor
{
public:
    explicit XMLEllipseData(KVR::StoreCursor& store);
    ~XMLEllipseData() override;

    KVR::DataReturnCodeEnum Center(double& x, double& y, double& z) const override;
    KVR::DataReturnCodeEnum MajorAxis(double& x, double& y, double& z) const override;
    KVR::DataReturnCodeEnum Normal(double& x, double& y, double& z) const override;
    KVR::DataReturnCodeEnum RadiusRatio(double& ratio) const override;
    KVR::DataReturnCodeEnum ParameterRange(KVR::Interval& range) const override;
    KVR::DataReturnCodeEnum IsClosed(bool& closed) const override;
    KVR::DataReturnCodeEnum IsPeriodic(bool& periodic) const override;
    KVR::DataReturnCodeEnum StartPoint_ex(KVR::Position& point) const override;
    KVR::DataReturnCodeEnum EndPoint_ex(KVR::Position& point) const override;
    KVR::DataReturnCodeEnum Evaluate_ex(double parameter, KVR::Position& point) const override;
    KVR::DataReturnCodeEnum Param_ex(KVR::Position const& point, double& parameter) const override;

private:
    KVR::CurveVector MinorAxis() const;
    KVR::CurveVector PointAt(double parameter) const;

    bool m_isClosed = false;
    bool m_isPeriodic = false;
    KVR::CurveVector m_center;
    KVR::CurveVector m_majorAxis{1.0, 0.0, 0.0};
    KVR::CurveVector m_normal{0.0, 0.0, 1.0};
    double m_ratio = 1.0;
    double m_start = 0.0;
    double m_end = 0.0;
};

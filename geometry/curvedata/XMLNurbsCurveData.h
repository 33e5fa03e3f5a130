#pragma once

#include <vector>

#include "framework/api/CurveDataVisitor.h"
#include "framework/api/ICurveData.h"
#include "geometry/curvedata/CurveRecord.h"

/// A B-spline curve, rational or not. Its knots are as many as its control points, the degree and one, or two fewer
/// when the record leaves the outermost knot out at both ends.
class XMLNurbsCurveData : public KVR::INurbsCurveData, public KVR::CurveDataVisitor
{
public:
    explicit XMLNurbsCurveData(KVR::StoreCursor& store);
    ~XMLNurbsCurveData() override;

    KVR::DataReturnCodeEnum Degree(std::uint32_t& degree) const override;
    KVR::DataReturnCodeEnum KnotCount(std::uint32_t& count) const override;
    KVR::DataReturnCodeEnum ControlPointCount(std::uint32_t& count) const override;
    KVR::DataReturnCodeEnum IsRational(bool& rational) const override;
    KVR::DataReturnCodeEnum Knot(int index, double& knot) const override;
    KVR::DataReturnCodeEnum ControlPoint(int index, double& x, double& y, double& z, double& w) const override;
    KVR::DataReturnCodeEnum FitTolerance(double& tolerance) const override;
    KVR::DataReturnCodeEnum ParameterShift(double& shift) const override;
    KVR::DataReturnCodeEnum ParameterRange(KVR::Interval& range) const override;
    KVR::DataReturnCodeEnum IsClosed(bool& closed) const override;
    KVR::DataReturnCodeEnum IsPeriodic(bool& periodic) const override;
    KVR::DataReturnCodeEnum StartPoint_ex(KVR::Position& point) const override;
    KVR::DataReturnCodeEnum EndPoint_ex(KVR::Position& point) const override;
    /// A bad argument outside the parameter range; not available for knots and points that make no curve.
    KVR::DataReturnCodeEnum Evaluate_ex(double parameter, KVR::Position& point) const override;
    KVR::DataReturnCodeEnum Param_ex(KVR::Position const& point, double& parameter) const override;

private:
    struct Weighted
    {
        KVR::CurveVector point;
        double weight = 1.0;
    };

    bool MakesCurve() const;
    double FullKnot(std::size_t index) const;
    double FirstParameter() const;
    double LastParameter() const;
    KVR::CurveVector PointAt(double parameter) const;
    int SamplesPerSpan() const;

    bool m_isClosed = false;
    bool m_isPeriodic = false;
    std::vector<double> m_knots;
    std::vector<KVR::CurveVector> m_points;
    bool m_isRational = false;
    std::vector<double> m_weights;
    std::uint32_t m_degree = 0;
    double m_start = 0.0;
    double m_end = 0.0;
    bool m_makesCurve = false;
};

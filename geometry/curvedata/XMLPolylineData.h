#pragma once

#include <vector>

#include "framework/api/CurveDataVisitor.h"
#include "framework/api/ICurveData.h"
#include "geometry/curvedata/CurveRecord.h"

/// Straight stretches from point to point; point i lies at parameter i. A closed one repeats its first point at the
/// end.
class XMLPolylineData : public KVR::IPolyLineData, public KVR::CurveDataVisitor
{
public:
    explicit XMLPolylineData(KVR::StoreCursor& store);
    ~XMLPolylineData() override;

    KVR::DataReturnCodeEnum HasVectors(bool& has) const override;
    KVR::DataReturnCodeEnum PointCount(std::uint32_t& count) const override;
    KVR::DataReturnCodeEnum Point(int index, double& x, double& y, double& z) const override;
    /// No effect when there are no vectors.
    KVR::DataReturnCodeEnum VectorAt(int index, double& x, double& y, double& z) const override;
    KVR::DataReturnCodeEnum IsClosed(bool& closed) const override;
    KVR::DataReturnCodeEnum IsPeriodic(bool& periodic) const override;
    KVR::DataReturnCodeEnum StartPoint_ex(KVR::Position& point) const override;
    KVR::DataReturnCodeEnum EndPoint_ex(KVR::Position& point) const override;
    KVR::DataReturnCodeEnum Evaluate_ex(double parameter, KVR::Position& point) const override;
    KVR::DataReturnCodeEnum Param_ex(KVR::Position const& point, double& parameter) const override;

private:
    bool m_isClosed = false;
    bool m_isPeriodic = false;
    bool m_hasVectors = false;
    std::vector<KVR::CurveVector> m_points;
    std::vector<KVR::CurveVector> m_vectors;
};

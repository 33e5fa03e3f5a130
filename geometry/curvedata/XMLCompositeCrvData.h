#pragma once

#include <memory>
#include <vector>

#include "framework/api/CurveDataVisitor.h"
#include "framework/api/ICurveData.h"
#include "geometry/curvedata/CurveRecord.h"

/// Curves one behind the other. The parameter of the whole runs through the segments' intervals; over its interval a
/// segment is run through from one end of its own parameters to the other.
class XMLCompositeCrvData : public KVR::ICompositeCurveData, public KVR::CurveDataVisitor
{
public:
    /// `level` counts this composite and those around it.
    XMLCompositeCrvData(KVR::StoreCursor& store, unsigned level);
    ~XMLCompositeCrvData() override;

    /// The number that the record states; the list of segments may be shorter.
    KVR::DataReturnCodeEnum SegmentCount(std::uint32_t& count) const override;
    KVR::DataReturnCodeEnum Segment(int index, KVR::ICurveData*& segment) const override;
    KVR::DataReturnCodeEnum SegmentFlag(int index, bool& flag) const override;
    KVR::DataReturnCodeEnum SegmentInterval(int index, double& start, double& end) const override;
    KVR::DataReturnCodeEnum SegmentValue(int index, std::uint32_t& value) const override;
    KVR::DataReturnCodeEnum IsClosed(bool& closed) const override;
    KVR::DataReturnCodeEnum IsPeriodic(bool& periodic) const override;
    KVR::DataReturnCodeEnum StartPoint_ex(KVR::Position& point) const override;
    KVR::DataReturnCodeEnum EndPoint_ex(KVR::Position& point) const override;
    KVR::DataReturnCodeEnum Evaluate_ex(double parameter, KVR::Position& point) const override;
    KVR::DataReturnCodeEnum Param_ex(KVR::Position const& point, double& parameter) const override;

private:
    struct Stretch
    {
        double start = 0.0;
        double end = 0.0;
    };

    std::size_t UsableCount() const;

    bool m_isClosed = false;
    bool m_isPeriodic = false;
    std::uint32_t m_segmentCount = 0;
    std::vector<std::unique_ptr<KVR::ICurveData>> m_segments;
    std::vector<std::uint32_t> m_flags;
    std::vector<Stretch> m_intervals;
    std::vector<std::uint32_t> m_values;
};

#include "geometry/curvedata/XMLCompositeCrvData.h"

#include <algorithm>
#include <cmath>

#include "geometry/curvedata/CreateCurveData.h"
#include "geometry/curvedata/CurveMath.h"

using namespace KVR;

namespace
{

// A list of u64 kept as 32 bits each, with zeros for what the file does not deliver.
std::vector<std::uint32_t> ReadWords(StoreCursor& store, std::size_t count)
{
    store.Expect(count, sizeof(unsigned long long), sizeof(std::uint32_t));
    std::vector<std::uint32_t> words(count);
    store.ReadIndices(reinterpret_cast<std::int32_t*>(words.data()), count);
    return words;
}

// The parameters that a curve runs through: those it states, or a polyline's or composite's own.
bool OwnRange(ICurveData const& curve, double& start, double& end)
{
    Interval range(0.0, 0.0);
    if (curve.ParameterRange(range) == kDataReturnCode_Ok)
    {
        start = range.Lower();
        end = range.Upper();
        return true;
    }
    if (auto const* const polyline = dynamic_cast<IPolyLineData const*>(&curve))
    {
        std::uint32_t count = 0;
        polyline->PointCount(count);
        start = 0.0;
        end = static_cast<double>(count) - 1.0;
        return count > 0;
    }
    if (auto const* const composite = dynamic_cast<ICompositeCurveData const*>(&curve))
    {
        std::uint32_t count = 0;
        composite->SegmentCount(count);
        double unused = 0.0;
        if (count == 0)
            return false;
        composite->SegmentInterval(0, start, unused);
        composite->SegmentInterval(static_cast<int>(count) - 1, unused, end);
        return true;
    }
    return false;
}

// A value of one range at the same part of another.
double Carry(double value, double fromStart, double fromEnd, double toStart, double toEnd)
{
    if (fromStart == fromEnd)
        return toStart;
    if (value == fromEnd)
        return toEnd;
    return toStart + (value - fromStart) * ((toEnd - toStart) / (fromEnd - fromStart));
}

}  // namespace

XMLCompositeCrvData::XMLCompositeCrvData(StoreCursor& store, unsigned level) : ICompositeCurveData(nullptr)
{
    store.Read(m_isClosed);
    store.Read(m_isPeriodic);
    // A segment takes two words and an id at the least; one that the file does not hold adds nothing to the list.
    unsigned long long count = 0;
    store.Read(count);
    if (static_cast<std::int32_t>(static_cast<std::uint32_t>(count)) < 0)
        ThrowTooLong();
    m_segmentCount = static_cast<std::uint32_t>(count);
    for (unsigned long long i = 0; i < count && !store.HasEnded(); ++i)
    {
        unsigned long long ignored = 0;
        unsigned long long kind = 0;
        UTF8String id;
        store.Read(ignored);
        if (!store.Read(kind) || !store.Read(id) || id.IsEmpty())
            continue;
        m_segments.emplace_back(CreateCurveData(store, static_cast<std::uint32_t>(std::min(kind, 7ULL)), level));
    }
    m_flags = ReadWords(store, count);
    store.Expect(count, sizeof(Stretch), sizeof(Stretch));
    m_intervals.resize(count);
    store.ReadDoubles(reinterpret_cast<double*>(m_intervals.data()), 2 * m_intervals.size());
    m_values = ReadWords(store, count);
}

XMLCompositeCrvData::~XMLCompositeCrvData() = default;

DataReturnCodeEnum XMLCompositeCrvData::SegmentCount(std::uint32_t& count) const
{
    count = m_segmentCount;
    return kDataReturnCode_Ok;
}

DataReturnCodeEnum XMLCompositeCrvData::Segment(int index, ICurveData*& segment) const
{
    segment = CheckedAt(m_segments, static_cast<unsigned long long>(index)).get();
    return kDataReturnCode_Ok;
}

DataReturnCodeEnum XMLCompositeCrvData::SegmentFlag(int index, bool& flag) const
{
    if (index >= 0)
        flag = CheckedAt(m_flags, static_cast<unsigned long long>(index)) != 0;
    return kDataReturnCode_Ok;
}

DataReturnCodeEnum XMLCompositeCrvData::SegmentInterval(int index, double& start, double& end) const
{
    if (index >= 0)
    {
        Stretch const& interval = CheckedAt(m_intervals, static_cast<unsigned long long>(index));
        start = interval.start;
        end = interval.end;
    }
    return kDataReturnCode_Ok;
}

DataReturnCodeEnum XMLCompositeCrvData::SegmentValue(int index, std::uint32_t& value) const
{
    if (index >= 0)
        value = CheckedAt(m_values, static_cast<unsigned long long>(index));
    return kDataReturnCode_Ok;
}

DataReturnCodeEnum XMLCompositeCrvData::IsClosed(bool& closed) const
{
    closed = m_isClosed;
    return kDataReturnCode_Ok;
}

DataReturnCodeEnum XMLCompositeCrvData::IsPeriodic(bool& periodic) const
{
    periodic = m_isPeriodic;
    return kDataReturnCode_Ok;
}

// Segments have an interval only as far as both lists go together.
std::size_t XMLCompositeCrvData::UsableCount() const
{
    return std::min(m_segments.size(), m_intervals.size());
}

DataReturnCodeEnum XMLCompositeCrvData::StartPoint_ex(Position& point) const
{
    return UsableCount() == 0 ? kDataReturnCode_NotAvailable : Evaluate_ex(m_intervals.front().start, point);
}

DataReturnCodeEnum XMLCompositeCrvData::EndPoint_ex(Position& point) const
{
    std::size_t const count = UsableCount();
    return count == 0 ? kDataReturnCode_NotAvailable : Evaluate_ex(m_intervals[count - 1].end, point);
}

DataReturnCodeEnum XMLCompositeCrvData::Evaluate_ex(double parameter, Position& point) const
{
    for (std::size_t i = 0; i < UsableCount(); ++i)
    {
        Stretch const& interval = m_intervals[i];
        if (!(parameter >= std::min(interval.start, interval.end) &&
              parameter <= std::max(interval.start, interval.end)))
            continue;
        double start = 0.0;
        double end = 0.0;
        if (!m_segments[i] || !OwnRange(*m_segments[i], start, end))
            return kDataReturnCode_NotAvailable;
        return m_segments[i]->Evaluate_ex(Carry(parameter, interval.start, interval.end, start, end), point);
    }
    return UsableCount() == 0 ? kDataReturnCode_NotAvailable : kDataReturnCode_BadArgument;
}

DataReturnCodeEnum XMLCompositeCrvData::Param_ex(Position const& point, double& parameter) const
{
    bool isFound = false;
    double least = 0.0;
    for (std::size_t i = 0; i < UsableCount(); ++i)
    {
        double start = 0.0;
        double end = 0.0;
        double own = 0.0;
        Position near;
        if (!m_segments[i] || !OwnRange(*m_segments[i], start, end) ||
            m_segments[i]->Param_ex(point, own) != kDataReturnCode_Ok ||
            m_segments[i]->Evaluate_ex(own, near) != kDataReturnCode_Ok)
            continue;
        CurveVector const apart = CurveMath::VectorOf(near) - CurveMath::VectorOf(point);
        double const distance = Dot(apart, apart);
        if (!isFound || distance < least)
        {
            isFound = true;
            least = distance;
            parameter = Carry(own, start, end, m_intervals[i].start, m_intervals[i].end);
        }
    }
    return isFound ? kDataReturnCode_Ok : kDataReturnCode_NotAvailable;
}

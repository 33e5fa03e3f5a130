#include "scene/geometry/CurveDataLines.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <stdexcept>

#include "framework/api/ICurveData.h"
#include "framework/kernel/tessellation/CurveSampler.h"
#include "scene/geometry/CurveDataFacts.h"

namespace KVR
{

namespace
{

// What is assumed of a curve that tells no degree of its own.
constexpr unsigned kDegreeOfAny = 63;
// A composite that has itself for segments would have no end.
constexpr std::size_t kMostPieces = 10'000'000;
// Segments meet where their ends are no farther apart than this fraction of the largest coordinate.
constexpr double kMeeting = 1e-9;

class DataSource final : public CurveSource
{
public:
    explicit DataSource(ICurveData const& data) : m_data(data) {}

    bool PointAt(double parameter, Point& point) const override
    {
        Position found;
        if (m_data.Evaluate_ex(parameter, found) != kDataReturnCode_Ok)
            return false;
        point = {found.X(), found.Y(), found.Z()};
        return true;
    }

private:
    ICurveData const& m_data;
};

class PolylineSource final : public CurveSource
{
public:
    explicit PolylineSource(IPolyLineData const& data) : m_data(data) {}

    bool PointAt(double parameter, Point& point) const override
    {
        try
        {
            return m_data.Point(static_cast<int>(parameter), point[0], point[1], point[2]) == kDataReturnCode_Ok;
        }
        catch (std::out_of_range const&)
        {
            // The count is what the source claims.
            return false;
        }
    }

private:
    IPolyLineData const& m_data;
};

double LargerRadius(IEllipseData const& data)
{
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    double ratio = 0.0;
    data.MajorAxis(x, y, z);
    data.RadiusRatio(ratio);
    return std::hypot(x, y, z) * std::max(1.0, std::abs(ratio));
}

}  // namespace

void CurveDataLines::Add(ICurveData& data)
{
    m_linesBefore = m_lines.Count();
    m_pieces.assign(1, {&data, 0});
    for (std::size_t count = 0; !m_pieces.empty(); ++count)
    {
        if (count == kMostPieces)
        {
            m_lines.missing += m_pieces.size();
            return;
        }
        Piece const piece = m_pieces.back();
        m_pieces.pop_back();
        if (!piece.data || piece.level > kDeepestCurveNesting)
        {
            ++m_lines.missing;
            continue;
        }
        m_level = piece.level;
        m_isKnown = false;
        piece.data->AcceptVisitor(this);
        if (!m_isKnown)
            AddOfUnknownKind(*piece.data);
    }
}

void CurveDataLines::Visit(IStraightData* data)
{
    m_isKnown = true;
    DataSource const source(*data);
    CurveSampler sampler(source, m_tolerance);
    std::optional<Interval> const range = CurveDataFacts::RangeOf(*data);
    Finish(range && sampler.Straight({range->Lower(), range->Upper()}), sampler);
}

void CurveDataLines::Visit(IRayData*)
{
    m_isKnown = true;
    // It has no end.
    ++m_lines.missing;
}

void CurveDataLines::Visit(IEllipseData* data)
{
    m_isKnown = true;
    DataSource const source(*data);
    CurveSampler sampler(source, m_tolerance);
    std::optional<Interval> const range = CurveDataFacts::RangeOf(*data);
    Finish(range && sampler.Turning(range->Lower(), range->Upper(), LargerRadius(*data)), sampler);
}

void CurveDataLines::Visit(IPolyLineData* data)
{
    m_isKnown = true;
    PolylineSource const source(*data);
    CurveSampler sampler(source, m_tolerance);
    std::uint32_t count = 0;
    data->PointCount(count);
    std::vector<double> places;
    CurveSource::Point last{};
    // So that no more room is taken than there are points.
    bool const isThere = count > 0 && count <= 0x7FFFFFFFU && source.PointAt(count - 1.0, last);
    for (std::uint32_t i = 0; isThere && i < count; ++i)
        places.push_back(i);
    Finish(sampler.Straight(places), sampler);
}

void CurveDataLines::Visit(INurbsCurveData* data)
{
    m_isKnown = true;
    AddNurbs(*data);
}

void CurveDataLines::AddNurbs(INurbsCurveData const& data)
{
    DataSource const source(data);
    CurveSampler sampler(source, m_tolerance);
    std::uint32_t degree = 0;
    std::uint32_t poles = 0;
    std::optional<Interval> const range = CurveDataFacts::RangeOf(data);
    data.Degree(degree);
    data.ControlPointCount(poles);
    std::vector<double> const knots =
        degree > 0 && poles > degree ? CurveDataFacts::KnotsOf(data, degree, poles) : std::vector<double>();
    if (!range || knots.empty())
        return Finish(false, sampler);
    double const first = std::clamp(std::min(range->Lower(), range->Upper()), knots[degree], knots[poles]);
    double const last = std::clamp(std::max(range->Lower(), range->Upper()), knots[degree], knots[poles]);
    std::vector<double> spans{first};
    for (std::size_t i = degree; i <= poles; ++i)
        if (knots[i] > spans.back() && knots[i] < last)
            spans.push_back(knots[i]);
    spans.push_back(last);
    if (range->Lower() > range->Upper())
        std::reverse(spans.begin(), spans.end());
    Finish(first < last && sampler.Smooth(std::move(spans), degree), sampler);
}

void CurveDataLines::AddOfUnknownKind(ICurveData& data)
{
    DataSource const source(data);
    CurveSampler sampler(source, m_tolerance);
    std::optional<Interval> const range = CurveDataFacts::RangeOf(data);
    Finish(range && sampler.Smooth({range->Lower(), range->Upper()}, kDegreeOfAny), sampler);
}

void CurveDataLines::Visit(ICompositeCurveData* data)
{
    m_isKnown = true;
    std::uint32_t count = 0;
    data->SegmentCount(count);
    std::size_t const first = m_pieces.size();
    std::uint32_t place = 0;
    for (; place < count; ++place)
    {
        ICurveData* segment = nullptr;
        if (!CurveDataFacts::TakeSegment(*data, place, segment))
            break;
        m_pieces.push_back({segment, m_level + 1});
    }
    m_lines.missing += count - place;
    // The last one is taken first.
    std::reverse(m_pieces.begin() + static_cast<std::ptrdiff_t>(first), m_pieces.end());
}

void CurveDataLines::Finish(bool isGood, CurveSampler const& sampler)
{
    if (isGood)
        AddLine(sampler.Points());
    else
        ++m_lines.missing;
}

void CurveDataLines::AddLine(std::span<double const> line)
{
    if (m_lines.Count() == m_linesBefore)
        return m_lines.Add(line);
    std::vector<double>& points = m_lines.points;
    double apart = 0.0;
    double largest = 0.0;
    for (std::size_t axis = 0; axis < 3; ++axis)
    {
        double const end = points[points.size() - 3 + axis];
        apart = std::max(apart, std::abs(end - line[axis]));
        largest = std::max({largest, std::abs(end), std::abs(line[axis])});
    }
    if (apart > kMeeting * largest)
        return m_lines.Add(line);
    points.insert(points.end(), line.begin() + 3, line.end());
    m_lines.ends.back() = points.size() / 3;
}

}  // namespace KVR

#include "framework/kernel/store/ShapeTables.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "framework/kernel/store/StoreShapes.h"

namespace KVR
{

namespace
{

// Open CASCADE follows the parts of a location on the stack.
constexpr int kLongestPlacing = 5000;
constexpr int kLargestPower = 1 << 30;

// And joins the parts one by one, each time going down all there are.
constexpr std::uint64_t kMostJoins = 15'000'000;
constexpr std::uint64_t kMostJoinsPerByte = 5;

// Each part takes it some two hundred bytes, and a text some four.
constexpr std::uint64_t kMostParts = 250'000;
constexpr std::uint64_t kBytesPerPart = 16;

// Each representation of an edge is compared with all others, and their locations part by part.
constexpr std::uint64_t kMostComparisons = 1'000'000;
// Of all edges together.
constexpr std::uint64_t kMostComparisonsOfAll = 20'000'000;
constexpr std::uint64_t kMostComparisonsPerByte = 100;

// Open CASCADE gets to a parameter outside a curve's period one period at a time, and a curve that is cut out of it has
// as many more knots.
constexpr double kMostPeriods = 10.0;
// A closed curve is gone along once, wherever that begins.
constexpr double kLongestRange = 2.0;
// An edge goes along its curve in space and those on surfaces at one pace or so: what is much longer than the one in
// space is a damaged number, along which Open CASCADE would make points without end.
constexpr double kLongestBesideSpace = 1e6;

// A shape may be in others many times, and these in others: a few bytes would keep a host busy for years.
constexpr std::uint64_t kMostUnfolded = 250'000;
constexpr std::uint64_t kMostUnfoldedPerByte = 100;

}  // namespace

// Open CASCADE keeps no location twice and shortens chains: an index behind one that it dropped would name another
// location, and the last ones none. Its writers write the short form.
bool ShapeTables::AddLocation(Chain&& chain)
{
    if (chain.empty() || chain.size() > kLongestPlacing || (chain.size() == 1 && chain[0].second == 1))
        return false;
    int before = 0;
    for (auto const& [index, power] : chain)
    {
        if (!Has(m_locations, index) || m_locations[static_cast<std::size_t>(index) - 1] != 1 || index == before)
            return false;
        if (power == 0 || power < -kLargestPower || power > kLargestPower)
            return false;
        before = index;
    }
    m_locations.push_back(static_cast<int>(std::max<std::size_t>(chain.size(), 2)));
    m_joins += chain.size() * chain.size();
    m_parts += chain.size();
    if (m_joins > kMostJoins + kMostJoinsPerByte * m_size || m_parts > kMostParts + m_size / kBytesPerPart)
        return false;
    return m_chains.insert(std::move(chain)).second;
}

bool ShapeTables::IsOnTriangulation(int nodes, int triangulation) const noexcept
{
    return Has(m_lastNodes, nodes) && Has(m_triangulations, triangulation) &&
           m_lastNodes[static_cast<std::size_t>(nodes) - 1] <=
               m_triangulations[static_cast<std::size_t>(triangulation) - 1];
}

void ShapeTables::BeginEdge()
{
    m_representations = 0;
    m_longestPlacing = 0;
    m_first = std::numeric_limits<double>::infinity();
    m_last = -m_first;
    m_lengthInSpace = 0.0;
    m_greatestLength = 0.0;
    m_periods.clear();
}

bool ShapeTables::AddToEdge(int location)
{
    if (!IsLocation(location))
        return false;
    ++m_representations;
    m_longestPlacing = std::max(m_longestPlacing, static_cast<std::uint64_t>(LengthOf(location)));
    std::uint64_t const comparisons = m_representations * m_representations * (1 + m_longestPlacing);
    // What it adds to those that this edge had.
    m_comparisons += (2 * m_representations - 1) * (1 + m_longestPlacing);
    return comparisons <= kMostComparisons && m_comparisons <= kMostComparisonsOfAll + kMostComparisonsPerByte * m_size;
}

bool ShapeTables::AddToEdge(double first, double last, bool isInSpace)
{
    double const length = std::abs(last - first);
    if (isInSpace)
        m_lengthInSpace = std::max(m_lengthInSpace, length);
    m_greatestLength = std::max(m_greatestLength, length);
    m_first = std::min({m_first, first, last});
    m_last = std::max({m_last, first, last});
    return !std::isnan(first) && !std::isnan(last);
}

void ShapeTables::AddToEdge(Curves const& table, int curve)
{
    auto const found = std::lower_bound(table.periods.begin(), table.periods.end(), curve,
                                        [](auto const& entry, int index) { return entry.first < index; });
    if (found != table.periods.end() && found->first == curve)
        m_periods.push_back(found->second);
}

bool ShapeTables::IsEdgeSafe() const noexcept
{
    if (m_lengthInSpace > 0.0 && m_greatestLength > kLongestBesideSpace * m_lengthInSpace)
        return false;
    return std::all_of(m_periods.begin(), m_periods.end(),
                       [&](Period const& period)
                       {
                           double const most = kMostPeriods * period.length;
                           return m_first >= period.first - most && m_last <= period.first + most &&
                                  m_last - m_first <= kLongestRange * period.length;
                       });
}

bool ShapeTables::BeginShape(TopAbs_ShapeEnum kind)
{
    m_shapes.push_back({kind});
    return kind >= TopAbs_COMPOUND && kind <= TopAbs_VERTEX;
}

// Kinds count up from the compound; only compounds stand within their own kind.
bool ShapeTables::AddChild(int index, int location)
{
    Shape& parent = m_shapes.back();
    if (index < 1 || index >= ShapeCount() || !IsLocation(location))
        return false;
    Shape const& child = m_shapes[static_cast<std::size_t>(index) - 1];
    if (child.kind <= parent.kind && parent.kind != TopAbs_COMPOUND)
        return false;
    if (child.kind == TopAbs_COMPOUND)
        parent.depth = std::max(parent.depth, child.depth + 1);
    parent.placing = std::max(parent.placing, child.placing + LengthOf(location));
    parent.unfolded += child.unfolded;
    return parent.depth <= kDeepestShape && parent.placing <= kLongestPlacing &&
           parent.unfolded <= kMostUnfolded + kMostUnfoldedPerByte * m_size;
}

}  // namespace KVR

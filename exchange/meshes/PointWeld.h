#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <vector>

namespace KVR
{

/// Numbers points by their places, from 0: those at the same place, to the last digit, have the same number.
class PointWeld
{
public:
    using Point = std::array<double, 3>;

    /// The number of a point.
    std::uint32_t Add(Point point)
    {
        // -0 is 0.
        for (double& x : point)
            x += 0.0;
        if (2 * (m_points.size() + 1) > m_slots.size())
            Grow();
        std::uint32_t& slot = SlotOf(point);
        if (slot == kFree)
        {
            slot = static_cast<std::uint32_t>(m_points.size());
            m_points.push_back(point);
        }
        return slot;
    }
    std::size_t Count() const noexcept { return m_points.size(); }
    std::vector<Point> const& Points() const noexcept { return m_points; }

private:
    static constexpr std::uint32_t kFree = 0xFFFFFFFF;

    // The slot of the point, or the free one that it is to have.
    std::uint32_t& SlotOf(Point const& point)
    {
        std::uint64_t hash = 0;
        for (double const x : point)
        {
            hash = (hash ^ std::bit_cast<std::uint64_t>(x)) * 0x9E3779B97F4A7C15u;
            hash ^= hash >> 29;
        }
        std::size_t const mask = m_slots.size() - 1;
        std::size_t place = static_cast<std::size_t>(hash) & mask;
        while (m_slots[place] != kFree && m_points[m_slots[place]] != point)
            place = (place + 1) & mask;
        return m_slots[place];
    }
    void Grow()
    {
        m_slots.assign(m_slots.empty() ? 64 : 2 * m_slots.size(), kFree);
        for (std::uint32_t i = 0; i < m_points.size(); ++i)
            SlotOf(m_points[i]) = i;
    }

    std::vector<Point> m_points;
    // A power of two.
    std::vector<std::uint32_t> m_slots;
};

}  // namespace KVR

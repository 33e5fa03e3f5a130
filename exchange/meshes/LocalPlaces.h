#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace KVR
{

/// Which entries of a long list a mesh uses, and the places that they get in its own.
class LocalPlaces
{
public:
    /// Of another mesh: no entry has a place.
    void Begin() { ++m_mesh; }
    /// The place of an entry: `next` when it has none, in which case `add` is called.
    template <class Add>
    std::uint32_t Of(std::size_t entry, std::size_t next, Add const& add)
    {
        if (entry >= m_places.size())
            m_places.resize(entry + 1);
        if (m_places[entry].first != m_mesh)
        {
            m_places[entry] = {m_mesh, static_cast<std::uint32_t>(next)};
            add();
        }
        return m_places[entry].second;
    }

private:
    std::uint32_t m_mesh = 0;
    std::vector<std::pair<std::uint32_t, std::uint32_t>> m_places;
};

}  // namespace KVR

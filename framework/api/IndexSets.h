#pragma once

#include <vector>

#include "framework/api/Export.h"

namespace KVR
{

/// Indices of polygons of a mesh, in the order in which they were added.
class KVR_API PolygonIndexSet
{
public:
    PolygonIndexSet();
    ~PolygonIndexSet();
    PolygonIndexSet(PolygonIndexSet const&) = default;
    PolygonIndexSet(PolygonIndexSet&&) noexcept = default;
    PolygonIndexSet& operator=(PolygonIndexSet const&) = default;
    PolygonIndexSet& operator=(PolygonIndexSet&&) noexcept = default;

    /// Appends the index, narrowed to 32 bits.
    void Add(unsigned long index) { m_indices.push_back(static_cast<unsigned int>(index)); }
    /// Makes room for so many indices in all.
    void Reserve(unsigned long count) { m_indices.reserve(count); }
    /// Takes all indices out.
    void Clear() noexcept { m_indices.clear(); }
    /// The indices; owned by the set.
    std::vector<unsigned int> const& Indices() const noexcept { return m_indices; }

private:
    std::vector<unsigned int> m_indices;
};

/// Indices of vertices of a mesh, in the order in which they were appended.
class KVR_API VertexIndexSet
{
public:
    VertexIndexSet();
    ~VertexIndexSet();
    VertexIndexSet(VertexIndexSet const&) = default;
    VertexIndexSet(VertexIndexSet&&) noexcept = default;
    VertexIndexSet& operator=(VertexIndexSet const&) = default;
    VertexIndexSet& operator=(VertexIndexSet&&) noexcept = default;

    /// Appends the index as it is.
    void Append(int index) { m_indices.push_back(index); }
    /// Makes room for so many indices in all.
    void Reserve(unsigned long count) { m_indices.reserve(count); }
    /// Takes all indices out.
    void Clear() noexcept { m_indices.clear(); }
    /// The indices; owned by the set.
    std::vector<int> const& Indices() const noexcept { return m_indices; }

private:
    std::vector<int> m_indices;
};

}  // namespace KVR

#pragma once

#include <vector>

namespace KVR::GMK
{

/// A list of the kernel's, in the order in which its items were added.
template <class T>
class gmk_array
{
public:
    /// Appends a copy of the item.
    void Push(T const& item) { m_items.push_back(item); }
    /// The number of items.
    int count() const noexcept { return static_cast<int>(m_items.size()); }
    /// Whether there is no item.
    bool empty() const noexcept { return m_items.empty(); }
    /// A bad index throws std::out_of_range.
    T const& operator[](int index) const { return m_items.at(static_cast<std::size_t>(index)); }
    /// An iterator at the first item, for range-based loops.
    auto begin() const noexcept { return m_items.begin(); }
    /// An iterator behind the last item.
    auto end() const noexcept { return m_items.end(); }

private:
    std::vector<T> m_items;
};

}  // namespace KVR::GMK

#pragma once

#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "scene/SceneFilter.h"

namespace KVR
{

struct SceneContent;

/// The objects of a scene that a list of names means; see SceneFilter.
class FilterNames
{
public:
    /// Adds to `unmatched` the names that mean nothing. Names refer to the content and the list.
    FilterNames(SceneContent const& content, std::vector<std::string> const& names,
                std::vector<SceneFilterError::Unmatched>& unmatched);

    bool IsEmpty() const noexcept { return m_names.empty() && m_items.empty(); }
    /// Whether the object of that id is meant by its id.
    bool HasId(std::string_view id) const { return m_names.contains(id) || m_items.contains(id); }
    /// Whether an object is meant by its id or label.
    template <class Object>
    bool Has(Object const& object) const
    {
        return HasId(object.id) || m_names.contains(object.label);
    }

private:
    /// Ids and labels; none is empty.
    std::unordered_set<std::string_view> m_names;
    /// Ids of what is in layers.
    std::unordered_set<std::string_view> m_items;
};

}  // namespace KVR

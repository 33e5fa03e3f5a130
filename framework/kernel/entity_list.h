#pragma once

#include <unordered_set>
#include <vector>

#include "framework/kernel/Export.h"

namespace KVR
{

class ENTITY;

/// Entities in the order in which they were added; not owned.
class KVR_KERNEL_API ENTITY_LIST
{
public:
    /// With `keepsRepeats` false an entity is added once.
    explicit ENTITY_LIST(bool keepsRepeats);
    ~ENTITY_LIST();
    ENTITY_LIST(ENTITY_LIST const&) = delete;
    ENTITY_LIST& operator=(ENTITY_LIST const&) = delete;

    /// Null has no effect.
    void add(ENTITY* entity);
    /// Takes all entities out.
    void clear() noexcept;
    /// The number of entities.
    int count() const noexcept { return static_cast<int>(m_entities.size()); }
    /// Null for a bad index.
    ENTITY* operator[](int index) const noexcept;

private:
    bool m_keepsRepeats;
    std::vector<ENTITY*> m_entities;
    std::unordered_set<ENTITY*> m_known;
};

}  // namespace KVR

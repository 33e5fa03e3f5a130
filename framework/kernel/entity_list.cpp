#include "framework/kernel/entity_list.h"

namespace KVR
{

ENTITY_LIST::ENTITY_LIST(bool keepsRepeats) : m_keepsRepeats(keepsRepeats) {}
ENTITY_LIST::~ENTITY_LIST() = default;

void ENTITY_LIST::add(ENTITY* entity)
{
    if (entity && (m_keepsRepeats || m_known.insert(entity).second))
        m_entities.push_back(entity);
}

void ENTITY_LIST::clear() noexcept
{
    m_entities.clear();
    m_known.clear();
}

ENTITY* ENTITY_LIST::operator[](int index) const noexcept
{
    return index < 0 || index >= count() ? nullptr : m_entities[static_cast<std::size_t>(index)];
}

}  // namespace KVR

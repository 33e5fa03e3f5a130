#include "mesh/MaterialSlots.h"

#include <string_view>
#include <unordered_map>
#include <utility>

namespace KVR
{

MaterialSlots::MaterialSlots(StoreMaterials materials)
    : m_materials(std::move(materials)), m_uses(m_materials.table->size()), m_textUses(m_uses.size())
{
    m_firstOfText.reserve(m_uses.size());
    std::unordered_map<std::string_view, std::uint32_t> firsts;
    for (UTF8String const& id : *m_materials.table)
        m_firstOfText.push_back(
            firsts.try_emplace(id.View(), static_cast<std::uint32_t>(m_firstOfText.size())).first->second);
}

void MaterialSlots::BeginMesh() noexcept
{
    ++m_mesh;
    m_count = 0;
    m_used.clear();
    m_lastMaterial = ~0ULL;
    m_lastSlot = kNoMaterialSlot;
}

std::uint32_t MaterialSlots::SlotOf(unsigned long long material)
{
    // Polygons of one face come one behind the other and share their material.
    if (material == m_lastMaterial)
        return m_lastSlot;
    // An index that only the stated number reaches, and not the list, finds no id.
    if (material >= m_materials.count || material >= m_uses.size())
        return kNoMaterialSlot;
    auto const place = static_cast<std::size_t>(material);
    Use& use = m_uses[place];
    if (use.mesh != m_mesh)
    {
        use = {m_mesh, m_count++};
        // Kept: another index of the same text has a slot of its own, but the text is listed once.
        std::uint32_t const text = m_firstOfText[place];
        if (std::exchange(m_textUses[text], m_mesh) != m_mesh)
            m_used.push_back(text);
    }
    m_lastMaterial = material;
    m_lastSlot = use.slot;
    return m_lastSlot;
}

}  // namespace KVR

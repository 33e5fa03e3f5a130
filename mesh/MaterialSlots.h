#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "framework/api/UTF8String.h"
#include "mesh/PolygonSlab.h"

namespace KVR
{

/// The materials of a store: the ids that it lists, and the number of them that it states. Empty ids are not in the
/// list, so that the places behind them move up while the number stays. Meshes share the list.
struct StoreMaterials
{
    using Table = std::vector<UTF8String>;

    std::shared_ptr<Table const> table = std::make_shared<Table const>();
    unsigned long long count = 0;
};

/// Numbers the materials that a mesh uses, in the order of first use, for one mesh of a store after the other.
class MaterialSlots
{
public:
    explicit MaterialSlots(StoreMaterials materials);

    /// Forgets what the mesh before used.
    void BeginMesh() noexcept;
    /// The slot of a material by its index in the store, the marker for one that the store does not have.
    std::uint32_t SlotOf(unsigned long long material);
    /// Slots are below it.
    std::size_t Most() const noexcept { return m_uses.size(); }
    /// The places in the list of those in use, in the order of their slots; of two of one text only the first.
    std::vector<std::uint32_t> const& Used() const noexcept { return m_used; }
    StoreMaterials const& Materials() const noexcept { return m_materials; }

private:
    // Which mesh used it last: so that nothing has to be cleared between the meshes of a store that has many of both.
    struct Use
    {
        std::uint32_t mesh = 0;
        std::uint32_t slot = 0;
    };

    StoreMaterials m_materials;
    std::vector<Use> m_uses;
    /// The place of the first material of the same text, and which mesh used that text last.
    std::vector<std::uint32_t> m_firstOfText;
    std::vector<std::uint32_t> m_textUses;
    std::vector<std::uint32_t> m_used;
    std::uint32_t m_mesh = 0;
    std::uint32_t m_count = 0;
    unsigned long long m_lastMaterial = ~0ULL;
    std::uint32_t m_lastSlot = kNoMaterialSlot;
};

}  // namespace KVR

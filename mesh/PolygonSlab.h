#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "framework/api/Polygon.h"

namespace KVR
{

class SlabPolygon;

/// The marker of a polygon without material: a slot that no mesh's materials reach.
inline constexpr std::uint32_t kNoMaterialSlot = 0xFFFFFFFFU;

/// The polygons of one mesh, as PolygonSlabBuilder made them. They stand side by side with their index lists behind
/// them: a polygon costs no allocation of its own, and all of them are freed at once. Polygons of one size, as in a
/// mesh of triangles, need no table to be found by index.
class PolygonSlab
{
public:
    /// Index lists are counted by int, and of the count three bits are taken for flags.
    static constexpr std::uint32_t kMostVertices = 0x1FFFFFFF;

    std::size_t Count() const noexcept { return m_count; }
    EditablePolygon const* At(std::size_t index) const noexcept;
    std::uint32_t MaterialSlotAt(std::size_t index) const noexcept;

private:
    friend class PolygonSlabBuilder;

    static constexpr std::size_t kUnlimited = static_cast<std::size_t>(-1);

    /// What finds polygons that do not stand in one piece, or are of different sizes.
    struct Table
    {
        /// Pieces of memory, filled one after the other, and the number of polygons in each but the last; of use while
        /// there are no places.
        std::vector<std::byte*> pieces;
        std::size_t polygonsPerPiece = kUnlimited;
        /// Where the polygons stand, once two are of different sizes.
        std::vector<std::byte*> places;
    };

    SlabPolygon* PolygonPlace(std::size_t index) const noexcept;

    std::byte* m_firstPiece = nullptr;
    std::size_t m_count = 0;
    /// The size of each polygon, of use while there are no places.
    std::size_t m_polygonSize = 0;
    std::unique_ptr<Table> m_table;
};

}  // namespace KVR

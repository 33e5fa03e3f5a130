#include "mesh/PolygonSlab.h"

#include "mesh/SlabPolygon.h"

namespace KVR
{

SlabPolygon* PolygonSlab::PolygonPlace(std::size_t index) const noexcept
{
    std::byte* place = nullptr;
    if (!m_table)
        place = m_firstPiece + index * m_polygonSize;
    else if (m_table->places.empty())
        place = m_table->pieces[index / m_table->polygonsPerPiece] + index % m_table->polygonsPerPiece * m_polygonSize;
    else
        place = m_table->places[index];
    return reinterpret_cast<SlabPolygon*>(place);
}

EditablePolygon const* PolygonSlab::At(std::size_t index) const noexcept
{
    return PolygonPlace(index);
}
std::uint32_t PolygonSlab::MaterialSlotAt(std::size_t index) const noexcept
{
    return PolygonPlace(index)->MaterialSlot();
}

}  // namespace KVR

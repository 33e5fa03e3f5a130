#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "framework/api/UTF8String.h"
#include "mesh/XMLPolygonMesh.h"

namespace KVR
{

class StoreCursor;

/// The materials of a store: the ids that it lists, and the number of them that it states. Empty ids are not in the
/// list, so that the places behind them move up while the number stays.
struct StoreMaterials
{
    std::vector<UTF8String> const& table;
    std::uint32_t count;
};

/// Reads the body of a mesh record into a mesh's content.
class MeshRecordReader
{
public:
    MeshRecordReader(StoreCursor& store, StoreMaterials materials, bool geometryInfoLayout, StoreMemory& memory,
                     XMLPolygonMesh::Content& content);

    void Read();

private:
    void ReadTextureVertices(unsigned long long count);
    void ReadTextureVertexSet(unsigned int dimension, unsigned long long count);
    bool ReadSmallPolygon(bool mayHaveNormals);
    void ReadPolygon(bool mayHaveNormals, bool mayHaveTextures);
    std::uint32_t ReadMaterialSlot();
    std::uint32_t SlotOf(unsigned long long material);
    void ReadTextures(std::uint32_t vertexCount);
    void FillUp(std::vector<std::int32_t>& list, unsigned long long count);

    StoreCursor& m_store;
    StoreMaterials m_materials;
    bool m_geometryInfoLayout;
    StoreMemory& m_memory;
    XMLPolygonMesh::Content& m_content;
    /// The mesh's slot of each material in use, in first-used order.
    std::unordered_map<unsigned long long, std::uint32_t> m_slots;
    unsigned long long m_lastMaterial = ~0ULL;
    std::uint32_t m_lastSlot = kNoMaterialSlot;
    std::vector<std::int32_t> m_textureSets;
    std::vector<std::int32_t> m_textureIndices;
};

}  // namespace KVR

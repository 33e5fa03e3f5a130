#pragma once

#include <cstdint>
#include <vector>

#include "mesh/MaterialSlots.h"
#include "mesh/PolygonSlabBuilder.h"
#include "mesh/XMLPolygonMesh.h"

namespace KVR
{

class StoreCursor;

/// Reads the bodies of a store's mesh records into meshes' contents, one after the other.
class MeshRecordReader
{
public:
    MeshRecordReader(StoreCursor& store, StoreMaterials materials, bool geometryInfoLayout, StoreMemory& memory);

    void Read(XMLPolygonMesh::Content& content);

private:
    using Content = XMLPolygonMesh::Content;

    void ReadTextureVertices(unsigned long long count, Content& content);
    void ReadTextureVertexSet(unsigned int dimension, unsigned long long count, Content& content);
    unsigned long long ReadSmallPolygons(PolygonSlabBuilder& polygons, unsigned long long most, bool mayHaveNormals);
    void ReadPolygon(PolygonSlabBuilder& polygons, bool mayHaveNormals, bool mayHaveTextures);
    std::uint32_t ReadMaterialSlot();
    void ReadTextures(PolygonSlabBuilder& polygons, std::uint32_t vertexCount);
    void FillUp(std::vector<std::int32_t>& list, unsigned long long count);

    StoreCursor& m_store;
    MaterialSlots m_slots;
    bool m_geometryInfoLayout;
    StoreMemory& m_memory;
    std::vector<std::int32_t> m_textureSets;
    std::vector<std::int32_t> m_textureIndices;
};

}  // namespace KVR

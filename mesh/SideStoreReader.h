#pragma once

#include <cstdio>

#include "framework/api/UTF16String.h"
#include "producer/SideFileIndex.h"

namespace KVR
{

class MeshRecordReader;
class StoreCursor;
class StoreMemory;
struct StoreMaterials;
class XMLProducerImpl;

/// Reads one side file with geometry into the side-file index. Lists of a hostile length throw std::length_error or
/// std::bad_alloc; what was built before stays with the index.
class SideStoreReader
{
public:
    /// Two layouts of mesh stores exist; they differ in the header and in how textures are written.
    SideStoreReader(UTF16String const& sceneFilePath, XMLProducerImpl* producer, bool geometryInfoLayout);

    /// Builds the meshes and curves of a store; the path is taken from the scene file's folder. Of two objects with one
    /// id the first stays. False for a file that cannot be opened and one without records. A short file gives what it
    /// holds.
    [[nodiscard]] bool ReadMeshStore(UTF16String const& path, MeshStore& meshStore, CurveStore& curveStore);

    /// Adds face and edge segments to meshes that were built before. True at once, with nothing opened, when there are
    /// none; otherwise false for a file that cannot be opened and one without records.
    [[nodiscard]] bool ReadMeshSegmentStore(UTF16String const& fullPath, MeshStore& meshStore);

private:
    struct Stores
    {
        MeshStore& meshes;
        CurveStore& curves;
    };

    bool ReadMeshes(std::FILE* file, MeshStore& meshStore, CurveStore& curveStore);
    bool ReadSegmentRecords(std::FILE* file, MeshStore& meshStore);
    void TellIfUnread(std::FILE* file, UTF16String const& fullPath) const;
    StoreMaterials ReadHeader(StoreCursor& store, unsigned long long& recordCount) const;
    void ReadRecord(StoreCursor& store, StoreMemory& memory, MeshRecordReader& meshes, Stores const& stores);

    UTF16String m_sceneFilePath;
    XMLProducerImpl* m_producer;
    bool m_geometryInfoLayout;
    bool m_swapBytes;
};

}  // namespace KVR

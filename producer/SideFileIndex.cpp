#include "producer/SideFileIndex.h"

#include <utility>

#include "framework/api/DataIdToPersistentIdMap.h"
#include "framework/api/VitreolSerializedAsset.h"
#include "geometry/XMLCurve.h"
#include "mesh/XMLPolygonMesh.h"

namespace KVR
{

SideFileIndex::SideFileIndex() = default;

SideFileIndex::~SideFileIndex()
{
    for (auto const& [id, asset] : vitreolAssets)
        delete asset;
    for (auto const& [id, map] : subObjectPersistentIds)
        delete map;
}

void SideFileIndex::ReadAllDeferred()
{
    // Reading a store asks for no curve.
    for (auto const& read : std::exchange(deferredStores, {}))
        read();
}

}  // namespace KVR

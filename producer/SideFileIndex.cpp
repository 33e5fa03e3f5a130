#include "producer/SideFileIndex.h"

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

}  // namespace KVR

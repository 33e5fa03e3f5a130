#pragma once

#include <functional>
#include <map>
#include <vector>

#include "framework/api/UTF8String.h"
#include "producer/ObjectStore.h"

namespace KVR
{

class curve;
class EditableDataIdToPersistentIdMap;
class ENTITY;
class VitreolSerializedAsset;
class XMLCurve;
class XMLPolygonMesh;

using BodyEntities = std::map<UTF8String, ENTITY*>;
using CurveEntities = std::map<UTF8String, curve*>;
using MeshStore = ObjectStore<XMLPolygonMesh>;
using CurveStore = ObjectStore<XMLCurve>;
using VitreolAssets = std::map<UTF8String, VitreolSerializedAsset*>;
using SubObjectPersistentIds = std::map<UTF8String, EditableDataIdToPersistentIdMap*>;

/// What the side files of a scene hold, by the ids of the objects it belongs to. Object readers take their data here.
class SideFileIndex
{
public:
    SideFileIndex();
    /// Frees what no object took.
    ~SideFileIndex();
    SideFileIndex(SideFileIndex const&) = delete;
    SideFileIndex& operator=(SideFileIndex const&) = delete;

    /// Bodies of kernel stores; not owned.
    BodyEntities bodyEntities;
    /// Curves that the kernel made from edges; not owned.
    CurveEntities curveEntities;
    /// Meshes and curves of binary stores; owned until an element takes them.
    MeshStore meshStore;
    CurveStore curveStore;
    /// Serialized assets by style id; owned until a style takes them.
    VitreolAssets vitreolAssets;
    /// Owned until an object takes them.
    SubObjectPersistentIds subObjectPersistentIds;

    /// Stores that are read when the first curve is.
    std::vector<std::function<void()>> deferredStores;
    /// Whether a mesh without an entry is one of a store that is not read.
    bool hasUnreadMeshes = false;

    /// To be called before a curve is read.
    void ReadDeferredStores()
    {
        if (!deferredStores.empty()) [[unlikely]]
            ReadAllDeferred();
    }

private:
    void ReadAllDeferred();
};

}  // namespace KVR

#pragma once

#include <functional>

#include "authoring/MeshStoreWriter.h"

class TopoDS_Shape;

namespace KVR
{

class BodyMesh;

/// Writes a mesh and its segments: one of polygons for each face that has triangles, in their order, and one of
/// vertices for each edge. `styleOf` and `isVisible` are asked for each such face.
void WriteBodyMesh(BodyMesh const& mesh, UTF8String const& id, Authoring::MeshStoreWriter& store,
                   Authoring::SegmentStoreWriter& segments,
                   std::function<UTF8String(TopoDS_Shape const&)> const& styleOf,
                   std::function<bool(TopoDS_Shape const&)> const& isVisible);

}  // namespace KVR

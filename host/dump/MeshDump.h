#pragma once

namespace KVR
{

struct DumpContext;
class IPolygonMesh;

// Polygon meshes.

/// Writes the members of a mesh; the caller opens and closes the object.
void DumpPolygonMesh(DumpContext const& context, IPolygonMesh const& mesh);

}  // namespace KVR

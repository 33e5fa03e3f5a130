#pragma once

#include <TopoDS_Shape.hxx>

namespace KVR
{

class IPolygonMesh;

/// A mesh as a shell with a flat face for each triangle, in the mesh's own coordinates; polygons with more corners are
/// fans of triangles. A triangle without an area is left out. Null when there is none.
TopoDS_Shape MeshShell(IPolygonMesh const& mesh);

}  // namespace KVR

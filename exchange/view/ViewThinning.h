#pragma once

#include <vector>

#include "exchange/view/ViewMesh.h"

namespace KVR
{

/// What came of thinning: triangles drawn before and after.
struct Thinned
{
    unsigned long long from = 0;
    unsigned long long to = 0;
};

/// How many triangles are drawn of meshes that are drawn so often.
unsigned long long DrawnTriangles(std::vector<ViewMesh> const& meshes, std::vector<unsigned long long> const& uses);

/// Makes meshes coarser until no more than so many triangles are drawn, as near to that as eight attempts come:
/// vertices that are near each other become one, so that what is large keeps its shape. A mesh keeps faces and edges
/// apart, and the edges as they are. Each mesh becomes coarser by its own size, at most to a fourth of it: more
/// triangles than wanted may be left.
Thinned ThinMeshes(std::vector<ViewMesh>& meshes, std::vector<unsigned long long> const& uses,
                   unsigned long long mostTriangles);

}  // namespace KVR

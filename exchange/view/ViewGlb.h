#pragma once

#include <functional>
#include <string_view>
#include <vector>

namespace KVR
{

struct ViewMesh;

/// Hands the meshes as a GLB to `put`, piece by piece. Throws std::runtime_error beyond 4 GiB, which no GLB can hold.
void WriteGlb(std::vector<ViewMesh> const& meshes, std::function<void(std::string_view)> const& put);

}  // namespace KVR

#pragma once

#include <cstddef>
#include <cstdint>

namespace KVR::Fuzz
{

/// Reads the input as a mesh store and asks everything that it built; always 0.
int RunMeshStore(std::uint8_t const* data, std::size_t size, bool geometryInfoLayout);

/// Reads the input as a segment store of meshes "a", "b" and "c"; always 0.
int RunSegmentStore(std::uint8_t const* data, std::size_t size);

}  // namespace KVR::Fuzz

#pragma once

#include <string>
#include <string_view>

#include "exchange/meshes/GltfFile.h"

namespace KVR
{

/// Whether this build has a decoder for views compressed with EXT_meshopt_compression.
bool CanDecompressGltf();

/// The bytes of a compressed view: `claims` is what its extension says, `bytes` those that it names, `length` the size
/// that the view announces. What is claimed is held against the number of bytes before any room is made. Throws
/// ModelError for claims that make no sense, and for bytes that are damaged, with `name` as the view's.
std::string DecompressedGltfView(GltfFile::Json const& claims, std::string_view bytes, std::size_t length,
                                 std::string const& name);

}  // namespace KVR

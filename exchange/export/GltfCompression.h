#pragma once

#include <tiny_gltf.h>

#include <nlohmann/json.hpp>
#include <vector>

namespace KVR
{

/// Compresses the numbers of a glTF document as EXT_meshopt_compression has it, without loss: `bytes`, the content of
/// its one buffer, become those of the compressed one, and the buffers and their views in `document`, which was made of
/// the model, are those of the result. Throws std::runtime_error in a build without an encoder.
void CompressGltf(tinygltf::Model const& model, std::vector<unsigned char>& bytes, nlohmann::ordered_json& document);

}  // namespace KVR

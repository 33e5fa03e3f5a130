#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace KVR::Bench
{

/// A packaged importer of meshes that this build found. `read` gives the number of triangles that it holds in memory
/// after reading, and throws std::runtime_error when it cannot read the file; `keep` has the triangles live on.
struct MeshImporter
{
    std::string name;
    std::string format;
    unsigned long long (*read)(std::filesystem::path const& path);
};

std::vector<MeshImporter> MeshImporters();

}  // namespace KVR::Bench

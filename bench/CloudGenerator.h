#pragma once

#include <cstddef>
#include <filesystem>

namespace KVR::Bench
{

/// Writes a scene of one point cloud, "cloud": points of a body of a few metres, in millimetres with so many decimals.
/// The same arguments give the same bytes. Throws std::runtime_error when the file cannot be written.
void WriteCloud(std::filesystem::path const& path, std::size_t points, int decimals);

}  // namespace KVR::Bench

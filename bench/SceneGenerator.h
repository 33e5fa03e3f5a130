#pragma once

#include <filesystem>
#include <string>

namespace KVR::Bench
{

/// Writes a scene of that many instances, streamed. A hundred instances stand in each assembly, ten of them of further
/// assemblies and the others of shared parts, in one tree below one root file. The same count gives the same bytes.
/// Throws std::runtime_error when the file cannot be written.
void WriteScene(std::filesystem::path const& path, unsigned instances);

/// The id of an instance of such a scene; they count from 0.
std::string InstanceId(unsigned index);

}  // namespace KVR::Bench

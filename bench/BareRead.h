#pragma once

#include <filesystem>

namespace KVR::Bench
{

/// Reads a file as one would that only took the bytes: through a buffer of a mebibyte. Throws std::runtime_error.
void ReadBare(std::filesystem::path const& path);

/// The processor time that the system takes to hand out so much memory in large pages, each written to once.
double SecondsOfFreshMemory(double bytes);

}  // namespace KVR::Bench

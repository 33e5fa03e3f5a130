#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace KVR
{

/// A PNG file of pixels of four bytes each (red, green, blue, opacity), row by row from the top. Throws
/// std::bad_alloc, also when zlib has no memory.
std::string PngBytes(std::uint32_t width, std::uint32_t height, std::span<unsigned char const> pixels);

}  // namespace KVR

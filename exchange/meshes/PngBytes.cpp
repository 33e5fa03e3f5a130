#include "exchange/meshes/PngBytes.h"

#include <zlib.h>

#include <new>
#include <string_view>

namespace KVR
{

namespace
{

constexpr std::size_t kPixel = 4;

std::string BigEndian(std::uint32_t number)
{
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes += static_cast<char>(number >> shift & 0xFFU);
    return bytes;
}

void AddChunk(std::string& file, std::string_view type, std::string const& content)
{
    std::string const checked = std::string(type) + content;
    file += BigEndian(static_cast<std::uint32_t>(content.size())) + checked;
    uLong const sum = crc32(0, reinterpret_cast<Bytef const*>(checked.data()), static_cast<uInt>(checked.size()));
    file += BigEndian(static_cast<std::uint32_t>(sum));
}

}  // namespace

std::string PngBytes(std::uint32_t width, std::uint32_t height, std::span<unsigned char const> pixels)
{
    std::string rows;
    std::size_t const rowSize = kPixel * width;
    rows.reserve(height * (rowSize + 1));
    for (std::size_t row = 0; row < height; ++row)
    {
        // No filter.
        rows += '\0';
        rows.append(reinterpret_cast<char const*>(pixels.data()) + row * rowSize, rowSize);
    }
    uLongf size = compressBound(static_cast<uLong>(rows.size()));
    std::string packed(size, '\0');
    if (compress2(reinterpret_cast<Bytef*>(packed.data()), &size, reinterpret_cast<Bytef const*>(rows.data()),
                  static_cast<uLong>(rows.size()), Z_DEFAULT_COMPRESSION) != Z_OK)
        throw std::bad_alloc();
    packed.resize(size);
    std::string file = "\x89PNG\r\n\x1A\n";
    // Eight bits for each of red, green, blue and opacity; one way to compress, to filter and to order rows.
    AddChunk(file, "IHDR", BigEndian(width) + BigEndian(height) + std::string("\x08\x06\x00\x00\x00", 5));
    AddChunk(file, "IDAT", packed);
    AddChunk(file, "IEND", {});
    return file;
}

}  // namespace KVR

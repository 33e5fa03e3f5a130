#include "tests/exchange/PngFile.h"

#include <zlib.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace KVR::Test
{

namespace
{

std::size_t WordAt(std::string const& bytes, std::size_t place)
{
    std::size_t word = 0;
    for (std::size_t i = 0; i < 4; ++i)
        word = (word << 8U) | static_cast<unsigned char>(bytes.at(place + i));
    return word;
}

int Nearest(int left, int above, int corner)
{
    int const guess = left + above - corner;
    int const toLeft = std::abs(guess - left);
    int const toAbove = std::abs(guess - above);
    int const toCorner = std::abs(guess - corner);
    return toLeft <= toAbove && toLeft <= toCorner ? left : toAbove <= toCorner ? above : corner;
}

}  // namespace

PngFile::PngFile(std::string const& path)
{
    std::ifstream file(path, std::ios::binary);
    std::string const bytes(std::istreambuf_iterator<char>(file), {});
    std::string packed;
    for (std::size_t place = 8; place < bytes.size(); place += 12 + WordAt(bytes, place))
        if (bytes.compare(place + 4, 4, "IDAT") == 0)
            packed += bytes.substr(place + 8, WordAt(bytes, place));
    width = WordAt(bytes, 16);
    height = WordAt(bytes, 20);
    if (bytes.at(24) != 8 || (bytes.at(25) != 2 && bytes.at(25) != 6) || bytes.at(28) != 0)
        throw std::runtime_error("not such a picture");
    m_channels = bytes.at(25) == 2 ? 3 : 4;
    std::size_t const row = width * m_channels;
    std::string filtered(height * (row + 1), '\0');
    uLongf size = filtered.size();
    if (uncompress(reinterpret_cast<Bytef*>(filtered.data()), &size, reinterpret_cast<Bytef const*>(packed.data()),
                   packed.size()) != Z_OK)
        throw std::runtime_error("the picture is damaged");
    m_rows.assign(height * row, '\0');
    auto const at = [&](std::size_t y, std::size_t x)
    { return static_cast<int>(static_cast<unsigned char>(m_rows[y * row + x])); };
    for (std::size_t y = 0; y < height; ++y)
        for (std::size_t x = 0; x < row; ++x)
        {
            int const left = x >= m_channels ? at(y, x - m_channels) : 0;
            int const above = y > 0 ? at(y - 1, x) : 0;
            int const corner = x >= m_channels && y > 0 ? at(y - 1, x - m_channels) : 0;
            int const guesses[] = {0, left, above, (left + above) / 2, Nearest(left, above, corner)};
            auto const filter = static_cast<std::size_t>(filtered[y * (row + 1)]);
            m_rows[y * row + x] = static_cast<char>(filtered[y * (row + 1) + 1 + x] + guesses[filter]);
        }
}

std::array<int, 3> PngFile::At(double x, double y) const
{
    std::size_t const place = static_cast<std::size_t>(y * static_cast<double>(height)) * width +
                              static_cast<std::size_t>(x * static_cast<double>(width));
    std::array<int, 3> color{};
    for (std::size_t i = 0; i < 3; ++i)
        color[i] = static_cast<unsigned char>(m_rows.at(place * m_channels + i));
    return color;
}

}  // namespace KVR::Test

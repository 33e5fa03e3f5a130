#pragma once

#include <array>
#include <string>

namespace KVR::Test
{

/// A picture with eight bits for each colour, as a file has it. Anything else throws.
class PngFile
{
public:
    explicit PngFile(std::string const& path);

    /// Red, green, blue; the place is a fraction of the width and of the height, from the top left.
    std::array<int, 3> At(double x, double y) const;

    std::size_t width = 0;
    std::size_t height = 0;

private:
    std::size_t m_channels = 3;
    std::string m_rows;
};

}  // namespace KVR::Test

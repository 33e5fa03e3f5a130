#include "inspect/estimate/SizeText.h"

#include <fmt/format.h>

#include <iterator>

namespace KVR
{

std::string SizeText(double bytes)
{
    constexpr char const* kUnits[] = {"bytes", "kB", "MB", "GB", "TB", "PB", "EB"};
    std::size_t unit = 0;
    // What would be shown as a thousand is one of the next unit.
    for (; bytes >= (unit == 0 ? 1000.0 : 999.5) && unit + 1 < std::size(kUnits); ++unit)
        bytes /= 1000.0;
    if (unit == 0)
        return bytes == 1.0 ? "1 byte" : fmt::format("{:.0f} bytes", bytes);
    return fmt::format("{:.{}f} {}", bytes, bytes < 9.995 ? 2 : bytes < 99.95 ? 1 : 0, kUnits[unit]);
}

}  // namespace KVR

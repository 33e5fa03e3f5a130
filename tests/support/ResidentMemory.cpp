#include "tests/support/ResidentMemory.h"

#include <fstream>
#include <stdexcept>
#include <string>

namespace KVR::Test
{

namespace
{

long MemoryKB(std::string const& title)
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
    {
        if (line.starts_with(title))
            return std::stol(line.substr(title.size()));
    }
    throw std::runtime_error("the system does not tell the memory");
}

}  // namespace

long ResidentMemoryKB()
{
    return MemoryKB("VmRSS:");
}

long PeakMemoryKB()
{
    return MemoryKB("VmPeak:");
}

}  // namespace KVR::Test

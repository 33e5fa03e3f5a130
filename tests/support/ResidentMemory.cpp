#include "tests/support/ResidentMemory.h"

#include <fstream>
#include <stdexcept>
#include <string>

namespace KVR::Test
{

long ResidentMemoryKB()
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
    {
        if (line.starts_with("VmRSS:"))
            return std::stol(line.substr(6));
    }
    throw std::runtime_error("the system does not tell the resident memory");
}

}  // namespace KVR::Test

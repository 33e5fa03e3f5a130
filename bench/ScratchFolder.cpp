#include "bench/ScratchFolder.h"

#include <cstdlib>
#include <stdexcept>
#include <string>
#include <system_error>

namespace KVR::Bench
{

ScratchFolder::ScratchFolder()
{
    std::string name = (std::filesystem::temp_directory_path() / "kvr_bench_XXXXXX").string();
    if (!mkdtemp(name.data()))
        throw std::runtime_error("Cannot make a temporary folder");
    m_path = name;
}

ScratchFolder::~ScratchFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

}  // namespace KVR::Bench

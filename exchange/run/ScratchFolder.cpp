#include "exchange/run/ScratchFolder.h"

#include <cerrno>
#include <cstdlib>
#include <system_error>

namespace KVR
{

ScratchFolder::ScratchFolder(std::filesystem::path const& folder, std::string const& name)
{
    std::string path = (folder / (name + "XXXXXX")).string();
    if (!mkdtemp(path.data()))
        throw std::system_error(errno, std::generic_category());
    m_path = path;
}

ScratchFolder::~ScratchFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

}  // namespace KVR

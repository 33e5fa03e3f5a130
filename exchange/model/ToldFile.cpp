#include "exchange/model/ToldFile.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

namespace KVR
{

ToldFile::ToldFile(std::string const& path, std::function<void(double fraction)> tell) : m_tell(std::move(tell))
{
    std::error_code error;
    open(path, std::ios::in | std::ios::binary);
    m_size = static_cast<double>(std::filesystem::file_size(path, error));
}

std::streamsize ToldFile::xsgetn(char* to, std::streamsize count)
{
    std::streamsize const taken = std::filebuf::xsgetn(to, count);
    m_taken += static_cast<double>(taken);
    if (taken > 0)
        m_tell(std::min(1.0, m_taken / m_size));
    return taken;
}

}  // namespace KVR

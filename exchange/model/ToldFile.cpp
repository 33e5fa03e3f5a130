#include "exchange/model/ToldFile.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

namespace KVR
{

ToldFile::ToldFile(std::string const& path, std::function<void(double fraction)> tell)
    : m_tell(std::move(tell)), m_file(path, std::ios::binary), m_block(kBlock)
{
    std::error_code error;
    m_size = static_cast<double>(std::filesystem::file_size(path, error));
}

ToldFile::int_type ToldFile::underflow()
{
    while (m_file.read(m_block.data(), static_cast<std::streamsize>(m_block.size())) || m_file.gcount() > 0)
    {
        char* const begin = m_block.data();
        m_taken += static_cast<double>(m_file.gcount());
        m_tell(std::min(1.0, m_taken / m_size));
        setg(begin, begin, std::remove(begin, begin + m_file.gcount(), '\r'));
        if (gptr() != egptr())
            return traits_type::to_int_type(*gptr());
    }
    return traits_type::eof();
}

}  // namespace KVR

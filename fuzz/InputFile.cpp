#include "fuzz/InputFile.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "framework/api/UTF8String.h"

namespace KVR::Fuzz
{

InputFile::InputFile(std::string const& name)
{
    // In memory where the machine offers that: a run writes thousands of files a second.
    std::string pattern = ::access("/dev/shm", W_OK) == 0 ? "/dev/shm/kvr_fuzz_XXXXXX" : "/tmp/kvr_fuzz_XXXXXX";
    if (!::mkdtemp(pattern.data()))
        std::abort();
    m_folder = pattern;
    m_path = m_folder + "/" + name;
}

InputFile::~InputFile()
{
    ::unlink(m_path.c_str());
    ::rmdir(m_folder.c_str());
}

void InputFile::Write(std::uint8_t const* data, std::size_t size) const
{
    std::FILE* const file = std::fopen(m_path.c_str(), "wb");
    if (!file || std::fwrite(data, 1, size, file) != size || std::fclose(file) != 0)
        std::abort();
}

UTF16String InputFile::Path() const
{
    return UTF16String(UTF8String(m_path.c_str()));
}

}  // namespace KVR::Fuzz

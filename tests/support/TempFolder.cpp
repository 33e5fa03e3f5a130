#include "tests/support/TempFolder.h"

#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <system_error>

#include "framework/api/UTF8String.h"

namespace KVR::Test
{

namespace
{

[[noreturn]] void Fail(std::string const& action, std::string const& path)
{
    throw std::runtime_error("cannot " + action + " " + path);
}

}  // namespace

TempFolder::TempFolder() : m_path(std::filesystem::temp_directory_path() / "kvr_test_XXXXXX")
{
    if (!::mkdtemp(m_path.data()))
        Fail("make the folder", m_path);
}

TempFolder::~TempFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

std::string TempFolder::NarrowPathOf(std::string_view name) const
{
    return name.empty() ? m_path : m_path + '/' + std::string(name);
}

UTF16String TempFolder::PathOf(std::string_view name) const
{
    return UTF16String(UTF8String(NarrowPathOf(name)));
}

UTF16String TempFolder::Write(std::string_view name, std::string_view bytes) const
{
    std::string const path = NarrowPathOf(name);
    if (name.find('/') != std::string_view::npos)
        std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    // A new file instead of a shortened one: some file systems write a file that was shortened to the disk at once.
    std::filesystem::remove(path);
    std::ofstream file(path, std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (!file)
        Fail("write", path);
    return PathOf(name);
}

UTF16String TempFolder::MakeFolder(std::string_view name) const
{
    std::filesystem::create_directories(NarrowPathOf(name));
    return PathOf(name);
}

UTF16String TempFolder::MakeFifo(std::string_view name) const
{
    std::string const path = NarrowPathOf(name);
    if (::mkfifo(path.c_str(), S_IRUSR | S_IWUSR) != 0)
        Fail("make the FIFO", path);
    return PathOf(name);
}

}  // namespace KVR::Test

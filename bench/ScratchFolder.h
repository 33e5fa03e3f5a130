#pragma once

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>

namespace KVR::Bench
{

/// A temporary folder, gone with the scope.
class ScratchFolder
{
public:
    ScratchFolder()
    {
        std::string name = (std::filesystem::temp_directory_path() / "kvr_bench_XXXXXX").string();
        if (!mkdtemp(name.data()))
            throw std::runtime_error("Cannot make a temporary folder");
        m_path = name;
    }
    ~ScratchFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    ScratchFolder(ScratchFolder const&) = delete;
    ScratchFolder& operator=(ScratchFolder const&) = delete;

    std::filesystem::path const& Path() const { return m_path; }

private:
    std::filesystem::path m_path;
};

}  // namespace KVR::Bench

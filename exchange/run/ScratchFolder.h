#pragma once

#include <filesystem>
#include <string>

namespace KVR
{

/// A new folder, which goes with all that is in it when the object does.
class ScratchFolder
{
public:
    /// In a folder, with a name that begins so. Throws std::system_error.
    ScratchFolder(std::filesystem::path const& folder, std::string const& name);
    ~ScratchFolder();
    ScratchFolder(ScratchFolder const&) = delete;
    ScratchFolder& operator=(ScratchFolder const&) = delete;

    std::filesystem::path const& Path() const noexcept { return m_path; }

private:
    std::filesystem::path m_path;
};

}  // namespace KVR

#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace KVR
{

/// A new folder, which goes with all that is in it when the object does. While the object lives, in this process and in
/// those that it forks, a file in the folder is locked: by that the next such folder beside it knows what a process
/// that was killed has left behind, and removes it.
class ScratchFolder
{
public:
    /// In a folder, with a name that begins so, which is to be the program's alone. Throws std::system_error.
    ScratchFolder(std::filesystem::path const& folder, std::string const& name);
    ~ScratchFolder();
    ScratchFolder(ScratchFolder const&) = delete;
    ScratchFolder& operator=(ScratchFolder const&) = delete;

    std::filesystem::path const& Path() const noexcept { return m_path; }

    /// The names of what was put into it.
    std::vector<std::filesystem::path> Names() const;

private:
    std::filesystem::path m_path;
    /// The locked file; -1 where there are no locks.
    int m_lock;
};

}  // namespace KVR

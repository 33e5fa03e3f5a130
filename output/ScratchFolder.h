#pragma once

#include <filesystem>
#include <string>

namespace KVR
{

/// A new folder, inside one of its own, which goes with all that is in it when the object does. While the object lives,
/// in this process and in those that it forks, a file beside it is locked: by that the next such folder knows what a
/// process that was killed has left behind, and removes it; also one that never got its lock, after ten minutes.
class ScratchFolder
{
public:
    /// In a folder, under a name that begins so, which is to be the program's alone. Throws std::system_error and
    /// std::bad_alloc, with nothing left behind. To remove it takes no memory.
    ScratchFolder(std::filesystem::path const& folder, std::string const& name);
    ~ScratchFolder();
    ScratchFolder(ScratchFolder const&) = delete;
    ScratchFolder& operator=(ScratchFolder const&) = delete;

    std::filesystem::path const& Path() const noexcept { return m_path; }

private:
    void Remove() const noexcept;

    /// The folder that has the lock beside the one to put things into.
    std::string m_outer;
    std::filesystem::path m_path;
    /// The locked file; -1 where there are no locks.
    int m_lock = -1;
};

}  // namespace KVR

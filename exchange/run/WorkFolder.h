#pragma once

#include <filesystem>

#include "exchange/run/ScratchFolder.h"

namespace KVR
{

/// A folder beside a file to be, in which that file and its side files are written before they go to their places
/// together. What is still in it goes with it. Operations throw std::system_error.
class WorkFolder
{
public:
    explicit WorkFolder(std::filesystem::path const& target);

    /// Where to write the file: its own name, in the folder.
    std::filesystem::path Inside() const { return m_folder.Path() / m_target.filename(); }
    std::filesystem::path const& Target() const noexcept { return m_target; }

    /// Whether a file of that name stands in the folder.
    bool Holds(std::filesystem::path const& name) const;
    /// Gives the files their places, and the target its own when all others have theirs. What was there is replaced.
    void MoveIntoPlace() const;

private:
    std::filesystem::path m_target;
    ScratchFolder m_folder;
};

}  // namespace KVR

#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "output/ScratchFolder.h"

namespace KVR
{

/// A file may not be written where it was to be: one sentence without its full stop, with names as they stand.
class TargetError : public std::runtime_error
{
public:
    using runtime_error::runtime_error;
};

/// A folder beside a file to be, in which that file and its side files are written before they go to their places
/// together. What is still in it goes with it. Operations throw std::system_error, too.
class WorkFolder
{
public:
    /// For a target that is none of the sources, by whatever name and through whatever link; throws TargetError for one
    /// that is. A source that is not there is none.
    explicit WorkFolder(std::filesystem::path const& target, std::vector<std::string> sources = {});

    /// Where to write the file: its own name, in the folder.
    std::filesystem::path Inside() const { return m_folder.Path() / m_target.filename(); }
    std::filesystem::path const& Target() const noexcept { return m_target; }

    /// The names of the files in the folder.
    std::vector<std::string> Names() const;
    /// Gives the files their places, and the target its own when all others have theirs. What was there is replaced,
    /// but for the sources: TargetError then, before any is moved. Files of the names `former` beside the target go, if
    /// they are there. When one of them cannot be moved, all are where they were; where the file system cannot exchange
    /// two files, those that were replaced are gone.
    void MoveIntoPlace(std::vector<std::string> const& former = {}) const;
    /// Takes all files out of it, for work that begins again.
    void Clear() const;

private:
    void ExpectNoSource(std::filesystem::path const& path) const;

    std::filesystem::path m_target;
    std::vector<std::string> m_sources;
    ScratchFolder m_folder;
};

}  // namespace KVR

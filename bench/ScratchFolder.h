#pragma once

#include <filesystem>

namespace KVR::Bench
{

/// A temporary folder for what is measured, gone with the scope.
class ScratchFolder
{
public:
    /// Throws std::runtime_error when none can be made.
    ScratchFolder();
    ~ScratchFolder();
    ScratchFolder(ScratchFolder const&) = delete;
    ScratchFolder& operator=(ScratchFolder const&) = delete;

    std::filesystem::path const& Path() const noexcept { return m_path; }

private:
    std::filesystem::path m_path;
};

}  // namespace KVR::Bench

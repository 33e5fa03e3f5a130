#pragma once

#include <filesystem>
#include <string>

#include "exchange/Progress.h"

namespace KVR::Certification
{

/// A model as files that can be read more than once: what stands on standard input, which "-" names, is held in a
/// folder, and so is what a gzipped file holds.
class PlainModel
{
public:
    /// What is held in the folder gets names that begin with `name`. Throws std::runtime_error for what cannot be read,
    /// unpacks to more than 16 MiB and 100 times its size, or is cut short. Without the callback's consent it stops.
    PlainModel(std::string const& path, std::filesystem::path const& folder, std::string const& name,
               Progress const& progress);

    /// The file as it was given, or that with what stood on standard input.
    std::string const& Given() const noexcept { return m_given; }
    /// The same, unpacked.
    std::string const& Plain() const noexcept { return m_plain; }
    bool IsCancelled() const noexcept { return m_isCancelled; }

private:
    void HoldStandardInput(std::string const& path);
    void Unpack(std::string const& path);
    bool IsWanted();
    /// Gives a file that has none the extension that readers of its format know.
    static std::string Named(std::string const& path);

    Progress const& m_progress;
    std::string m_given;
    std::string m_plain;
    bool m_isCancelled = false;
};

}  // namespace KVR::Certification

#pragma once

#include <optional>
#include <string>

#include "exchange/Progress.h"
#include "output/ScratchFolder.h"

namespace KVR
{

/// Where a model is read from: a file, the file that a gzipped one holds, or what stands on standard input, which "-"
/// names. The latter two are files of a folder that goes with the object.
class ModelSource
{
public:
    /// Throws ModelError, also for a gzipped file that is damaged, or that would unpack to more than 16 MiB and 100
    /// times its size; with `isLenient` what can be unpacked of a damaged one counts. Standard input is read to its
    /// end; the callback is asked now and then.
    ModelSource(std::string const& path, bool isLenient, Progress const& progress);

    /// Whether the callback did not want to go on.
    bool IsCancelled() const noexcept { return m_isCancelled; }
    /// The file to read.
    std::string const& File() const noexcept { return m_file; }
    /// That of the user; empty for standard input.
    std::string const& Path() const noexcept { return m_path; }
    /// The model's name: that of the file without its extensions.
    std::string Name() const;
    /// The folder of the files that the model names.
    std::string Folder() const;
    /// What was taken of a file that is damaged; empty for one that is not.
    std::string const& Remark() const noexcept { return m_remark; }

private:
    std::string ScratchFile(std::string const& name);
    void ReadStandardInput(Progress const& progress);
    void Unpack(bool isLenient, Progress const& progress);

    std::string m_path;
    std::string m_file;
    std::string m_remark;
    std::optional<ScratchFolder> m_folder;
    bool m_isCancelled = false;
};

}  // namespace KVR

#pragma once

#include <string>

#include "output/Output.h"

namespace KVR
{

/// A new file that is written from its beginning on. Operations throw std::system_error.
class ExportFile
{
public:
    explicit ExportFile(std::string const& path);
    ~ExportFile();
    ExportFile(ExportFile const&) = delete;
    ExportFile& operator=(ExportFile const&) = delete;

    Output& Out() noexcept { return m_out; }
    /// Writes what is held back, and closes the file: only this tells that all of it arrived.
    void Finish();

private:
    int m_descriptor;
    Output m_out;
};

}  // namespace KVR

#pragma once

#include <string>
#include <string_view>

#include "framework/api/UTF16String.h"

namespace KVR::Test
{

/// A new, empty folder for the length of a scope; everything in it goes with it. Names are UTF-8 and relative to the
/// folder. Operations throw std::runtime_error when the file system refuses.
class TempFolder
{
public:
    TempFolder();
    ~TempFolder();
    TempFolder(TempFolder const&) = delete;
    TempFolder& operator=(TempFolder const&) = delete;

    /// The folder's absolute path, without a separator at its end.
    std::string const& Path() const noexcept { return m_path; }
    /// The full path of a name in it, there or not; the folder's own for the empty name.
    std::string NarrowPathOf(std::string_view name) const;
    UTF16String PathOf(std::string_view name) const;

    /// Writes or replaces a file, with the folders it needs; answers its full path.
    UTF16String Write(std::string_view name, std::string_view bytes) const;
    UTF16String MakeFolder(std::string_view name) const;
    /// Makes a FIFO, which nobody writes to.
    UTF16String MakeFifo(std::string_view name) const;

private:
    std::string m_path;
};

}  // namespace KVR::Test

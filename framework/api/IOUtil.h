#pragma once

#include <cstdio>

#include "framework/api/Export.h"
#include "framework/api/UTF8String.h"

namespace KVR
{

/// Files and byte order of the machine.
class KVR_API IOUtil
{
public:
    /// Whether the machine keeps the highest byte of a number first.
    static bool IsBigEndian() noexcept;
    /// Opens a file as std::fopen does; null when that fails. A file opened to be read must be a regular one: a
    /// directory, FIFO or device counts as one that could not be opened, and the call never waits for one.
    /// Throws std::bad_alloc when memory runs out.
    static std::FILE* OpenFile(UTF8String const& path, UTF8String const& mode);
    /// Closes what OpenFile gave; null has no effect.
    static void CloseFile(std::FILE* file) noexcept;
};

/// A file opened for the length of a scope.
class KVR_API FilePtr
{
public:
    FilePtr(UTF8String const& path, UTF8String const& mode);
    ~FilePtr();
    FilePtr(FilePtr const&) = delete;
    FilePtr& operator=(FilePtr const&) = delete;

    /// The open file, owned by this object; null when it could not be opened.
    operator std::FILE*() const noexcept { return m_file; }

private:
    std::FILE* m_file;
};

}  // namespace KVR

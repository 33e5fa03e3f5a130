#pragma once

#include "framework/api/UTF16String.h"
#include "framework/xml_util/Export.h"

namespace KVR
{

/// Reads the raw bytes of a side file.
class KVR_XML_UTIL_API VitreolBinaryDataExternalFileReader
{
public:
    /// An absolute path stands as it is, a relative one is taken from the scene file's folder. Nothing is opened yet.
    VitreolBinaryDataExternalFileReader(UTF16String const& sceneFilePath, UTF16String const& path);
    ~VitreolBinaryDataExternalFileReader();

    /// Throws what Read would throw for this size, without a buffer: to be called before memory is taken on the word
    /// of a scene.
    void Require(unsigned long long size) const;
    /// Reads the first `size` bytes into the caller's buffer, which holds at least that many. Throws FileException
    /// (code 0, the full path as file name) when there are fewer.
    void Read(void* buffer, unsigned long long size) const;

private:
    [[noreturn]] void Fail() const;

    UTF16String m_fullPath;
};

}  // namespace KVR

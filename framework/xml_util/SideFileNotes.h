#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "framework/api/UTF8String.h"
#include "framework/xml_util/Export.h"

namespace KVR
{

/// What a file holds, in brief.
struct KVR_XML_UTIL_API FileDigest
{
    /// In bytes.
    std::uint64_t size = 0;
    /// The 64 bits of XXH3 over all of them: it tells files apart that differ by accident, and is no protection against
    /// anybody who means harm.
    std::uint64_t hash = 0;

    /// That of a file as it stands, which is read to its end. Nothing, with the system's reason in errno, when it
    /// cannot be read or is no regular file.
    static std::optional<FileDigest> Of(UTF8String const& path);

    bool operator==(FileDigest const&) const = default;
};

/// What a scene notes of a file that was written with it.
struct SideFileNote
{
    /// The file's in the folder of the scene; bytes of any kind.
    std::string name;
    FileDigest digest;
};

/// The notes of a scene on its side files: a processing instruction behind the root of the document, where a reader of
/// scenes passes over it. It is the last thing in the document, and found without reading what stands before it.
struct KVR_XML_UTIL_API SideFileNotes
{
    /// The instruction as text, without line ends around it.
    static std::string Text(std::vector<SideFileNote> const& notes);

    /// The notes of a document. Nothing for one without, and for a file that cannot be read. A line of them that makes
    /// no sense is passed over, and so are a name that leads out of the folder and the second note of a name.
    static std::optional<std::vector<SideFileNote>> Of(UTF8String const& scenePath);
};

}  // namespace KVR

#pragma once

#include "framework/api/UTF16String.h"
#include "framework/xml_util/Export.h"

namespace KVR
{

/// The path of a side file: the text appended to the scene file's folder, with a separator unless it begins with one.
/// An absolute text is appended like any other, and ".." passes through.
KVR_XML_UTIL_API UTF16String ResolveSideFilePath(UTF16String const& sceneFilePath, UTF16String const& path);

/// The same but for an absolute path, which stands as it is, and the empty one, which stays empty.
KVR_XML_UTIL_API UTF16String PathFromSceneFolder(UTF16String const& sceneFilePath, UTF16String const& path);

/// The path with its extension replaced by another, which begins with a point.
KVR_XML_UTIL_API UTF16String ReplaceExtension(UTF16String const& path, UTF16String const& extension);

/// The extension with the point in front of it; empty for a path without one.
KVR_XML_UTIL_API UTF16String PathExtension(UTF16String const& path);

/// The path from the root of the file system, taken from the current folder when it is relative.
KVR_XML_UTIL_API UTF16String AbsolutePath(UTF16String const& path);

}  // namespace KVR

#include "framework/xml_util/SideFilePath.h"

#include <boost/filesystem.hpp>

#include "framework/api/UTF8String.h"

namespace KVR
{

namespace
{

using Path = boost::filesystem::path;

#if defined(_WIN32)
Path PathOf(UTF16String const& text)
{
    return Path(text.Value());
}
UTF16String TextOf(Path const& path)
{
    return UTF16String(path.native());
}
#else
// File names here are bytes; those of a scene are UTF-8.
Path PathOf(UTF16String const& text)
{
    return Path(UTF8String(text).Value());
}
UTF16String TextOf(Path const& path)
{
    return UTF16String(UTF8String(path.native()));
}
#endif

}  // namespace

UTF16String ResolveSideFilePath(UTF16String const& sceneFilePath, UTF16String const& path)
{
    Path full = PathOf(sceneFilePath).parent_path();
    full /= PathOf(path);
    return TextOf(full);
}

UTF16String PathFromSceneFolder(UTF16String const& sceneFilePath, UTF16String const& path)
{
    if (path.IsEmpty() || PathOf(path).is_absolute())
        return path;
    return ResolveSideFilePath(sceneFilePath, path);
}

UTF16String ReplaceExtension(UTF16String const& path, UTF16String const& extension)
{
    return TextOf(PathOf(path).replace_extension(PathOf(extension)));
}

UTF16String PathExtension(UTF16String const& path)
{
    return TextOf(PathOf(path).extension());
}

UTF16String AbsolutePath(UTF16String const& path)
{
    boost::system::error_code error;
    Path const current = boost::filesystem::current_path(error);
    return error ? path : TextOf(boost::filesystem::absolute(PathOf(path), current));
}

}  // namespace KVR

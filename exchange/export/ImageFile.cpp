#include "exchange/export/ImageFile.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <system_error>

#include "framework/api/IMaterialTexture.h"
#include "framework/api/UTF16String.h"
#include "framework/api/UTF8String.h"

namespace KVR
{

namespace
{

constexpr std::uintmax_t kMostBytes = std::uintmax_t{1} << 28U;

std::string MimeTypeOf(std::string_view bytes)
{
    using namespace std::string_view_literals;
    if (bytes.starts_with("\x89PNG\r\n\x1a\n"sv))
        return "image/png";
    return bytes.starts_with("\xff\xd8\xff"sv) ? "image/jpeg" : "";
}

std::string BytesOf(std::filesystem::path const& path)
{
    std::error_code error;
    // A pipe or a device may have no end.
    if (!std::filesystem::is_regular_file(path, error))
        return {};
    std::uintmax_t const size = std::filesystem::file_size(path, error);
    if (error || size > kMostBytes)
        return {};
    std::string bytes(static_cast<std::size_t>(size), '\0');
    std::ifstream file(path, std::ios::binary);
    file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(static_cast<std::size_t>(file.gcount()));
    return bytes;
}

}  // namespace

ImageFile ImageFile::Of(IMaterialTexture const& texture, std::filesystem::path const& folder)
{
    ImageFile file;
    UTF16String reference;
    if (texture.TextureFileReference(reference) == kIsValueSpecified_Yes)
        file.name = UTF8String(reference).Value();
    // It may have been named on another system.
    std::string named = file.name;
    std::replace(named.begin(), named.end(), '\\', '/');
    std::filesystem::path const path(named);
    file.name = path.filename().string();
    int size = 0;
    if (texture.EmbeddedTextureImageSize(size) == kIsValueSpecified_Yes && size > 0 &&
        static_cast<std::uintmax_t>(size) <= kMostBytes)
    {
        file.bytes.assign(static_cast<std::size_t>(size), '\0');
        // A file that is not there counts as read, and leaves the zeros, which are no image.
        if (texture.EmbeddedTextureImage(size, file.bytes.data()) == kIsValueSpecified_Yes)
            file.mimeType = MimeTypeOf(file.bytes);
        if (!file.mimeType.empty())
            return file;
    }
    // Else beside the scene, whatever folder it was in.
    for (std::filesystem::path const& place : {folder / path, folder / path.filename()})
        if (file.bytes.empty() || MimeTypeOf(file.bytes).empty())
            file.bytes = BytesOf(place);
    file.mimeType = MimeTypeOf(file.bytes);
    return file;
}

}  // namespace KVR

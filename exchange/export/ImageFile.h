#pragma once

#include <filesystem>
#include <string>

namespace KVR
{

class IMaterialTexture;

/// The image of a texture.
struct ImageFile
{
    /// The image that the scene has of its own, else the file that the texture came from, which is looked for from the
    /// folder on and then in it. One of more than 256 MiB counts as none.
    static ImageFile Of(IMaterialTexture const& texture, std::filesystem::path const& folder);

    /// Without its folders.
    std::string name;
    /// Empty when there is none.
    std::string bytes;
    /// "image/png" or "image/jpeg"; empty for anything else.
    std::string mimeType;
};

}  // namespace KVR

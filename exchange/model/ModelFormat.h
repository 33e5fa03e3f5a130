#pragma once

#include <optional>
#include <string>

namespace KVR
{

/// The forms of model that can be imported.
enum class ModelFormat
{
    kStep,
    kIges,
    kBrep,
    kGltf,
    kStl,
    kObj,
    kPly
};

/// The format of a file by its first bytes and, where they leave it open, by its extension; nothing for a format that
/// is not known. Throws ModelError for a file that cannot be read, is empty, or is no regular file.
std::optional<ModelFormat> FormatOfModel(std::string const& path);

}  // namespace KVR

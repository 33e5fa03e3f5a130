#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace KVR
{

/// What the user says about the reading of a scene, whatever is then shown of it.
struct SceneOptions
{
    std::string path;
    /// Every object id is replaced by this prefix and a number.
    std::optional<std::string> prefix;
    /// Whether kernel stores that the kernel judges insecure are restored all the same.
    bool insecure = false;
    /// Whether the scene may have a document type declaration, and with it entities and references to other documents.
    bool allowDtd = false;
    /// Whether a side file that is missing, short or another scene's makes the scene one that cannot be read; otherwise
    /// it is told, and what there is is read.
    bool strict = false;
    /// A scene whose reading would take more memory than so many bytes, by an estimate that is made beforehand, counts
    /// as one that cannot be read. What is then made of it comes on top.
    std::optional<std::uint64_t> maxMemory;
};

}  // namespace KVR

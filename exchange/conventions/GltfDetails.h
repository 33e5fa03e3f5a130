#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace KVR
{

/// What glTF says of a material beside its colours, as extension data of a style holds it: a JSON object with the names
/// of glTF as keys. What is not there is not set.
struct GltfMaterialDetails
{
    /// "OPAQUE", "MASK" or "BLEND".
    std::optional<std::string> alphaMode;
    /// From where on a masked surface is there.
    std::optional<double> alphaCutoff;
    std::optional<bool> doubleSided;
    /// Whether the colour is shown as it is, without any light (KHR_materials_unlit).
    std::optional<bool> unlit;

    /// Empty when nothing is set.
    std::string Text() const;
    /// A text that is no such object, and members that make no sense, set nothing.
    static GltfMaterialDetails Of(std::string_view text);
};

/// How glTF samples a texture, as extension data of the texture holds it; the same form.
struct GltfSamplerDetails
{
    /// Numbers as glTF has them: 10497 repeats, 33071 clamps, 33648 mirrors.
    std::optional<int> wrapS;
    std::optional<int> wrapT;
    /// 9728 for the nearest, 9729 for linear; the smaller filter also 9984 to 9987.
    std::optional<int> magFilter;
    std::optional<int> minFilter;

    bool operator==(GltfSamplerDetails const&) const = default;

    std::string Text() const;
    static GltfSamplerDetails Of(std::string_view text);
};

}  // namespace KVR

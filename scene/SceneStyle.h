#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace KVR
{

class IRenderStyle;

/// How surfaces, curves and points look, as far as formats of exchange have a place for it. Texts are UTF-8 and belong
/// to the scene. Colours are fractions of sRGB from 0 to 1.
struct SceneStyle
{
    std::string_view id;
    /// The style, which belongs to the producer; null for an id without one behind it.
    IRenderStyle const* object = nullptr;
    /// Empty when it has none, and for an id without a style behind it, of which nothing else is set either.
    std::string_view label;
    std::optional<std::array<double, 3>> diffuse;
    std::optional<std::array<double, 3>> emission;
    /// From 0 to 1, which is opaque.
    double opacity = 1.0;
    /// From 0 to 1, of the metallic-roughness model, where the style's extension data states them.
    std::optional<double> metallic;
    std::optional<double> roughness;
};

}  // namespace KVR

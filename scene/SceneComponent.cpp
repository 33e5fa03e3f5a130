#include "scene/SceneComponent.h"

#include <cmath>

namespace KVR
{

std::optional<double> NumberOf(SceneProperty const& property)
{
    if (auto const* const integer = std::get_if<int>(&property.value))
        return *integer;
    auto const* const number = std::get_if<double>(&property.value);
    return number && std::isfinite(*number) ? std::optional<double>(*number) : std::nullopt;
}

}  // namespace KVR

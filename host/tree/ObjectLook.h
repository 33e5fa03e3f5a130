#pragma once

#include <optional>
#include <string_view>

namespace KVR
{

class IObject;

/// What the tree says of an object that it does not enter.
struct ObjectLook
{
    /// The interface's name.
    std::string_view kind;
    /// Nothing for an object that cannot be hidden.
    std::optional<bool> isVisible = std::nullopt;
    /// Whether it is a body, a mesh or a curve, of which GeometryFacts tell more.
    bool hasGeometry = false;

    static ObjectLook Of(IObject& object);
};

}  // namespace KVR

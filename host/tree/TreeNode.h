#pragma once

#include <optional>
#include <string_view>
#include <vector>

namespace KVR
{

struct GeometryFacts;
struct SceneComponent;
struct StyleColor;

/// One line of the tree, as its writers get it: an object of the product structure, an instance together with what it
/// places. Everything in it is valid while the line is written.
struct TreeNode
{
    /// The interface's name; "missing" for an id without an object.
    std::string_view kind;
    std::string_view label;
    std::string_view id;
    /// Whether an object that can be hidden is shown.
    std::optional<bool> isVisible;
    bool isInstance = false;
    /// The file, assembly or part whose children stand beneath the node: of an instance, what it places; null for a
    /// node that has none.
    SceneComponent const* owner = nullptr;
    bool isLast = false;
    /// It would stand within itself, and is not entered.
    bool isCycle = false;
    /// Its owner lists it once more, and it is not entered again.
    bool isRepeated = false;
    /// The styles that it names; null when they are not to be shown.
    std::vector<StyleColor> const* styles = nullptr;
    /// What is to be said of its geometry; null for an object of another kind.
    GeometryFacts const* geometry = nullptr;
};

/// The interface's name of a component.
std::string_view KindOf(SceneComponent const& component) noexcept;

}  // namespace KVR

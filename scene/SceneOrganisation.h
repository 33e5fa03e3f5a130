#pragma once

#include <string_view>
#include <vector>

// How a scene is sorted. Texts are UTF-8 and valid while the scene lives; objects belong to the producer.
namespace KVR
{

class IObject;
struct SceneStyle;

/// A layer. Members are ids, of which nobody checks that they exist.
struct SceneLayer
{
    IObject* object = nullptr;
    std::string_view id;
    std::string_view label;
    std::string_view description;
    int number = 0;
    bool isVisible = true;
    /// The first of its styles; null for none.
    SceneStyle const* style = nullptr;
    std::vector<std::string_view> items;
};

/// A group. Members are ids, of which nobody checks that they exist.
struct SceneGroup
{
    IObject* object = nullptr;
    std::string_view id;
    std::string_view label;
    std::string_view description;
    std::vector<std::string_view> items;
};

/// A level of detail.
struct SceneLod
{
    IObject* object = nullptr;
    std::string_view id;
    std::string_view label;
    std::string_view description;
};

/// An object that a component declares.
struct SceneReference
{
    std::string_view id;
    /// Null when there is none behind the id.
    IObject* object = nullptr;
};

}  // namespace KVR

#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "scene/SceneComponent.h"

namespace KVR
{

class Scene;

/// The properties of components, each read when it is first asked for and then kept. The scene must outlive it.
class ComponentProperties
{
public:
    explicit ComponentProperties(Scene const& scene) : m_scene(scene) {}

    /// Of the database, custom ones, and what the file properties state, by the names of their operations. Valid while
    /// this lives.
    std::vector<SceneProperty> const& Of(SceneComponent const& component);

private:
    Scene const& m_scene;
    std::unordered_map<SceneComponent const*, std::vector<SceneProperty>> m_properties;
};

/// A property's value as text: numbers in as few digits as it takes, "true" or "false", a time as
/// YYYY-MM-DDThh:mm:ss; empty for no value.
std::string TextOf(SceneProperty const& property);

}  // namespace KVR

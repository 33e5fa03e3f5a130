#pragma once

#include <deque>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "scene/Scene.h"
#include "scene/reader/SceneText.h"

namespace KVR
{

class PropertyDatabase;

/// What a scene holds.
struct SceneContent
{
    SceneText text;
    std::vector<SceneComponent> components;
    std::size_t root = kNoIndex;
    UnitTypeEnum unit = kUnitType_Millimeter;
    double metresPerUnit = 1e-3;
    /// Styles and overrides are pointed at, and stay where they are.
    std::deque<SceneStyle> styles;
    std::unordered_map<std::string_view, SceneStyle const*> styleOf;
    std::deque<SceneOverride> overrides;
    std::vector<SceneLayer> layers;
    std::vector<SceneGroup> groups;
    std::vector<SceneLod> lods;
    std::vector<SceneReference> views;
    std::vector<SceneReference> cameras;
    std::array<double, 3> upVector{0.0, 0.0, 1.0};
    std::array<double, 3> surfaceColor{0.7, 0.7, 0.7};
    std::array<double, 3> curveColor{0.0, 0.0, 0.0};
    PropertyDatabase const* database = nullptr;
    std::vector<Scene::Cut> cuts;
    std::size_t filteredGeometry = 0;
};

}  // namespace KVR

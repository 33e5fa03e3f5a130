#pragma once

#include <string_view>
#include <unordered_map>

#include "exchange/view/ViewText.h"
#include "scene/Scene.h"

namespace KVR
{

/// The styles of a viewer file: all of the scene's, in its order.
class ViewStyles
{
public:
    /// The scene must outlive it.
    explicit ViewStyles(Scene const& scene);

    /// -1 for null.
    int IndexOf(SceneStyle const* style) const;
    /// -1 for an id that no style has.
    int IndexOf(std::string_view id) const { return IndexOf(m_scene.StyleOf(id)); }
    /// Sets the member "style" unless there is none.
    void Set(ViewJson& json, SceneStyle const* style) const;

    ViewJson Json() const;

private:
    Scene const& m_scene;
    std::unordered_map<SceneStyle const*, int> m_places;
};

}  // namespace KVR

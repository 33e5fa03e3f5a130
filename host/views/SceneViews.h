#pragma once

#include <vector>

#include "scene/SceneCamera.h"
#include "scene/SceneView.h"

namespace KVR
{

class IProducer;

/// The views and cameras of a scene.
struct SceneViews
{
    /// Those that the walk of a dump reaches from the root, in its order.
    static SceneViews Of(IProducer& producer, UTF8String const& rootId);

    std::vector<SceneView> views;
    std::vector<SceneCamera> cameras;
};

}  // namespace KVR

#pragma once

#include "framework/api/kvr_api.h"

namespace KVR::Test
{

// What a walk over a scene asks of layers, groups, levels of detail, cameras, views and feature overrides; the walk
// notes the answers.

template <class Walk>
void AskPosition(Walk& walk, Position const& position)
{
    walk.Tell("x", position.X());
    walk.Tell("y", position.Y());
    walk.Tell("z", position.Z());
}

template <class Walk>
void AskCamera(Walk& walk, ICamera const& camera)
{
    AskPosition(walk, camera.CameraPosition());
    for (auto const getter : {&ICamera::DistanceToViewPlane, &ICamera::AspectRatio, &ICamera::ViewAngle,
                              &ICamera::ViewWindowHeightForParallelCamera})
        walk.Ask("number", camera, getter);
}

template <class Walk>
void AskView(Walk& walk, IView const& view)
{
    walk.Tell("IsActive", view.IsActive());
    walk.Tell("CameraSet", view.CameraSet());
    for (unsigned long long i = 0; i < view.ViewMemberCount(); ++i)
    {
        walk.Tell("OccurrencePath", view.OccurrencePathAt(i));
        walk.Tell("EntityVisibility", view.EntityVisibilityAt(i));
        walk.Tell("EntityTransform", view.EntityTransformAt(i));
        walk.Tell("EntityStyles", view.EntityStylesAt(i));
    }
}

/// False for an object of another kind.
template <class Walk>
bool AskOrganisation(Walk& walk, IObject const& object)
{
    if (auto const* const camera = dynamic_cast<ICamera const*>(&object))
        AskCamera(walk, *camera);
    else if (auto const* const view = dynamic_cast<IView const*>(&object))
        AskView(walk, *view);
    else if (auto const* const layer = dynamic_cast<ILayer const*>(&object))
        walk.Tell("GeometryItems", layer->GeometryItems());
    else
        return dynamic_cast<IGroup const*>(&object) || dynamic_cast<ILod const*>(&object) ||
               dynamic_cast<IAssemblyFeatureOverride const*>(&object);
    return true;
}

}  // namespace KVR::Test

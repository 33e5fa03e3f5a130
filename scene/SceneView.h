#pragma once

#include <optional>
#include <vector>

#include "framework/api/Enums.h"
#include "framework/api/IdSet.h"
#include "framework/api/Matrix3d.h"
#include "framework/api/UTF16String.h"
#include "framework/api/UTF8String.h"
#include "scene/Export.h"

namespace KVR
{

class IView;

/// What a saved view says of one occurrence.
struct KVR_SCENE_API SceneViewMember
{
    /// Ids of instances, from the root down; the last one may be that of geometry.
    IdSet path;
    bool isVisible = true;
    /// Lengths in the view's unit.
    Matrix3d transform;
    IdSet styles;
};

/// A saved view.
struct KVR_SCENE_API SceneView
{
    /// Without the members, of which there may be many.
    static SceneView Of(IView const& view);
    /// The members in the view's order.
    static std::vector<SceneViewMember> MembersOf(IView const& view);

    UTF8String id;
    UTF16String label;
    bool isVisible = false;
    bool isActive = false;
    std::optional<UnitTypeEnum> lengthUnit;
    unsigned long long members = 0;
    unsigned long long hiddenMembers = 0;
    /// As the view names them; a camera of that id need not be there.
    IdSet cameras;
};

}  // namespace KVR

#include "scene/SceneView.h"

#include "framework/api/IView.h"
#include "scene/geometry/Answers.h"

namespace KVR
{

SceneView SceneView::Of(IView const& view)
{
    SceneView result;
    result.id = view.Id();
    result.label = view.Label();
    result.isVisible = view.IsVisible();
    result.isActive = view.IsActive();
    result.lengthUnit = Specified(view, &IView::LengthUnit);
    result.members = view.ViewMemberCount();
    for (unsigned long long i = 0; i < result.members; ++i)
        result.hiddenMembers += view.EntityVisibilityAt(i) ? 0 : 1;
    result.cameras = view.CameraSet();
    return result;
}

std::vector<SceneViewMember> SceneView::MembersOf(IView const& view)
{
    std::vector<SceneViewMember> members;
    unsigned long long const count = view.ViewMemberCount();
    for (unsigned long long i = 0; i < count; ++i)
        members.push_back(
            {view.OccurrencePathAt(i), view.EntityVisibilityAt(i), view.EntityTransformAt(i), view.EntityStylesAt(i)});
    return members;
}

}  // namespace KVR

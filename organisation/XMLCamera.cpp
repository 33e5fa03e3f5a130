#include "organisation/XMLCamera.h"

#include <utility>

namespace KVR
{

XMLCamera::XMLCamera(UTF8String id, UTF16String const& label) : ObjectState(std::move(id), label) {}
XMLCamera::~XMLCamera() = default;

IsValueSpecifiedEnum XMLCamera::LengthUnit(UnitTypeEnum& unit) const
{
    unit = state.lengthUnit;
    return kIsValueSpecified_Yes;
}

IsValueSpecifiedEnum XMLCamera::DistanceToViewPlane(double& distance) const
{
    return state.distanceToViewPlane.AnswerTo(distance);
}

IsValueSpecifiedEnum XMLCamera::AspectRatio(double& ratio) const
{
    return state.aspectRatio.AnswerTo(ratio);
}

IsValueSpecifiedEnum XMLCamera::ViewAngle(double& angle) const
{
    return state.viewAngle.AnswerTo(angle);
}

IsValueSpecifiedEnum XMLCamera::ViewWindowHeightForParallelCamera(double& height) const
{
    return state.viewWindowHeight.AnswerTo(height);
}

IsValueSpecifiedEnum XMLCamera::IsDepthFieldDefined(bool& defined) const
{
    return state.isDepthFieldDefined.AnswerTo(defined);
}

IsValueSpecifiedEnum XMLCamera::NearPlane(Plane& plane) const
{
    return state.nearPlane.AnswerTo(plane);
}

IsValueSpecifiedEnum XMLCamera::FarPlane(Plane& plane) const
{
    return state.farPlane.AnswerTo(plane);
}

}  // namespace KVR

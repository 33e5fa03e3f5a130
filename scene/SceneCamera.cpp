#include "scene/SceneCamera.h"

#include "scene/geometry/Answers.h"

namespace KVR
{

SceneCamera SceneCamera::Of(ICamera const& camera)
{
    SceneCamera result;
    result.id = camera.Id();
    result.label = camera.Label();
    result.type = camera.CameraType();
    result.lengthUnit = Specified(camera, &ICamera::LengthUnit);
    result.position = camera.CameraPosition();
    result.direction = camera.CameraDirection();
    result.upDirection = camera.CameraUpDirection();
    result.distanceToViewPlane = Specified(camera, &ICamera::DistanceToViewPlane);
    result.aspectRatio = Specified(camera, &ICamera::AspectRatio);
    result.viewAngle = Specified(camera, &ICamera::ViewAngle);
    result.windowHeight = Specified(camera, &ICamera::ViewWindowHeightForParallelCamera);
    result.nearPlane = Specified(camera, &ICamera::NearPlane);
    result.farPlane = Specified(camera, &ICamera::FarPlane);
    if (auto const* const sectionCamera = dynamic_cast<ISectionCamera const*>(&camera))
    {
        result.isSectionCamera = true;
        for (unsigned long long i = 0; i < sectionCamera->SectionPlaneCount(); ++i)
            result.sectionPlanes.push_back(sectionCamera->SectionPlaneAt(i));
        result.sectioningOperations = sectionCamera->SectioningOperations();
    }
    return result;
}

}  // namespace KVR

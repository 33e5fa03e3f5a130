#pragma once

#include <optional>
#include <vector>

#include "framework/api/ICamera.h"
#include "framework/api/UTF16String.h"
#include "framework/api/UTF8String.h"
#include "scene/Export.h"

namespace KVR
{

/// A camera, or a section camera. What the scene does not state is nothing.
struct KVR_SCENE_API SceneCamera
{
    /// What the camera answers, copied: nothing of it belongs to the producer. Throws what the camera throws.
    static SceneCamera Of(ICamera const& camera);

    UTF8String id;
    UTF16String label;
    bool isSectionCamera = false;
    ICamera::CameraTypeEnum type = ICamera::kCameraType_Parallel;
    /// Of all lengths here.
    std::optional<UnitTypeEnum> lengthUnit;
    Position position;
    UnitVector direction;
    UnitVector upDirection;
    std::optional<double> distanceToViewPlane;
    std::optional<double> aspectRatio;
    /// In radians.
    std::optional<double> viewAngle;
    /// Of a parallel camera.
    std::optional<double> windowHeight;
    std::optional<Plane> nearPlane;
    std::optional<Plane> farPlane;
    /// Of a section camera, and how they combine; empty when the scene does not say.
    std::vector<Plane> sectionPlanes;
    UTF8String sectioningOperations;
};

}  // namespace KVR

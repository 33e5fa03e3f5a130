#pragma once

#include <optional>
#include <vector>

#include "framework/api/ICamera.h"
#include "framework/api/IdSet.h"
#include "framework/api/UTF16String.h"
#include "framework/api/UTF8String.h"

namespace KVR
{

class IProducer;

/// What is told of a view.
struct ViewFacts
{
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

/// What is told of a camera, or of a section camera.
struct CameraFacts
{
    UTF8String id;
    UTF16String label;
    bool isSectionCamera = false;
    ICamera::CameraTypeEnum type = ICamera::kCameraType_Parallel;
    std::optional<UnitTypeEnum> lengthUnit;
    Position position;
    UnitVector direction;
    UnitVector upDirection;
    std::vector<Plane> sectionPlanes;
    UTF8String sectioningOperations;
};

/// The views and cameras of a scene.
struct SceneViews
{
    /// Those that the walk of a dump reaches from the root, in its order.
    static SceneViews Of(IProducer& producer, UTF8String const& rootId);

    std::vector<ViewFacts> views;
    std::vector<CameraFacts> cameras;
};

}  // namespace KVR

#pragma once

#include "framework/api/Enums.h"
#include "framework/api/ICamera.h"

namespace KVR
{

/// A value, and whether it is specified. The two are set apart: a value that does not convert is specified all the
/// same.
template <class T>
struct Specified
{
    T value{};
    bool isSpecified = false;

    /// Hands the value out when it is specified; otherwise the output is left alone.
    IsValueSpecifiedEnum AnswerTo(T& output) const
    {
        if (!isSpecified)
            return kIsValueSpecified_No;
        output = value;
        return kIsValueSpecified_Yes;
    }
};

/// What a camera answers. Lengths are in the length unit, angles in radians.
struct CameraState
{
    ICamera::CameraTypeEnum cameraType = ICamera::kCameraType_Parallel;
    UnitTypeEnum lengthUnit = kUnitType_Unknown;
    Position cameraPosition;
    UnitVector cameraDirection;
    UnitVector cameraUpDirection;
    Specified<double> distanceToViewPlane;
    Specified<double> aspectRatio;
    Specified<double> viewAngle;
    Specified<double> viewWindowHeight;
    Specified<bool> isDepthFieldDefined;
    Specified<Plane> nearPlane;
    Specified<Plane> farPlane;
};

}  // namespace KVR

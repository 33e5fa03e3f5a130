#pragma once

#include "framework/api/IObject.h"
#include "framework/api/Plane.h"
#include "framework/api/Position.h"
#include "framework/api/Vector.h"

namespace KVR
{

/// How to look at a scene. Lengths are in the camera's length unit, angles in radians.
class KVR_API ICamera : public IObject
{
public:
    enum CameraTypeEnum : int
    {
        kCameraType_Parallel = 0,
        kCameraType_Perspective = 1
    };

    ~ICamera() override;
    void AcceptVisitor(ObjectVisitor* visitor) override;
    virtual CameraTypeEnum CameraType() const = 0;
    virtual IsValueSpecifiedEnum LengthUnit(UnitTypeEnum& unit) const = 0;
    virtual Position CameraPosition() const = 0;
    virtual UnitVector CameraDirection() const = 0;
    virtual UnitVector CameraUpDirection() const = 0;
    virtual IsValueSpecifiedEnum DistanceToViewPlane(double& distance) const = 0;
    virtual IsValueSpecifiedEnum AspectRatio(double& ratio) const = 0;
    virtual IsValueSpecifiedEnum ViewAngle(double& angle) const = 0;
    virtual IsValueSpecifiedEnum ViewWindowHeightForParallelCamera(double& height) const = 0;
    virtual IsValueSpecifiedEnum IsDepthFieldDefined(bool& defined) const = 0;
    virtual IsValueSpecifiedEnum NearPlane(Plane& plane) const = 0;
    virtual IsValueSpecifiedEnum FarPlane(Plane& plane) const = 0;
};

/// A camera that cuts the scene with planes.
class KVR_API ISectionCamera : public ICamera
{
public:
    ~ISectionCamera() override;
    virtual unsigned long long SectionPlaneCount() const = 0;
    /// A bad index throws std::out_of_range.
    virtual Plane SectionPlaneAt(unsigned long long index) const = 0;
    /// How the planes combine; empty when the scene does not say.
    virtual UTF8String SectioningOperations() const = 0;
};

}  // namespace KVR

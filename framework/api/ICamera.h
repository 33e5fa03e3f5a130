#pragma once

#include "framework/api/IObject.h"
#include "framework/api/Plane.h"
#include "framework/api/Position.h"
#include "framework/api/Vector.h"

namespace KVR
{

/// How to look at a scene. Lengths are in the camera's length unit. A value that the scene states without its being a
/// number is 0 and specified.
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
    /// How the camera projects; parallel when the scene does not say, or says something else.
    virtual CameraTypeEnum CameraType() const = 0;
    /// The unit of the camera's lengths; always specified, kUnitType_Unknown when the scene does not say.
    virtual IsValueSpecifiedEnum LengthUnit(UnitTypeEnum& unit) const = 0;
    /// Where the eye is; the origin when the scene does not say.
    virtual Position CameraPosition() const = 0;
    /// The direction in which the camera looks, away from the eye, as the scene has it; the zero vector when it does
    /// not say.
    virtual UnitVector CameraDirection() const = 0;
    /// The direction that is up in the picture, as the scene has it; it need not stand square to CameraDirection. The
    /// zero vector when the scene does not say.
    virtual UnitVector CameraUpDirection() const = 0;
    /// The distance from the eye to the plane that is looked at, a length; not specified when the scene does not say.
    virtual IsValueSpecifiedEnum DistanceToViewPlane(double& distance) const = 0;
    /// The width of the picture by its height; not specified when the scene does not say.
    virtual IsValueSpecifiedEnum AspectRatio(double& ratio) const = 0;
    /// How wide a perspective camera sees; not specified when the scene does not say. The number is served as it
    /// stands. `kvr export` takes it for the whole vertical angle of view in radians, and `kvr import` writes none.
    virtual IsValueSpecifiedEnum ViewAngle(double& angle) const = 0;
    /// The height of what a parallel camera shows, a length; not specified when the scene does not say.
    virtual IsValueSpecifiedEnum ViewWindowHeightForParallelCamera(double& height) const = 0;
    /// Whether the camera has a depth of field; not specified when the scene does not say.
    virtual IsValueSpecifiedEnum IsDepthFieldDefined(bool& defined) const = 0;
    /// The plane in front of which nothing is shown; not specified when there is none.
    virtual IsValueSpecifiedEnum NearPlane(Plane& plane) const = 0;
    /// The plane behind which nothing is shown; not specified when there is none.
    virtual IsValueSpecifiedEnum FarPlane(Plane& plane) const = 0;
};

/// A camera that cuts the scene with planes.
class KVR_API ISectionCamera : public ICamera
{
public:
    ~ISectionCamera() override;
    /// The number of planes; 0 for a section camera without any.
    virtual unsigned long long SectionPlaneCount() const = 0;
    /// A plane that cuts, in the camera's length unit and in document order. A bad index throws std::out_of_range.
    virtual Plane SectionPlaneAt(unsigned long long index) const = 0;
    /// How the planes combine; empty when the scene does not say.
    virtual UTF8String SectioningOperations() const = 0;
};

}  // namespace KVR

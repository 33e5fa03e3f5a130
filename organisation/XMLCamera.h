#pragma once

#include "framework/xml_util/ObjectState.h"
#include "organisation/CameraState.h"

namespace KVR
{

/// A camera as an element of a "CameraSet" declares it. ReadCameraSet makes it.
class XMLCamera : public ObjectState<ICamera>
{
public:
    XMLCamera(UTF8String id, UTF16String const& label);
    ~XMLCamera() override;

    CameraTypeEnum CameraType() const override { return state.cameraType; }
    /// Specified always, also when no unit was read.
    IsValueSpecifiedEnum LengthUnit(UnitTypeEnum& unit) const override;
    Position CameraPosition() const override { return state.cameraPosition; }
    UnitVector CameraDirection() const override { return state.cameraDirection; }
    UnitVector CameraUpDirection() const override { return state.cameraUpDirection; }
    IsValueSpecifiedEnum DistanceToViewPlane(double& distance) const override;
    IsValueSpecifiedEnum AspectRatio(double& ratio) const override;
    IsValueSpecifiedEnum ViewAngle(double& angle) const override;
    IsValueSpecifiedEnum ViewWindowHeightForParallelCamera(double& height) const override;
    IsValueSpecifiedEnum IsDepthFieldDefined(bool& defined) const override;
    IsValueSpecifiedEnum NearPlane(Plane& plane) const override;
    IsValueSpecifiedEnum FarPlane(Plane& plane) const override;

    /// Written by the reader directly.
    CameraState state;
};

}  // namespace KVR

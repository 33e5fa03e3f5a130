#pragma once

#include <memory>
#include <vector>

#include "organisation/XMLCamera.h"

namespace KVR
{

/// A camera that cuts the scene with planes. It has an id, a label and planes of its own; what a camera answers it asks
/// of the camera that it holds.
class XMLSectionCamera : public ObjectState<ISectionCamera>
{
public:
    /// The camera must not be null.
    XMLSectionCamera(UTF8String id, UTF16String const& label, std::unique_ptr<XMLCamera> camera);
    ~XMLSectionCamera() override;

    CameraTypeEnum CameraType() const override { return m_camera->CameraType(); }
    IsValueSpecifiedEnum LengthUnit(UnitTypeEnum& unit) const override { return m_camera->LengthUnit(unit); }
    Position CameraPosition() const override { return m_camera->CameraPosition(); }
    UnitVector CameraDirection() const override { return m_camera->CameraDirection(); }
    UnitVector CameraUpDirection() const override { return m_camera->CameraUpDirection(); }
    IsValueSpecifiedEnum DistanceToViewPlane(double& distance) const override
    {
        return m_camera->DistanceToViewPlane(distance);
    }
    IsValueSpecifiedEnum AspectRatio(double& ratio) const override { return m_camera->AspectRatio(ratio); }
    IsValueSpecifiedEnum ViewAngle(double& angle) const override { return m_camera->ViewAngle(angle); }
    IsValueSpecifiedEnum ViewWindowHeightForParallelCamera(double& height) const override
    {
        return m_camera->ViewWindowHeightForParallelCamera(height);
    }
    IsValueSpecifiedEnum IsDepthFieldDefined(bool& defined) const override
    {
        return m_camera->IsDepthFieldDefined(defined);
    }
    IsValueSpecifiedEnum NearPlane(Plane& plane) const override { return m_camera->NearPlane(plane); }
    IsValueSpecifiedEnum FarPlane(Plane& plane) const override { return m_camera->FarPlane(plane); }
    unsigned long long SectionPlaneCount() const override { return m_sectionPlanes.size(); }
    Plane SectionPlaneAt(unsigned long long index) const override;
    UTF8String SectioningOperations() const override { return m_sectioningOperations; }

    void AddSectionPlane(Plane const& plane) { m_sectionPlanes.push_back(plane); }
    void SetSectioningOperations(UTF8String const& operations) { m_sectioningOperations = operations; }

    // These write into the camera inside: values, and then whether they are specified.

    void SetCameraType(CameraTypeEnum type) { m_camera->state.cameraType = type; }
    void SetLengthUnit(UnitTypeEnum unit) { m_camera->state.lengthUnit = unit; }
    void SetCameraPosition(Position const& position) { m_camera->state.cameraPosition = position; }
    void SetCameraDirection(UnitVector const& direction) { m_camera->state.cameraDirection = direction; }
    void SetCameraUpDirection(UnitVector const& direction) { m_camera->state.cameraUpDirection = direction; }
    void SetDistanceToViewPlane(double distance) { m_camera->state.distanceToViewPlane.value = distance; }
    void SetAspectRatio(double ratio) { m_camera->state.aspectRatio.value = ratio; }
    void SetViewAngle(double angle) { m_camera->state.viewAngle.value = angle; }
    void SetViewWindowHeightForParallelCamera(double height) { m_camera->state.viewWindowHeight.value = height; }
    void SetIsDepthFieldDefined(bool defined) { m_camera->state.isDepthFieldDefined.value = defined; }
    void SetNearPlane(Plane const& plane) { m_camera->state.nearPlane.value = plane; }
    void SetFarPlane(Plane const& plane) { m_camera->state.farPlane.value = plane; }
    void SetDistanceToViewPlaneSpecified(bool isSpecified)
    {
        m_camera->state.distanceToViewPlane.isSpecified = isSpecified;
    }
    void SetAspectRatioSpecified(bool isSpecified) { m_camera->state.aspectRatio.isSpecified = isSpecified; }
    void SetViewAngleSpecified(bool isSpecified) { m_camera->state.viewAngle.isSpecified = isSpecified; }
    void SetViewWindowHeightForParallelCameraSpecified(bool isSpecified)
    {
        m_camera->state.viewWindowHeight.isSpecified = isSpecified;
    }
    void SetIsDepthFieldDefinedSpecified(bool isSpecified)
    {
        m_camera->state.isDepthFieldDefined.isSpecified = isSpecified;
    }
    void SetNearPlaneSpecified(bool isSpecified) { m_camera->state.nearPlane.isSpecified = isSpecified; }
    void SetFarPlaneSpecified(bool isSpecified) { m_camera->state.farPlane.isSpecified = isSpecified; }

private:
    std::unique_ptr<XMLCamera> m_camera;
    std::vector<Plane> m_sectionPlanes;
    UTF8String m_sectioningOperations;
};

}  // namespace KVR

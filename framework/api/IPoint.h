#pragma once

#include "framework/api/IGeometry.h"

namespace KVR
{

class Color;

/// One point, in the object's length unit.
class KVR_API IPoint : public IGeometry
{
public:
    ~IPoint() override;
    void AcceptVisitor(ObjectVisitor* visitor) override;
    /// The first coordinate, before the transform; 0 when the scene does not say.
    virtual double X() const = 0;
    /// The second coordinate, before the transform; 0 when the scene does not say.
    virtual double Y() const = 0;
    /// The third coordinate, before the transform; 0 when the scene does not say.
    virtual double Z() const = 0;
    /// A colour of the point's own; not specified for every point of a scene.
    virtual IsValueSpecifiedEnum PointColor(Color& color) const = 0;
    /// The id of a style for the point's marker; empty for every point of a scene.
    virtual UTF8String MarkerStyleId() const = 0;
    /// The size in which to show the point; not specified for every point of a scene.
    virtual IsValueSpecifiedEnum PointSize(double& size) const = 0;
    /// Sets what Transform answers, from then on a copy of the matrix, or null for the identity. Former answers end.
    virtual void SetTransform(Matrix3d const& transform) = 0;
};

}  // namespace KVR

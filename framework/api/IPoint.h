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
    virtual double X() const = 0;
    virtual double Y() const = 0;
    virtual double Z() const = 0;
    /// A colour of the point's own.
    virtual IsValueSpecifiedEnum PointColor(Color& color) const = 0;
    /// The id of a style for the point's marker; empty when there is none.
    virtual UTF8String MarkerStyleId() const = 0;
    /// The size in which to show the point.
    virtual IsValueSpecifiedEnum PointSize(double& size) const = 0;
    /// Keeps a copy, and nothing for the identity.
    virtual void SetTransform(Matrix3d const& transform) = 0;
};

}  // namespace KVR

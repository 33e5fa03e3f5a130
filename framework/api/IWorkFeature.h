#pragma once

#include "framework/api/IGeometry.h"

namespace KVR
{

/// Construction geometry, in the object's length unit.
class KVR_API IWorkFeature : public IGeometry
{
public:
    ~IWorkFeature() override;
};

/// An axis: a line with a stretch of it to show.
class KVR_API IWorkAxis : public IWorkFeature
{
public:
    ~IWorkAxis() override;
    void AcceptVisitor(ObjectVisitor* visitor) override;
    /// Where the stretch to show begins, before the transform; zeros when the scene does not say.
    virtual void StartPoint(double& x, double& y, double& z) const = 0;
    /// The direction of the axis as the scene has it, neither normalised nor checked; zeros when it does not say.
    virtual void Axis(double& x, double& y, double& z) const = 0;
    /// Where the stretch to show ends, before the transform; zeros when the scene does not say.
    virtual void EndPoint(double& x, double& y, double& z) const = 0;
};

/// A plane with a piece of it to show.
class KVR_API IWorkPlane : public IWorkFeature
{
public:
    ~IWorkPlane() override;
    void AcceptVisitor(ObjectVisitor* visitor) override;
    /// A point of the plane, before the transform; zeros when the scene does not say.
    virtual void Origin(double& x, double& y, double& z) const = 0;
    /// The direction that stands on the plane as the scene has it, neither normalised nor checked; zeros when it does
    /// not say.
    virtual void Normal(double& x, double& y, double& z) const = 0;
    /// A direction in the plane as the scene has it; not specified when it is absent or zero.
    virtual IsValueSpecifiedEnum Reference(double& x, double& y, double& z) const = 0;
    /// The lowest and the highest corner of what to show, before the transform; not specified when the scene has none.
    /// A corner that it leaves out is zeros.
    virtual IsValueSpecifiedEnum DisplayRange(double& minX, double& minY, double& minZ, double& maxX, double& maxY,
                                              double& maxZ) const = 0;
};

/// A point of construction.
class KVR_API IWorkPoint : public IWorkFeature
{
public:
    ~IWorkPoint() override;
    void AcceptVisitor(ObjectVisitor* visitor) override;
    /// The point, before the transform; zeros when the scene does not say.
    virtual void Position(double& x, double& y, double& z) const = 0;
};

}  // namespace KVR

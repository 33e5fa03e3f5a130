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

class KVR_API IWorkAxis : public IWorkFeature
{
public:
    ~IWorkAxis() override;
    void AcceptVisitor(ObjectVisitor* visitor) override;
    virtual void StartPoint(double& x, double& y, double& z) const = 0;
    virtual void Axis(double& x, double& y, double& z) const = 0;
    virtual void EndPoint(double& x, double& y, double& z) const = 0;
};

class KVR_API IWorkPlane : public IWorkFeature
{
public:
    ~IWorkPlane() override;
    void AcceptVisitor(ObjectVisitor* visitor) override;
    virtual void Origin(double& x, double& y, double& z) const = 0;
    virtual void Normal(double& x, double& y, double& z) const = 0;
    virtual IsValueSpecifiedEnum Reference(double& x, double& y, double& z) const = 0;
    virtual IsValueSpecifiedEnum DisplayRange(double& minX, double& minY, double& minZ, double& maxX, double& maxY,
                                              double& maxZ) const = 0;
};

class KVR_API IWorkPoint : public IWorkFeature
{
public:
    ~IWorkPoint() override;
    void AcceptVisitor(ObjectVisitor* visitor) override;
    virtual void Position(double& x, double& y, double& z) const = 0;
};

}  // namespace KVR

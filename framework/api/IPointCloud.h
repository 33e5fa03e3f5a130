#pragma once

#include <cstddef>

#include "framework/api/IGeometry.h"

namespace KVR
{

/// Many points, in the object's length unit.
class KVR_API IPointCloud : public IGeometry
{
public:
    ~IPointCloud() override;
    void AcceptVisitor(ObjectVisitor* visitor) override;
    virtual std::size_t PointCount() const = 0;
    /// Leaves the outputs alone for an index at or beyond the count.
    virtual void Point(std::size_t index, double* x, double* y, double* z) const = 0;
    /// Keeps a copy, and nothing for the identity.
    virtual void SetTransform(Matrix3d const& transform) = 0;
};

}  // namespace KVR

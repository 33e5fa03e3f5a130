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
    /// The number of points; a trailing one without all three numbers does not count.
    virtual std::size_t PointCount() const = 0;
    /// A point, before the transform. An index at or beyond the count, and a coordinate that is no number, leave their
    /// outputs alone. No pointer may be null.
    virtual void Point(std::size_t index, double* x, double* y, double* z) const = 0;
    /// Sets what Transform answers, from then on a copy of the matrix, or null for the identity. Former answers end.
    virtual void SetTransform(Matrix3d const& transform) = 0;
};

}  // namespace KVR

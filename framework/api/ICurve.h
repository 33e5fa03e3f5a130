#pragma once

#include "framework/api/IGeometry.h"

namespace KVR
{

class curve;
class ICurveData;

namespace GMK
{
template <class T>
class gmk_array;
}

/// A free-standing curve: either curves of the geometry kernel or analytic curve data.
class KVR_API ICurve : public IGeometry, public ISubEntityStyles
{
public:
    ~ICurve() override;
    void AcceptVisitor(ObjectVisitor* visitor) override;
    /// The number of analytic curves: 1 for every curve of a scene. Kept: a curve of the kernel counts one as well,
    /// which is null.
    virtual unsigned long long CurveDataCount() const = 0;
    /// The data, owned by the curve; null for a curve of the kernel. A bad index throws std::out_of_range.
    virtual ICurveData* CurveDataAt(unsigned long long index) const = 0;
    /// The kernel's curves, owned by the curve; empty when it has none. A caller needs the kernel's header for the
    /// array.
    virtual GMK::gmk_array<curve*> KernelCurves() const = 0;
};

}  // namespace KVR

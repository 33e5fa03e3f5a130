#pragma once

#include "framework/api/IGeometry.h"
#include "framework/api/TypesafeId.h"

namespace KVR
{

/// A named bundle of geometry; sets nest.
class KVR_API IGeometricSet : public IGeometry
{
public:
    ~IGeometricSet() override;
    void AcceptVisitor(ObjectVisitor* visitor) override;
    /// The number of children, each id once.
    virtual unsigned long long ChildCount() const = 0;
    /// The child's id; empty when there is no object behind it. An index beyond the count throws GeneralException, the
    /// count itself std::out_of_range.
    virtual GeometricSetChildId ChildAt(unsigned long long index) const = 0;
};

}  // namespace KVR

#pragma once

#include "framework/api/Enums.h"
#include "framework/api/Export.h"
#include "framework/api/Position.h"
#include "framework/api/Vector.h"

namespace KVR
{

/// A plane by origin and normal, and perhaps a direction in it. The default plane has the default origin and normal.
class KVR_API Plane
{
public:
    Plane() = default;
    Plane(Position const& origin, UnitVector const& normal);
    Plane(Position const& origin, UnitVector const& normal, UnitVector const& reference);
    Plane(Plane const&) = default;
    Plane& operator=(Plane const&) = default;
    virtual ~Plane();

    /// The direction that stands on the plane, as it was given.
    virtual UnitVector Normal() const;
    /// A point of the plane, in the length unit of the object that answers it.
    virtual Position Origin() const;
    /// Not specified for a plane that was made without one; the output is then left alone.
    virtual IsValueSpecifiedEnum ReferenceDirection(UnitVector& direction) const;

private:
    Position m_origin;
    UnitVector m_normal;
    UnitVector m_reference;
    bool m_hasReference = false;
};

}  // namespace KVR

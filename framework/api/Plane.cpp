#include "framework/api/Plane.h"

namespace KVR
{

Plane::Plane(Position const& origin, UnitVector const& normal) : m_origin(origin), m_normal(normal) {}
Plane::Plane(Position const& origin, UnitVector const& normal, UnitVector const& reference)
    : m_origin(origin), m_normal(normal), m_reference(reference), m_hasReference(true)
{
}
Plane::~Plane() = default;

UnitVector Plane::Normal() const
{
    return m_normal;
}
Position Plane::Origin() const
{
    return m_origin;
}

IsValueSpecifiedEnum Plane::ReferenceDirection(UnitVector& direction) const
{
    if (!m_hasReference)
        return kIsValueSpecified_No;
    direction = m_reference;
    return kIsValueSpecified_Yes;
}

}  // namespace KVR

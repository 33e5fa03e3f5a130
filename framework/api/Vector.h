#pragma once

#include <array>

#include "framework/api/Export.h"

namespace KVR
{

/// A direction with a length; the zero vector until set.
class KVR_API Vector
{
public:
    Vector() = default;

    /// Sets all three components.
    void Set(double x, double y, double z) { m_components = {x, y, z}; }
    /// Component 0, 1 or 2; any other index throws std::out_of_range.
    double& operator[](unsigned long long index);
    double operator[](unsigned long long index) const;
    /// Whether no component's magnitude exceeds the tolerance.
    bool IsZero(double tolerance) const;

private:
    std::array<double, 3> m_components{};
};

/// A direction. What it is given it keeps: it is neither normalised nor checked, so that a reader of a scene gets the
/// numbers that the scene holds. The zero vector until set.
class KVR_API UnitVector : public Vector
{
public:
    UnitVector() = default;
    UnitVector(double x, double y, double z) { Set(x, y, z); }
};

}  // namespace KVR

#pragma once

#include "framework/api/Export.h"

namespace KVR
{

/// A point in space, in the length unit of the object that answers it; the origin until set.
class KVR_API Position
{
public:
    Position() = default;
    Position(double x, double y, double z) : m_x(x), m_y(y), m_z(z) {}

    /// Moves the point.
    void Set(double x, double y, double z)
    {
        m_x = x;
        m_y = y;
        m_z = z;
    }
    /// The first coordinate.
    double X() const { return m_x; }
    /// The second coordinate.
    double Y() const { return m_y; }
    /// The third coordinate.
    double Z() const { return m_z; }

private:
    double m_x = 0.0;
    double m_y = 0.0;
    double m_z = 0.0;
};

}  // namespace KVR

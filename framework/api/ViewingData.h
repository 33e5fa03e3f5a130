#pragma once

#include "framework/api/Vector.h"

namespace KVR
{

/// Which way is up and which way is front. Both are the zero vector until set, and are kept as given.
class ViewingData
{
public:
    /// Sets which way is up.
    void SetUpVector(double x, double y, double z) { m_up.Set(x, y, z); }
    /// Sets which way is front.
    void SetFrontVector(double x, double y, double z) { m_front.Set(x, y, z); }
    /// Which way is up; owned by this object.
    Vector const& UpVector() const { return m_up; }
    /// Which way is front; owned by this object.
    Vector const& FrontVector() const { return m_front; }

private:
    Vector m_up;
    Vector m_front;
};

/// The same two directions as a file's own properties state them.
class ViewData : public ViewingData
{
};

}  // namespace KVR

#pragma once

#include "framework/api/Vector.h"

namespace KVR
{

/// Which way is up and which way is front. Both are the zero vector until set, and are kept as given.
class ViewingData
{
public:
    void SetUpVector(double x, double y, double z) { m_up.Set(x, y, z); }
    void SetFrontVector(double x, double y, double z) { m_front.Set(x, y, z); }
    Vector const& UpVector() const { return m_up; }
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

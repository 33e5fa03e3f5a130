#pragma once

#include <cmath>
#include <cstdint>

#include "framework/api/Subscript.h"
#include "framework/xml_util/StoreCursor.h"

namespace KVR
{

/// Reads the count of a curve record's list and weighs it; 0 when the file has none. Throws std::length_error for one
/// whose low 32 bits are negative as a signed number, which is how lists of curves are reserved, and for one that the
/// file is too short for.
inline std::size_t ReadCurveCount(StoreCursor& store, std::size_t bytesInFile, std::size_t bytesInMemory)
{
    unsigned long long count = 0;
    store.Read(count);
    if (static_cast<std::int32_t>(static_cast<std::uint32_t>(count)) < 0)
        ThrowTooLong();
    store.Expect(count, bytesInFile, bytesInMemory);
    return static_cast<std::size_t>(count);
}

/// A vector of three that a record holds; what the file does not deliver stays as it was.
struct CurveVector
{
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;

    void ReadFrom(StoreCursor& store) { store.Read(x, y, z); }
    void Get(double& outX, double& outY, double& outZ) const
    {
        outX = x;
        outY = y;
        outZ = z;
    }
};

inline CurveVector operator+(CurveVector const& a, CurveVector const& b)
{
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
inline CurveVector operator-(CurveVector const& a, CurveVector const& b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
inline CurveVector operator*(double s, CurveVector const& a)
{
    return {s * a.x, s * a.y, s * a.z};
}
inline double Dot(CurveVector const& a, CurveVector const& b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
inline bool IsFinite(CurveVector const& a)
{
    return std::isfinite(Dot(a, a));
}
inline CurveVector Cross(CurveVector const& a, CurveVector const& b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

}  // namespace KVR

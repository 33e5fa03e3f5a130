#pragma once

#include <cstdint>
#include <cstdio>

namespace KVR
{

class ICurveData;
class StoreCursor;

/// Composites within composites are read to this many levels; one beyond is null, and its payload is not consumed.
inline constexpr unsigned kDeepestComposite = 1000;

/// Reads a curve record's payload at the file's position, which afterwards stands behind it. Null for a null file and,
/// with nothing consumed, for a kind that is none. The caller owns the result. Throws std::length_error for a count
/// that no list can hold.
ICurveData* CreateCurveData(std::FILE* store, std::uint32_t kind, bool swapBytes);

/// Whether records of a store's type are curves. It is asked of the table that makes them, so that what is taken for a
/// curve is always read to its end.
bool IsCurveKind(std::uint64_t type) noexcept;

/// The same through a cursor; `level` counts the composites around the record.
ICurveData* CreateCurveData(StoreCursor& store, std::uint32_t kind, unsigned level);

}  // namespace KVR

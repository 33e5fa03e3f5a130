#pragma once

#include <cstddef>
#include <vector>

#include "framework/api/Export.h"

namespace KVR
{

/// Throws std::out_of_range with the text "invalid vector<T> subscript", the answer of every indexed getter to a bad
/// index unless its own comment says otherwise.
[[noreturn]] KVR_API void ThrowInvalidSubscript();

/// Throws std::length_error with the text "vector<T> too long", the answer to a count that no list can hold.
[[noreturn]] KVR_API void ThrowTooLong();

/// The element at the index; an index at or beyond the size throws as above.
template <class T>
T const& CheckedAt(std::vector<T> const& list, unsigned long long index)
{
    if (index >= list.size())
        ThrowInvalidSubscript();
    return list[static_cast<std::size_t>(index)];
}

}  // namespace KVR

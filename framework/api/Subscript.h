#pragma once

#include <cstddef>

#include "framework/api/Export.h"

namespace KVR
{

/// Throws std::out_of_range with the text "invalid vector<T> subscript", the answer of every indexed getter to a bad
/// index unless its own comment says otherwise.
[[noreturn]] KVR_API void ThrowInvalidSubscript();

/// Throws std::length_error with the text "vector<T> too long", the answer to a count that no list can hold.
[[noreturn]] KVR_API void ThrowTooLong();

/// The element of a list, such as a vector or a span, at the index; an index at or beyond the size throws as above.
template <class List>
typename List::value_type const& CheckedAt(List const& list, unsigned long long index)
{
    if (index >= list.size())
        ThrowInvalidSubscript();
    return list[static_cast<std::size_t>(index)];
}

}  // namespace KVR

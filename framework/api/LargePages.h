#pragma once

#include <cstddef>

#include "framework/api/Export.h"

namespace KVR
{

/// What a large page of the system holds, in bytes.
inline constexpr std::size_t kLargePage = 2 * 1024 * 1024;

/// Asks the system to back a large, new piece of memory with large pages: filling it then costs a fraction of the page
/// faults. A hint alone, and none where the system knows no such thing. Throws nothing.
KVR_API void AdviseLargePages(void* memory, std::size_t size) noexcept;

/// Has the system back the whole pages of a new piece of memory at once, in small pages where nobody advised large
/// ones. For memory that is filled soon: each page that is touched first costs half as much again. No effect where the
/// system knows no such thing or has no memory left. Throws nothing.
KVR_API void PopulatePages(void* memory, std::size_t size) noexcept;

}  // namespace KVR

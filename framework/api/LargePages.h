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

}  // namespace KVR

#pragma once

namespace KVR::Test
{

// Instrumented code has larger frames and runs several times slower, and a quarantine holds on to freed memory.
#if defined(__SANITIZE_ADDRESS__)
inline constexpr bool kIsAddressSanitized = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
inline constexpr bool kIsAddressSanitized = true;
#else
inline constexpr bool kIsAddressSanitized = false;
#endif
#else
inline constexpr bool kIsAddressSanitized = false;
#endif

#if defined(__SANITIZE_THREAD__)
inline constexpr bool kIsThreadSanitized = true;
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
inline constexpr bool kIsThreadSanitized = true;
#else
inline constexpr bool kIsThreadSanitized = false;
#endif
#else
inline constexpr bool kIsThreadSanitized = false;
#endif

inline constexpr bool kIsSanitized = kIsAddressSanitized || kIsThreadSanitized;

}  // namespace KVR::Test

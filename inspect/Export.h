#pragma once

// Marks what the library kvr_inspect exports; everything else in it is hidden.
#if defined(_WIN32)
#if defined(KVR_INSPECT_BUILDING)
#define KVR_INSPECT_API __declspec(dllexport)
#else
#define KVR_INSPECT_API __declspec(dllimport)
#endif
#else
#define KVR_INSPECT_API __attribute__((visibility("default")))
#endif

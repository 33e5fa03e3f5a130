#pragma once

#if defined(_WIN32)
#if defined(KVR_KERNEL_BUILDING)
#define KVR_KERNEL_API __declspec(dllexport)
#else
#define KVR_KERNEL_API __declspec(dllimport)
#endif
#else
#define KVR_KERNEL_API __attribute__((visibility("default")))
#endif

#pragma once

#if defined(_WIN32)
#if defined(KVR_GMK_INTERFACE_BUILDING)
#define KVR_GMK_INTERFACE_API __declspec(dllexport)
#else
#define KVR_GMK_INTERFACE_API __declspec(dllimport)
#endif
#else
#define KVR_GMK_INTERFACE_API __attribute__((visibility("default")))
#endif

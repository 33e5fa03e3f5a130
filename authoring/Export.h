#pragma once

// Marks what the library kvr_authoring exports; everything else in it is hidden.
#if defined(_WIN32)
#if defined(KVR_AUTHORING_BUILDING)
#define KVR_AUTHORING_API __declspec(dllexport)
#else
#define KVR_AUTHORING_API __declspec(dllimport)
#endif
#else
#define KVR_AUTHORING_API __attribute__((visibility("default")))
#endif

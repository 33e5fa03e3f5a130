#pragma once

// Marks what the library kvr_scene exports; everything else in it is hidden.
#if defined(_WIN32)
#if defined(KVR_SCENE_BUILDING)
#define KVR_SCENE_API __declspec(dllexport)
#else
#define KVR_SCENE_API __declspec(dllimport)
#endif
#else
#define KVR_SCENE_API __attribute__((visibility("default")))
#endif

#pragma once

// Marks what the library kvr_exchange exports: its three operations, and nothing else.
#if defined(_WIN32)
#if defined(KVR_EXCHANGE_BUILDING)
#define KVR_EXCHANGE_API __declspec(dllexport)
#else
#define KVR_EXCHANGE_API __declspec(dllimport)
#endif
#else
#define KVR_EXCHANGE_API __attribute__((visibility("default")))
#endif

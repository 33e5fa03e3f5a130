#pragma once

// Marks what the library kvr_xml_util exports; everything else in it is hidden.
#if defined(_WIN32)
#if defined(KVR_XML_UTIL_BUILDING)
#define KVR_XML_UTIL_API __declspec(dllexport)
#else
#define KVR_XML_UTIL_API __declspec(dllimport)
#endif
#else
#define KVR_XML_UTIL_API __attribute__((visibility("default")))
#endif

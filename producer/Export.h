#pragma once

// Marks what the library kvr_xml_producer exports: XMLProducer and XMLProducerOptions, and nothing else.
#if defined(_WIN32)
#if defined(KVR_XML_PRODUCER_BUILDING)
#define KVR_XML_PRODUCER_API __declspec(dllexport)
#else
#define KVR_XML_PRODUCER_API __declspec(dllimport)
#endif
#else
#define KVR_XML_PRODUCER_API __attribute__((visibility("default")))
#endif

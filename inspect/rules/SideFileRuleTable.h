#pragma once

#include "inspect/Finding.h"

// The rules on side files, by their ids.
namespace KVR::SideFileRule
{

inline constexpr Rule kSectionOff{"K-0301", "section-off", "An info section is switched off, and its file not touched",
                                  Severity::kWarning};
inline constexpr Rule kNoPath{"K-0302", "section-without-path", "An info section names no file", Severity::kWarning};
inline constexpr Rule kMissing{"K-0303", "side-file-missing", "A side file is missing", Severity::kError};
inline constexpr Rule kUnreadable{"K-0304", "side-file-unreadable", "A side file gives nothing", Severity::kError};
inline constexpr Rule kShort{"K-0305", "side-file-short", "A side file is shorter than it says", Severity::kError};
inline constexpr Rule kInsecure{"K-0306", "store-insecure", "The digest of a kernel store is not that of its content",
                                Severity::kError};
inline constexpr Rule kSpareBytes{"K-0307", "spare-bytes", "Bytes of a store belong to none of its records",
                                  Severity::kWarning};
inline constexpr Rule kUnused{"K-0308", "record-unused", "No element takes a record of a store", Severity::kWarning};
inline constexpr Rule kNoRecord{"K-0309", "record-missing", "No store holds what an element dresses", Severity::kError};
inline constexpr Rule kRepeated{"K-0310", "record-repeated", "A record has the id of one before it, which stays",
                                Severity::kWarning};
inline constexpr Rule kNoMesh{"K-0311", "segments-without-mesh", "Segments name a mesh that no store in front holds",
                              Severity::kError};
inline constexpr Rule kUnknown{"K-0312", "record-unknown", "A record has no id, or a type that is none",
                               Severity::kError};
inline constexpr Rule kNoObject{"K-0313", "property-without-object", "A property names an object that there is not",
                                Severity::kWarning};
inline constexpr Rule kNoHolder{"K-0314", "property-without-holder",
                                "A property names an object that holds no properties", Severity::kWarning};
inline constexpr Rule kNoProperty{"K-0315", "property-unmade", "An element of the property file makes no property",
                                  Severity::kWarning};
inline constexpr Rule kAssetUnused{"K-0316", "asset-unused", "No style takes a material asset", Severity::kNote};
inline constexpr Rule kIdsUnused{"K-0317", "persistent-ids-unused", "No body takes persistent ids", Severity::kNote};
inline constexpr Rule kTextureUnused{"K-0318", "texture-unused", "No style uses a texture", Severity::kNote};
inline constexpr Rule kDigest{"K-0319", "side-file-changed",
                              "A side file is not the one that the scene was written with", Severity::kError};

}  // namespace KVR::SideFileRule

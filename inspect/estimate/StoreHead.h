#pragma once

#include <cstdint>
#include <cstdio>
#include <optional>
#include <string_view>

#include "framework/xml_util/InfoSections.h"
#include "inspect/estimate/SceneCensus.h"

namespace KVR
{

/// What kind of side file a section names.
SideFileCensus::Kind KindOf(InfoSection const& section);
/// The same of an element's name; nothing when it is no section's.
std::optional<SideFileCensus::Kind> KindOfSection(std::u16string_view element);

/// How many records the head of a store claims, from the beginning of the file on; nothing for a damaged head, and for
/// files that say no such thing. `isText` is set for kernel stores alone.
std::optional<std::uint64_t> RecordsInHead(std::FILE* file, SideFileCensus::Kind kind, bool& isText);

}  // namespace KVR

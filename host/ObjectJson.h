#pragma once

#include <string_view>

namespace KVR
{

class JsonWriter;

/// The members "Kind", "Label" and "Id" of an object that the caller opens and ends.
void WriteIdentity(JsonWriter& json, std::string_view kind, std::string_view label, std::string_view id);

}  // namespace KVR

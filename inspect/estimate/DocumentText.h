#pragma once

#include <string>
#include <string_view>

namespace KVR
{

/// The text of an attribute with its references resolved: those to characters, and to the five entities that every
/// document has. Any other stays as it stands.
std::string ResolvedReferences(std::string_view text);

}  // namespace KVR

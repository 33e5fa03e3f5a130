#include "framework/xml_util/XMLStyle.h"

namespace KVR
{

XMLStyle::XMLStyle(UTF8String const& id, UTF16String const& label) : ObjectState(id, label) {}
XMLStyle::~XMLStyle() = default;

}  // namespace KVR

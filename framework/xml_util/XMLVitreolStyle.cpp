#include "framework/xml_util/XMLVitreolStyle.h"

namespace KVR
{

XMLVitreolStyle::XMLVitreolStyle(UTF8String const& id, UTF16String const& label) : ObjectState(id, label) {}
XMLVitreolStyle::~XMLVitreolStyle() = default;

}  // namespace KVR

#include "framework/xml_util/XMLProperty.h"

#include <utility>

namespace KVR
{

XMLProperty::XMLProperty(UTF8String id, CustomProperty content) : m_id(std::move(id)), m_content(std::move(content)) {}
XMLProperty::~XMLProperty() = default;

}  // namespace KVR

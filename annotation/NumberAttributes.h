#pragma once

#include <optional>
#include <xercesc/dom/DOMNode.hpp>

#include "framework/xml_util/FormatNames.h"

namespace KVR
{

/// Takes the number of an attribute; one that is absent or does not convert leaves the value as it is.
void ReadDoubleAttribute(xercesc::DOMNode const* node, AttributeName name, std::optional<double>& value);
void ReadIntAttribute(xercesc::DOMNode const* node, AttributeName name, std::optional<int>& value);

}  // namespace KVR

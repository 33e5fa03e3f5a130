#pragma once

#include <xercesc/dom/DOMNode.hpp>

#include "framework/xml_util/ChangeKeyText.h"

namespace KVR
{

/// Keeps the text of a "ChangeKey" element. False, with the key left alone, for a null node or one of another name.
[[nodiscard]] bool ReadChangeKey(xercesc::DOMNode* node, ChangeKeyText& changeKey);

}  // namespace KVR

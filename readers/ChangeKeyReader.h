#pragma once

#include <xercesc/dom/DOMNode.hpp>

namespace KVR
{

/// Puts the text of a "ChangeKey" element into the slot. The text belongs to the document. False, with the slot left
/// alone, for a null node or one of another name.
[[nodiscard]] bool ReadChangeKey(xercesc::DOMNode* node, XMLCh const*& slot);

}  // namespace KVR

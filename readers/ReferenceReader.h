#pragma once

#include <xercesc/dom/DOMNode.hpp>

#include "framework/api/IdSet.h"

namespace KVR
{

class XMLProducerImpl;

/// Adds the ids of the "StyleRef" children of a "Styles" or "NetStyles" element, mapped, without repeats. Whether the
/// set holds anything afterwards; false for a null node or one of another name.
[[nodiscard]] bool ReadStyleRefs(XMLProducerImpl* producer, xercesc::DOMNode const* node, IdSet& styles);

/// The same for the "CameraRef" children of a "CameraSet" element.
[[nodiscard]] bool ReadCameraRefs(XMLProducerImpl* producer, xercesc::DOMNode const* node, IdSet& cameras);

/// Reads the "ID" of a "Child" element; an absent one is empty. Whether an object of that id is registered, and its own
/// id. Nothing is read on demand: an object whose turn comes later is not found.
[[nodiscard]] bool ReadChildRef(XMLProducerImpl* producer, xercesc::DOMNode const* node, UTF8String& id);

}  // namespace KVR

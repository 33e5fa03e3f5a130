#pragma once

#include <xercesc/dom/DOMNode.hpp>

#include "producer/SideFileIndex.h"
#include "readers/AttributeSetsState.h"

namespace KVR
{

class XMLProducerImpl;

/// Reads what an "AttributeSet" declares, but cameras and views, in document order. False for a null node.
[[nodiscard]] bool ReadObjectSets(XMLProducerImpl* producer, xercesc::DOMNode* node, AttributeSetIds& sets,
                                  VitreolAssets& vitreolAssets);

/// Reads all that an "AttributeSet" declares: cameras behind the other sets, and views last, wherever the document has
/// them, so that a view can name any camera of its owner. False for a null node.
[[nodiscard]] bool ReadObjectSetsWithViews(XMLProducerImpl* producer, xercesc::DOMNode* node, AttributeSetIds& sets,
                                           VitreolAssets& vitreolAssets);

}  // namespace KVR

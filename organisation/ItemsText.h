#pragma once

#include <xercesc/util/XercesDefs.hpp>

#include "framework/api/IdSet.h"

namespace KVR
{

class XMLProducerImpl;

/// Adds the ids of a text with commas between them, mapped, each once. Null counts as empty.
void AddItems(XMLProducerImpl& producer, XMLCh const* text, IdSet& items);

}  // namespace KVR

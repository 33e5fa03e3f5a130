#pragma once

// Builders for the rows of child sets, each for every kind of owner.

#include "framework/api/ObjectCollector.h"
#include "producer/XMLProducerImpl.h"
#include "readers/ReferenceReader.h"
#include "structure/ChildSet.h"

namespace KVR
{

/// "Child": a reference to an object that was read before. One that finds nothing adds nothing and is no failure.
template <class ChildIdT>
bool BuildChildRef(ChildContext const& context, xercesc::DOMNode* node, std::vector<ChildIdT>& children)
{
    UTF8String id;
    if (ReadChildRef(context.producer, node, id))
        children.push_back(ChildIdT::Create(context.producer->objectCollector->QueryObject(id)));
    return true;
}

}  // namespace KVR

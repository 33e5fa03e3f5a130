#pragma once

#include <memory>
#include <xercesc/dom/DOMNode.hpp>

#include "framework/api/ObjectCollector.h"
#include "producer/XMLProducerImpl.h"

namespace KVR
{

/// Makes an object, has it read its element, with what else its reader wants, and registers it. Null when the reader
/// failed: the object is gone then, while what it registered on the way stays.
template <class Object, class... Sources>
Object* ReadAndRegister(XMLProducerImpl* producer, xercesc::DOMNode* node, Sources&... sources)
{
    auto object = std::make_unique<Object>(producer);
    if (!object->ReadFromXML(node, sources...))
        return nullptr;
    Object* const registered = object.get();
    producer->objectCollector->AddObject(object.release());
    return registered;
}

}  // namespace KVR

#pragma once

#include <memory>
#include <utility>
#include <xercesc/dom/DOMNode.hpp>

#include "framework/api/ObjectCollector.h"
#include "framework/xml_util/ReadObserver.h"
#include "producer/XMLProducerImpl.h"

namespace KVR
{

/// Registers what was read from an element, and answers it; null has no effect.
template <class Object>
Object* Register(XMLProducerImpl& producer, xercesc::DOMNode const* node, std::unique_ptr<Object> object)
{
    Object* const registered = object.get();
    ReadObserver* const observer = registered ? Observer() : nullptr;
    bool const isSecond = observer && producer.objectCollector->HasObject(registered->Id());
    producer.objectCollector->AddObject(object.release());
    if (observer) [[unlikely]]
        observer->ObjectRegistered(node, *registered, isSecond);
    return registered;
}

/// Whether an object is registered under the id that the element has, so that the element makes none.
inline bool IsTaken(XMLProducerImpl const& producer, xercesc::DOMNode const* node, UTF8String const& id)
{
    bool const isTaken = producer.objectCollector->HasObject(id);
    if (isTaken)
        TellObserver(&ReadObserver::IdTaken, node, id);
    return isTaken;
}

/// Makes an object, has it read its element, with what else its reader wants, and registers it. Null when the reader
/// failed: the object is gone then, while what it registered on the way stays.
template <class Object, class... Sources>
Object* ReadAndRegister(XMLProducerImpl* producer, xercesc::DOMNode* node, Sources&... sources)
{
    auto object = std::make_unique<Object>(producer);
    if (object->ReadFromXML(node, sources...))
        return Register(*producer, node, std::move(object));
    TellObserver(&ReadObserver::ElementDropped, node, DropReason::kRefused);
    return nullptr;
}

}  // namespace KVR

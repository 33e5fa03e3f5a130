#pragma once

#include <memory>
#include <utility>
#include <xercesc/dom/DOMNode.hpp>

#include "framework/api/ObjectCollector.h"
#include "framework/xml_util/ReadObserver.h"
#include "producer/XMLProducerImpl.h"

namespace KVR
{

/// Registers an object that was read from an element, and tells an observer.
template <class Object>
KVR_ASIDE void RegisterTold(ReadObserver& observer, XMLProducerImpl& producer, xercesc::DOMNode const* node,
                            Object* object)
{
    bool const isSecond = producer.objectCollector->HasObject(object->Id());
    producer.objectCollector->AddObject(object);
    observer.ObjectRegistered(node, *object, isSecond);
}

/// Registers what was read from an element, and answers it; null has no effect.
template <class Object>
Object* Register(XMLProducerImpl& producer, xercesc::DOMNode const* node, std::unique_ptr<Object> object)
{
    Object* const registered = object.release();
    ReadObserver* const observer = registered ? Observer() : nullptr;
    if (observer) [[unlikely]]
        RegisterTold(*observer, producer, node, registered);
    else
        producer.objectCollector->AddObject(registered);
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

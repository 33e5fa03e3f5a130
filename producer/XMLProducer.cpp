#include "producer/XMLProducer.h"

#include "framework/api/FileProperties.h"
#include "framework/api/IdSet.h"
#include "producer/XMLProducerImpl.h"

namespace KVR
{

XMLProducer::XMLProducer(UTF16String const& path, XMLProducerOptions* options)
    : m_impl(std::make_unique<XMLProducerImpl>(path, options))
{
}

XMLProducer::~XMLProducer() = default;

FileQueryResult const* XMLProducer::QueryFile()
{
    return m_impl->QueryFile();
}
RootId XMLProducer::RootObjectId() const
{
    return m_impl->RootObjectId();
}
IUniverse const* XMLProducer::LoadUniverse()
{
    return m_impl->LoadUniverse();
}
IObject* XMLProducer::Load(UTF8String const& id)
{
    return m_impl->Load(id);
}
void XMLProducer::Dispose(UTF8String const& id)
{
    m_impl->Dispose(id);
}
void XMLProducer::EndProcess()
{
    m_impl->EndProcess();
}
void XMLProducer::SetNewObjectIdPrefix(UTF8String const& prefix)
{
    m_impl->SetNewObjectIdPrefix(prefix);
}

// The ids and the filter are ignored: the producer always reads the whole file.
void XMLProducer::BeginProcess(IdSet const&, FilterOptions const*, EventManager const* eventManager)
{
    m_impl->BeginProcess(eventManager);
}

}  // namespace KVR

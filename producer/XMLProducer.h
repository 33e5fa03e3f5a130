#pragma once

#include <memory>

#include "framework/api/IProducer.h"
#include "framework/api/UTF16String.h"
#include "producer/Export.h"

namespace KVR
{

class XMLProducerImpl;
class XMLProducerOptions;

/// Serves one scene file to a host. All objects are built before BeginProcess returns and are looked up by Load; every
/// pointer handed out is owned by the producer and valid until EndProcess or, for an object, its Dispose. One thread at
/// a time may use a producer. Several producers may be used on several threads when the host holds one
/// XMLPlatformUtils::Initialize of its own for as long as any of them lives; since Xerces-C counts those calls without
/// a lock, QueryFile, BeginProcess, EndProcess and the destructor of different producers need a lock of the host's.
class KVR_XML_PRODUCER_API XMLProducer : public IProducer
{
public:
    /// Opens nothing. `options` may be null; otherwise it must outlive the producer, which does not own it.
    XMLProducer(UTF16String const& path, XMLProducerOptions* options);
    /// Ends the process first.
    ~XMLProducer() override;

    /// Parses the file, once, and says what it is. An unfilled result when it cannot be parsed; never null, never an
    /// exception of the parser's.
    FileQueryResult const* QueryFile() override;
    /// The id of the root file. Throws GeneralException "Could not find the root object id." when there is none.
    RootId RootObjectId() const override;
    /// What belongs to the scene as a whole; null before BeginProcess or when the scene states nothing.
    IUniverse const* LoadUniverse() override;
    /// The object that reports this id; null for an unknown one and after EndProcess.
    IObject* Load(UTF8String const& id) override;
    /// Destroys the objects that report this id; nothing for an unknown one and after EndProcess.
    void Dispose(UTF8String const& id) override;
    /// Reads the whole scene. The ids and the filter are ignored; `eventManager` may be null and must live until the
    /// call returns. Throws FileException (code 0, with the file's name) when the file cannot be parsed or a blob that
    /// the scene names cannot be read, std::length_error for a count that no list can hold, std::bad_alloc. To be
    /// called once.
    void BeginProcess(IdSet const& ids, FilterOptions const* filter, EventManager const* eventManager) override;
    /// Releases everything; may be called in any state and more than once. A producer is not opened again.
    void EndProcess() override;

    /// Replaces every object id by the prefix and a number, from 1, in the order in which ids are met. To be called
    /// before BeginProcess.
    void SetNewObjectIdPrefix(UTF8String const& prefix);

private:
    std::unique_ptr<XMLProducerImpl> m_impl;
};

}  // namespace KVR

#pragma once

#include <memory>
#include <unordered_map>
#include <vector>
#include <xercesc/util/XercesDefs.hpp>

#include "framework/api/FileProperties.h"
#include "framework/api/IUniverse.h"
#include "framework/api/ObjectCollector.h"
#include "framework/api/TypesafeId.h"
#include "framework/api/UTF16String.h"
#include "framework/api/UTF8String.h"

XERCES_CPP_NAMESPACE_BEGIN
class XercesDOMParser;
XERCES_CPP_NAMESPACE_END

namespace KVR
{

class EventManager;
class HISTORY_STREAM;
class ObjectNodeIndex;
class SideFileIndex;
class XMLFileQueryResult;
class XMLProducerOptions;
class XMLUniverse;

/// The state of one producer, and the services that it offers to the element readers. Every object of the scene keeps a
/// pointer to it, and it outlives them all.
class XMLProducerImpl
{
public:
    XMLProducerImpl(UTF16String const& path, XMLProducerOptions* producerOptions);
    ~XMLProducerImpl();
    XMLProducerImpl(XMLProducerImpl const&) = delete;
    XMLProducerImpl& operator=(XMLProducerImpl const&) = delete;

    // The lifecycle, as XMLProducer documents it.

    FileQueryResult const* QueryFile();
    RootId RootObjectId() const;
    IUniverse const* LoadUniverse() const;
    IObject* Load(UTF8String const& id) const;
    void Dispose(UTF8String const& id);
    void BeginProcess(EventManager const* manager);
    void EndProcess();
    void SetNewObjectIdPrefix(UTF8String const& prefix);

    // Services for readers.

    /// Whether ids are mapped.
    bool HasNewObjectIdPrefix() const noexcept { return m_objectIdMap != nullptr; }
    /// The new id of an id of the document: the one it got before, or the prefix and the next number. False, with the
    /// output left alone, when ids are not mapped.
    bool MapObjectId(UTF8String const& id, UTF8String& mapped);
    /// Replaces the id by its new one when ids are mapped.
    void ApplyIdMapping(UTF8String& id);
    /// Whether an object is registered under an id of the document, which in `mapped` becomes the object's own id. An
    /// id that was never mapped while ids are mapped gives false.
    bool QueryMappedObject(UTF8String const& id, UTF8String& mapped) const;

    /// The kernel history stream that the scene's bodies and curves belong to, made when it is first asked for; owned.
    HISTORY_STREAM* GetHistoryStream();

    UTF16String const& FileName() const noexcept { return m_fileName; }

    /// Null when no root was found.
    std::unique_ptr<RootId> rootId;
    /// Null after the end.
    std::unique_ptr<ObjectCollector> objectCollector;
    /// The host's; may be null.
    XMLProducerOptions* const options;
    std::unique_ptr<ObjectNodeIndex> objectNodeIndex;
    std::unique_ptr<SideFileIndex> sideFileIndex;
    std::unique_ptr<IUniverse> universe;
    /// Universes that a later element replaced: a host may hold a pointer to one, so they live as long as the process.
    std::vector<std::unique_ptr<IUniverse>> formerUniverses;
    /// The host's; may be null.
    EventManager const* eventManager = nullptr;

private:
    using IdMap = std::unordered_map<UTF8String, UTF8String>;

    struct EndHistoryStream
    {
        void operator()(HISTORY_STREAM* stream) const noexcept;
    };

    bool OpenDocument();
    /// Gives the memory of the document back: objects hold nothing of it.
    void ReleaseDocument();

    UTF16String m_fileName;
    /// Also when the document was released, to be parsed again by whoever needs it.
    bool m_isParsed = false;
    unsigned int m_newObjectIdCounter = 0;
    UTF8String m_newObjectIdPrefix;
    std::unique_ptr<IdMap> m_objectIdMap;
    std::unique_ptr<HISTORY_STREAM, EndHistoryStream> m_historyStream;
    /// Null when the document was released.
    std::unique_ptr<xercesc::XercesDOMParser> m_parser;
    std::unique_ptr<XMLFileQueryResult> m_queryResult;
};

}  // namespace KVR

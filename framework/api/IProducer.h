#pragma once

#include "framework/api/Export.h"
#include "framework/api/TypesafeId.h"

namespace KVR
{

class EventManager;
class FileQueryResult;
class FilterOptions;
class IdSet;
class IUniverse;

/// Serves one scene, object by object, to a host. What each operation does stands with the class that derives from it.
class KVR_API IProducer
{
public:
    virtual ~IProducer();
    /// What the file is, owned by the producer; never null, and unfilled for a file that cannot be parsed. Throws
    /// nothing of its own.
    virtual FileQueryResult const* QueryFile() = 0;
    /// The id of the root file; throws GeneralException when there is none.
    virtual RootId RootObjectId() const = 0;
    /// What belongs to the scene as a whole, owned by the producer; null when the scene states nothing or nothing was
    /// read.
    virtual IUniverse const* LoadUniverse() = 0;
    /// The object of that id, owned by the producer; null for an unknown one and after EndProcess.
    virtual IObject* Load(UTF8String const& id) = 0;
    /// A hint that the host needs an object no longer; has no effect here.
    virtual void Unload(UTF8String const& id);
    /// Destroys the objects of that id for good; an unknown one has no effect.
    virtual void Dispose(UTF8String const& id) = 0;
    /// Reads the scene; to be called once, before any Load. Throws FileException when the file cannot be read.
    virtual void BeginProcess(IdSet const& ids, FilterOptions const* filter, EventManager const* eventManager) = 0;
    /// Ends all objects and what they answered; may be called in any state and more than once.
    virtual void EndProcess() = 0;

    IProducer(IProducer const&) = delete;
    IProducer& operator=(IProducer const&) = delete;

protected:
    IProducer();
};

}  // namespace KVR

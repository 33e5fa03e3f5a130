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
    virtual FileQueryResult const* QueryFile() = 0;
    virtual RootId RootObjectId() const = 0;
    virtual IUniverse const* LoadUniverse() = 0;
    virtual IObject* Load(UTF8String const& id) = 0;
    /// A hint that the host needs an object no longer; has no effect here.
    virtual void Unload(UTF8String const& id);
    virtual void Dispose(UTF8String const& id) = 0;
    virtual void BeginProcess(IdSet const& ids, FilterOptions const* filter, EventManager const* eventManager) = 0;
    virtual void EndProcess() = 0;

    IProducer(IProducer const&) = delete;
    IProducer& operator=(IProducer const&) = delete;

protected:
    IProducer();
};

}  // namespace KVR

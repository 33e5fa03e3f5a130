#pragma once

#include "framework/api/Enums.h"
#include "framework/api/Export.h"
#include "framework/api/IdSet.h"
#include "framework/api/UTF16String.h"
#include "framework/api/UTF8String.h"

namespace KVR
{

class ExtensionDataContent;
class ObjectVisitor;

/// An object of a scene that can be found by its id. Getters return copies that the caller owns, and throw only
/// std::bad_alloc unless they say otherwise; a getter with an output reference leaves it alone when it answers "not
/// specified".
class KVR_API IObject
{
public:
    virtual ~IObject();
    /// Calls the visitor's Visit for the object's interface; null has no effect.
    virtual void AcceptVisitor(ObjectVisitor* visitor) = 0;
    /// The id by which the producer loads the object; empty for an element without one.
    virtual UTF8String Id() const = 0;
    /// The name to show; empty when there is none.
    virtual UTF16String Label() const = 0;
    /// Whether several threads may ask the object at once; false unless a class says otherwise.
    virtual bool IsThreadSafe() const;
    /// The extension data of that type, as a copy; of several contents the first. Not specified for a type that the
    /// object has no data of, and here.
    virtual IsValueSpecifiedEnum ExtensionDataByTypeId(UTF8String const& typeId, ExtensionDataContent& content) const;
    /// A change key of the extension data of that type. Not specified here, and no object of this producer says
    /// otherwise.
    virtual IsValueSpecifiedEnum ExtensionDataChangeKeyByTypeId(UTF8String const& typeId, SnapshotVersionEnum version,
                                                                UTF8String& changeKey) const;
    /// A text that changes when the object does, whatever the version asked for; not specified when the scene gives
    /// none.
    virtual IsValueSpecifiedEnum ChangeKey(SnapshotVersionEnum version, UTF8String& changeKey) const = 0;
    /// An id that stays the object's over versions of the scene; not specified when it is absent or empty.
    virtual IsValueSpecifiedEnum VersionPersistentId(UTF8String& id) const = 0;
    /// The ids of the object's properties, for PropertyDatabase::PropertyAt; empty here.
    virtual IdSet PropertyIds() const;

    IObject(IObject const&) = delete;
    IObject& operator=(IObject const&) = delete;

protected:
    IObject();
};

}  // namespace KVR

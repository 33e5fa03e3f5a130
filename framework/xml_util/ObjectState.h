#pragma once

#include "framework/xml_util/XMLObject.h"

namespace KVR
{

/// An object interface with the shared state behind it, in that order of bases, and the operations of IObject that the
/// state answers.
template <class Interface>
class ObjectState : public Interface, public XMLObject
{
public:
    ObjectState(UTF8String id, UTF16String const& label) : XMLObject(std::move(id), label) {}
    ObjectState(UTF8String id, UTF8String label) : XMLObject(std::move(id), std::move(label)) {}

    UTF8String Id() const override { return Id_Impl(); }
    UTF16String Label() const override { return Label_Impl(); }
    IsValueSpecifiedEnum ExtensionDataByTypeId(UTF8String const& typeId, ExtensionDataContent& content) const override
    {
        return ExtensionDataByTypeId_Impl(typeId, content);
    }
    IsValueSpecifiedEnum ChangeKey(SnapshotVersionEnum version, UTF8String& changeKey) const override
    {
        return ChangeKey_Impl(version, changeKey);
    }
    IsValueSpecifiedEnum VersionPersistentId(UTF8String& id) const override { return VersionPersistentId_Impl(id); }
    IdSet PropertyIds() const override { return m_propertyIds; }
};

}  // namespace KVR

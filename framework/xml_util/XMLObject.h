#pragma once

#include <utility>
#include <vector>

#include "framework/api/Enums.h"
#include "framework/api/ExtensionDataContent.h"
#include "framework/api/IdSet.h"
#include "framework/api/UTF16String.h"
#include "framework/api/UTF8String.h"
#include "framework/xml_util/ChangeKeyText.h"
#include "framework/xml_util/Export.h"

namespace KVR
{

/// The state that most objects of a scene share. Readers write the fields directly.
class KVR_XML_UTIL_API XMLObject
{
public:
    XMLObject(UTF8String id, UTF16String const& label);
    XMLObject(UTF8String id, UTF8String label);
    virtual ~XMLObject();
    XMLObject(XMLObject const&) = delete;
    XMLObject& operator=(XMLObject const&) = delete;

    /// Appends the contents, moved out of the vector in the second form.
    void AddExtensionDataContent(ExtensionDataContent const& content);
    void AddExtensionDataContent(std::vector<ExtensionDataContent>& contents);

    /// Replaces the text by which hosts tell whether the object has changed.
    void SetChangeKey(ChangeKeyText changeKey) noexcept { m_changeKey = std::move(changeKey); }
    /// Sets the id that stays the object's over versions of the scene; the empty one counts as none.
    void SetVersionPersistentId(UTF8String const& id) { m_versionPersistentId = id; }

protected:
    UTF8String Id_Impl() const { return m_id; }
    UTF16String Label_Impl() const { return UTF16String(m_label); }
    /// The first content of that type among those added; not specified when there is none.
    IsValueSpecifiedEnum ExtensionDataByTypeId_Impl(UTF8String const& typeId, ExtensionDataContent& content) const;
    /// Not specified for an empty id.
    virtual IsValueSpecifiedEnum VersionPersistentId_Impl(UTF8String& id) const;
    /// Not specified without a change key, whatever the version.
    virtual IsValueSpecifiedEnum ChangeKey_Impl(SnapshotVersionEnum version, UTF8String& changeKey) const;

    ChangeKeyText m_changeKey;
    UTF8String m_id;
    // In this form most labels need no memory of their own.
    UTF8String m_label;
    UTF8String m_versionPersistentId;
    IdSet m_propertyIds;

private:
    std::vector<ExtensionDataContent> m_extensionData;
};

}  // namespace KVR

#include "framework/xml_util/XMLObject.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace KVR
{

XMLObject::XMLObject(UTF8String id, UTF16String const& label) : m_id(std::move(id)), m_label(label) {}
XMLObject::XMLObject(UTF8String id, UTF8String label) : m_id(std::move(id)), m_label(std::move(label)) {}
XMLObject::~XMLObject() = default;

void XMLObject::AddExtensionDataContent(ExtensionDataContent const& content)
{
    m_extensionData.push_back(content);
}

void XMLObject::AddExtensionDataContent(std::vector<ExtensionDataContent>& contents)
{
    std::move(contents.begin(), contents.end(), std::back_inserter(m_extensionData));
    contents.clear();
}

IsValueSpecifiedEnum XMLObject::ExtensionDataByTypeId_Impl(UTF8String const& typeId,
                                                           ExtensionDataContent& content) const
{
    auto const found = std::find_if(m_extensionData.begin(), m_extensionData.end(),
                                    [&](ExtensionDataContent const& held) { return held.TypeId() == typeId; });
    if (found == m_extensionData.end())
        return kIsValueSpecified_No;
    content = *found;
    return kIsValueSpecified_Yes;
}

IsValueSpecifiedEnum XMLObject::VersionPersistentId_Impl(UTF8String& id) const
{
    if (m_versionPersistentId.IsEmpty())
        return kIsValueSpecified_No;
    id = m_versionPersistentId;
    return kIsValueSpecified_Yes;
}

IsValueSpecifiedEnum XMLObject::ChangeKey_Impl(SnapshotVersionEnum, UTF8String& changeKey) const
{
    return m_changeKey.Text(changeKey);
}

}  // namespace KVR

#include "framework/xml_util/PropertyReader.h"

#include <vector>

#include "framework/api/IProperty.h"
#include "framework/xml_util/PropertyStream.h"

namespace KVR
{

class PropertyReader::Content final : public PropertyReceiver
{
public:
    struct Entry
    {
        // Null for an element that makes no property; it is counted all the same.
        IProperty* property = nullptr;
        UTF8String objectId;
    };

    ~Content() override
    {
        for (Entry const& entry : entries)
        {
            if (entry.property)
                entry.property->Release();
        }
    }

    void Receive(IProperty* property, UTF8String const& objectId) override
    {
        entries.push_back({property, objectId});
        if (property)
            property->Retain();
    }

    std::vector<Entry> entries;
};

PropertyReader::PropertyReader(UTF16String const& sceneFilePath) : m_content(std::make_unique<Content>())
{
    StreamProperties(sceneFilePath, *m_content);
}

PropertyReader::~PropertyReader() = default;

unsigned long long PropertyReader::PropertyCount() const noexcept
{
    return m_content->entries.size();
}

bool PropertyReader::PropertyAndObjectIdAt(unsigned long long index, IProperty*& property, UTF8String& objectId) const
{
    if (index >= m_content->entries.size() || !m_content->entries[index].property)
        return false;
    property = m_content->entries[index].property;
    objectId = m_content->entries[index].objectId;
    return true;
}

}  // namespace KVR

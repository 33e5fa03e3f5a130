#include "framework/xml_util/PropertyReader.h"

#include <utility>
#include <vector>
#include <xercesc/sax2/Attributes.hpp>
#include <xercesc/sax2/DefaultHandler.hpp>

#include "framework/api/StringUtil.h"
#include "framework/api/Time.h"
#include "framework/xml_util/DomWalk.h"
#include "framework/xml_util/PropertyTypeText.h"
#include "framework/xml_util/SideFileParser.h"
#include "framework/xml_util/SideFilePath.h"
#include "framework/xml_util/TextConstants.h"
#include "framework/xml_util/XMLProperty.h"
#include "framework/xml_util/XMLStrUtil.h"

namespace KVR
{

namespace
{

// Makes the value from its text. Unlike a file's own custom properties, one whose number does not convert is refused.
bool ReadValue(PropertyTypeEnum type, UTF16String const& name, XMLCh const* text, CustomProperty& property)
{
    switch (type)
    {
        case kPropertyType_Int:
        {
            int value = 0;
            if (StringUtil::ToInt(XMLStrUtil::XMLStrToAStr(text), value, 10) != StringUtil::kConversionStatus_Success)
                return false;
            property.SetProperty(name, value);
            return true;
        }
        case kPropertyType_Double:
        {
            double value = 0.0;
            if (!XMLStrUtil::XMLStrToDouble(text, value))
                return false;
            property.SetProperty(name, value);
            return true;
        }
        case kPropertyType_Bool:
            property.SetProperty(name, Equals(text, u"True"));
            return true;
        case kPropertyType_Time:
        {
            Time time;
            if (!Time::FromString(XMLStrUtil::XMLStrToAStr(text), time))
                return false;
            property.SetProperty(name, time.Value());
            return true;
        }
        case kPropertyType_String:
            break;
    }
    property.SetProperty(name, XMLStrUtil::XMLStrToWStr(text));
    return true;
}

}  // namespace

class PropertyReader::Content final : public xercesc::DefaultHandler
{
public:
    struct Entry
    {
        // Null for an element that makes no property; it is counted all the same.
        XMLProperty* property = nullptr;
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

    void startElement(XMLCh const*, XMLCh const*, XMLCh const* name, xercesc::Attributes const& attributes) override
    {
        if (m_depth++ == 1 && Equals(name, u"Property"))
        {
            entries.emplace_back();
            Read(attributes, entries.back());
        }
    }

    void endElement(XMLCh const*, XMLCh const*, XMLCh const*) override { --m_depth; }

    std::vector<Entry> entries;

private:
    static void Read(xercesc::Attributes const& attributes, Entry& entry)
    {
        XMLCh const* const id = attributes.getValue(u"ID");
        XMLCh const* const objectId = attributes.getValue(u"ObjectID");
        if (!id || !objectId)
            return;
        PropertyTypeEnum type = kPropertyType_String;
        static_cast<void>(PropertyTypeFromText(attributes.getValue(u"Type"), type));
        CustomProperty content;
        UTF16String const name = XMLStrUtil::XMLStrToWStr(attributes.getValue(u"Name"));
        if (!ReadValue(type, name, attributes.getValue(u"Value"), content))
            return;
        entry.objectId = XMLStrUtil::XMLStrToAStr(objectId);
        entry.property = new XMLProperty(XMLStrUtil::XMLStrToAStr(id), std::move(content));
    }

    unsigned long long m_depth = 0;
};

PropertyReader::PropertyReader(UTF16String const& sceneFilePath) : m_content(std::make_unique<Content>())
{
    // The result is not needed: what stood before an error counts.
    static_cast<void>(ParseSideFile(ReplaceExtension(sceneFilePath, UTF16String(kPropertyFileExtension)), *m_content));
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

#include "framework/xml_util/PropertyStream.h"

#include <memory>
#include <utility>
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

// The property of an element; null for one that makes none.
XMLProperty* MakeProperty(xercesc::Attributes const& attributes)
{
    XMLCh const* const id = attributes.getValue(u"ID");
    if (!id || !attributes.getValue(u"ObjectID"))
        return nullptr;
    PropertyTypeEnum type = kPropertyType_String;
    static_cast<void>(PropertyTypeFromText(attributes.getValue(u"Type"), type));
    CustomProperty content;
    UTF16String const name = XMLStrUtil::XMLStrToWStr(attributes.getValue(u"Name"));
    if (!ReadValue(type, name, attributes.getValue(u"Value"), content))
        return nullptr;
    return new XMLProperty(XMLStrUtil::XMLStrToAStr(id), std::move(content));
}

struct Release
{
    void operator()(IProperty const* property) const noexcept { property->Release(); }
};

class Handler final : public xercesc::DefaultHandler
{
public:
    explicit Handler(PropertyReceiver& receiver) : m_receiver(receiver) {}

    void startElement(XMLCh const*, XMLCh const*, XMLCh const* name, xercesc::Attributes const& attributes) override
    {
        if (m_depth++ != 1 || !Equals(name, u"Property"))
            return;
        std::unique_ptr<IProperty, Release> const property(MakeProperty(attributes));
        m_receiver.Receive(property.get(),
                           property ? XMLStrUtil::XMLStrToAStr(attributes.getValue(u"ObjectID")) : UTF8String());
    }

    void endElement(XMLCh const*, XMLCh const*, XMLCh const*) override { --m_depth; }

private:
    PropertyReceiver& m_receiver;
    unsigned long long m_depth = 0;
};

}  // namespace

void StreamProperties(UTF16String const& sceneFilePath, PropertyReceiver& receiver)
{
    Handler handler(receiver);
    // The result is not needed: what stood before an error counts.
    static_cast<void>(ParseSideFile(ReplaceExtension(sceneFilePath, UTF16String(kPropertyFileExtension)), handler));
}

}  // namespace KVR

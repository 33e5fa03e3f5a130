#include "framework/xml_util/PropertyStream.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <xercesc/sax/Locator.hpp>

#include "framework/api/StringUtil.h"
#include "framework/api/Time.h"
#include "framework/api/Unicode.h"
#include "framework/xml_util/DomWalk.h"
#include "framework/xml_util/EnumTexts.h"
#include "framework/xml_util/FormatNames.h"
#include "framework/xml_util/SideFileParser.h"
#include "framework/xml_util/SideFilePath.h"
#include "framework/xml_util/XMLProperty.h"
#include "framework/xml_util/XMLStrUtil.h"

namespace KVR
{

namespace
{

// Makes the value from its text; a text stays as it is. Unlike a file's own custom properties, one whose number does
// not convert is refused.
bool ReadValue(PropertyTypeEnum type, XMLCh const* text, XMLProperty::ValueOf& held)
{
    switch (type)
    {
        case kPropertyType_Int:
        {
            int value = 0;
            if (StringUtil::ToInt(XMLStrUtil::XMLStrToAStr(text), value, 10) != StringUtil::kConversionStatus_Success)
                return false;
            held = value;
            return true;
        }
        case kPropertyType_Double:
        {
            double value = 0.0;
            if (!XMLStrUtil::XMLStrToDouble(text, value))
                return false;
            held = value;
            return true;
        }
        case kPropertyType_Bool:
            held = ToldBoolean(text, [](XMLCh const* word) { return Equals(word, u"True"); });
            return true;
        case kPropertyType_Time:
        {
            Time time;
            if (!Time::FromString(XMLStrUtil::XMLStrToAStr(text), time))
                return false;
            held = XMLProperty::IsTime();
            return true;
        }
        case kPropertyType_String:
            break;
    }
    return true;
}

// The attributes of a "Property" element; null for one that is absent.
struct PropertyTexts
{
    XMLCh const* id = nullptr;
    XMLCh const* objectId = nullptr;
    XMLCh const* name = nullptr;
    XMLCh const* type = nullptr;
    XMLCh const* value = nullptr;
};

struct TextRow
{
    AttributeName name;
    XMLCh const* PropertyTexts::*text;
};

constexpr TextRow kTextRows[] = {
    {Names::ID, &PropertyTexts::id},       {Names::ObjectID, &PropertyTexts::objectId},
    {Names::Name, &PropertyTexts::name},   {Names::Type, &PropertyTexts::type},
    {Names::Value, &PropertyTexts::value},
};

PropertyTexts TextsOf(SideFileElement const& element)
{
    PropertyTexts texts;
    for (SideFileAttribute const& attribute : element.attributes)
    {
        for (TextRow const& row : kTextRows)
        {
            if (Equals(attribute.name, row.name))
            {
                texts.*row.text = attribute.value;
                break;
            }
        }
    }
    return texts;
}

// Appends the text, if there is one, in UTF-8, and answers where it ends.
std::size_t AppendTo(std::string& bytes, XMLCh const* text)
{
    if (text)
        Unicode::AppendUtf8(bytes, text);
    return bytes.size();
}

// The property of an element; null for one that makes none. The buffer is written over.
XMLProperty* MakeProperty(PropertyTexts const& texts, std::string& buffer)
{
    if (!texts.id || !texts.objectId)
        return nullptr;
    PropertyTypeEnum type = kPropertyType_String;
    static_cast<void>(ValueOfDocumentText(kPropertyTypeTexts, texts.type, type));
    XMLProperty::ValueOf value;
    if (!ReadValue(type, texts.value, value))
        return nullptr;
    bool const isInText = type == kPropertyType_String || type == kPropertyType_Time;
    buffer.clear();
    std::size_t const idEnd = AppendTo(buffer, texts.id);
    std::size_t const nameEnd = AppendTo(buffer, texts.name);
    AppendTo(buffer, isInText ? texts.value : nullptr);
    std::string_view const bytes = buffer;
    return XMLProperty::Make({bytes.substr(0, idEnd), bytes.substr(idEnd, nameEnd - idEnd), bytes.substr(nameEnd)},
                             value);
}

struct Release
{
    void operator()(IProperty const* property) const noexcept { property->Release(); }
};

class Handler final : public SideFileReceiver
{
public:
    explicit Handler(PropertyReceiver& receiver) : m_receiver(receiver) {}

    void Begin(SideFileElement const& element) override
    {
        if (m_depth++ != 1)
            return;
        PropertyTexts const texts = TextsOf(element);
        if (!Equals(element.name, Names::Property))
        {
            TellOf(element, texts, false);
            return;
        }
        std::unique_ptr<IProperty, Release> const property(MakeProperty(texts, m_buffer));
        TellOf(element, texts, property != nullptr);
        if (property)
            m_receiver.Receive(property.get(), ObjectId(texts.objectId));
        else
            m_receiver.Receive(nullptr, UTF8String());
    }

    void End() override { --m_depth; }

private:
    static void TellOf(SideFileElement const& element, PropertyTexts const& texts, bool isMade)
    {
        ReadObserver* const observer = Observer();
        if (!observer) [[likely]]
            return;
        xercesc::Locator const* const place = element.place;
        observer->PropertyMet({place ? place->getLineNumber() : 0, place ? place->getColumnNumber() : 0, texts.id,
                               texts.objectId, texts.name, texts.type, texts.value},
                              isMade);
    }

    // The properties of an object mostly stand together: its id is converted once.
    UTF8String const& ObjectId(XMLCh const* text)
    {
        if (!Equals(text, m_objectIdText))
        {
            m_objectIdText = text;
            m_objectId = XMLStrUtil::XMLStrToAStr(text);
        }
        return m_objectId;
    }

    PropertyReceiver& m_receiver;
    /// The texts of the property under way.
    std::string m_buffer;
    std::u16string m_objectIdText;
    UTF8String m_objectId;
    unsigned long long m_depth = 0;
};

}  // namespace

void StreamProperties(UTF16String const& sceneFilePath, PropertyReceiver& receiver)
{
    Handler handler(receiver);
    // The result is not needed: what stood before an error counts.
    static_cast<void>(
        ParseSideFile(ReplaceExtension(sceneFilePath, UTF16String(kPropertyFileExtension.Document())), handler));
}

}  // namespace KVR

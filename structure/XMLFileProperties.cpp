#include "structure/XMLFileProperties.h"

#include <utility>

#include "framework/api/Time.h"
#include "framework/api/ViewingData.h"
#include "framework/xml_util/DomWalk.h"
#include "framework/xml_util/EnumTexts.h"
#include "framework/xml_util/FormatNames.h"
#include "framework/xml_util/XMLStrUtil.h"
#include "readers/BooleanText.h"
#include "readers/Ignored.h"
#include "readers/NodeAttributes.h"
#include "readers/VectorTextReader.h"

namespace KVR
{

namespace
{

// Makes a property of the type from its value text. Only a time that does not convert drops it; a number that does not
// is 0.
bool SetFromText(CustomProperty& property, PropertyTypeEnum type, UTF16String const& name, XMLCh const* value)
{
    switch (type)
    {
        case kPropertyType_Int:
            property.SetProperty(name, XMLStrUtil::XMLStrToInt(value));
            return true;
        case kPropertyType_Double:
        {
            double number = 0.0;
            XMLStrUtil::XMLStrToDouble(value, number);
            property.SetProperty(name, number);
            return true;
        }
        case kPropertyType_Bool:
            property.SetProperty(name, ToldBoolean(value, kBoolean_TrueWordElseFalse.test));
            return true;
        case kPropertyType_Time:
        {
            Time time;
            if (!ToldText(value, TextForm::kTime, Time::FromString(XMLStrUtil::XMLStrToAStr(value), time)))
                return false;
            property.SetProperty(name, time.Value());
            return true;
        }
        case kPropertyType_String:
            break;
    }
    property.SetProperty(name, XMLStrUtil::XMLStrToWStr(value));
    return true;
}

// Tell an observer how an entry will be understood by those who ask.

void TellTime(ReadObserver& observer, XMLCh const* text)
{
    Time time;
    TellText(observer, text, TextForm::kTime, Time::FromString(XMLStrUtil::XMLStrToAStr(text), time));
}

void TellUnit(ReadObserver&, XMLCh const* text)
{
    UnitTypeEnum unit = kUnitType_Unknown;
    Ignored(XMLStrUtil::StringToUnitType(text, unit));
}

void TellVector(ReadObserver& observer, XMLCh const* text)
{
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    TellText(observer, text, TextForm::kVector, ReadVectorText(XMLStrUtil::XMLStrToAStr(text), x, y, z));
}

}  // namespace

XMLFileProperties::XMLFileProperties(xercesc::DOMNode* node)
{
    Read(node);
}
XMLFileProperties::~XMLFileProperties() = default;

void XMLFileProperties::Read(xercesc::DOMNode* node)
{
    for (xercesc::DOMNode* const child : Children(node))
    {
        auto const keepText = [&] { KeepEntry(child, nullptr); };
        auto const keepUnit = [&] { KeepEntry(child, &TellUnit); };
        auto const keepVector = [&] { KeepEntry(child, &TellVector); };
        Match(child,                                                                //
              On(Names::CustomProperties, [&] { ReadCustomProperties(child); }),    //
              OnAnyCase(Names::ViewData, [&] { ReadFileViewData(child); }),         //
              On(Names::Title, keepText), On(Names::Author, keepText),              //
              On(Names::Organization, keepText), On(Names::Description, keepText),  //
              On(Names::SendingSystem, keepText), On(Names::PartNumber, keepText),  //
              On(Names::Revision, keepText), On(Names::Preprocessor, keepText),     //
              On(Names::Authorisation, keepText), On(Names::MassUnit, keepUnit),    //
              On(Names::TimeUnit, keepUnit), On(Names::UpVector, keepVector),       //
              On(Names::FrontVector, keepVector),                                   //
              On(Names::CreationDate, [&] { KeepEntry(child, &TellTime); }));
    }
}

void XMLFileProperties::KeepEntry(xercesc::DOMNode* element, TellEntry* tell)
{
    UTF8String const name = XMLStrUtil::XMLStrToAStr(element->getNodeName());
    if (m_entries.contains(name))
        return;
    XMLCh const* const text = TextContent(element);
    m_entries.emplace(name, XMLStrUtil::XMLStrToWStr(text));
    ReadObserver* const observer = tell ? Observer() : nullptr;
    if (observer) [[unlikely]]
        tell(*observer, text);
}

void XMLFileProperties::ReadFileViewData(xercesc::DOMNode const* node)
{
    for (xercesc::DOMNode* const child : Children(node))
    {
        auto const keep = [&] { KeepEntry(child, &TellVector); };
        Match(child, On(Names::UpVector, keep), On(Names::FrontVector, keep));
    }
}

void XMLFileProperties::ReadCustomProperties(xercesc::DOMNode const* node)
{
    // Kept: a type outside the table keeps that of the property before it.
    PropertyTypeEnum type = kPropertyType_String;
    for (xercesc::DOMNode const* const child : Children(node))
    {
        if (!IsNamed(child, Names::CustomProperty))
            continue;
        Ignored(ValueOfDocumentText(kPropertyTypeTexts, AttributeText(child, Names::Type), type));
        CustomProperty property;
        UTF16String const name = XMLStrUtil::XMLStrToWStr(AttributeOrEmpty(child, Names::Key));
        if (SetFromText(property, type, name, AttributeOrEmpty(child, Names::Value)))
            m_customProperties.push_back(std::move(property));
    }
}

IsValueSpecifiedEnum XMLFileProperties::TextOf(ElementName key, UTF16String& text) const
{
    auto const found = m_entries.find(key.Narrow());
    if (found == m_entries.end())
        return kIsValueSpecified_No;
    text = found->second;
    return kIsValueSpecified_Yes;
}

IsValueSpecifiedEnum XMLFileProperties::UnitOf(ElementName key, UnitTypeEnum& unit) const
{
    UTF16String text;
    if (TextOf(key, text) != kIsValueSpecified_Yes)
        return kIsValueSpecified_No;
    Ignored(XMLStrUtil::StringToUnitType(UTF8String(text), unit));
    return kIsValueSpecified_Yes;
}

IsValueSpecifiedEnum XMLFileProperties::Title(UTF16String& text) const
{
    return TextOf(Names::Title, text);
}
IsValueSpecifiedEnum XMLFileProperties::Author(UTF16String& text) const
{
    return TextOf(Names::Author, text);
}
IsValueSpecifiedEnum XMLFileProperties::Organization(UTF16String& text) const
{
    return TextOf(Names::Organization, text);
}
IsValueSpecifiedEnum XMLFileProperties::Description(UTF16String& text) const
{
    return TextOf(Names::Description, text);
}
IsValueSpecifiedEnum XMLFileProperties::SendingSystem(UTF16String& text) const
{
    return TextOf(Names::SendingSystem, text);
}
IsValueSpecifiedEnum XMLFileProperties::PartNumber(UTF16String& text) const
{
    return TextOf(Names::PartNumber, text);
}
IsValueSpecifiedEnum XMLFileProperties::Revision(UTF16String& text) const
{
    return TextOf(Names::Revision, text);
}
IsValueSpecifiedEnum XMLFileProperties::Preprocessor(UTF16String& text) const
{
    return TextOf(Names::Preprocessor, text);
}
IsValueSpecifiedEnum XMLFileProperties::Authorisation(UTF16String& text) const
{
    return TextOf(Names::Authorisation, text);
}
IsValueSpecifiedEnum XMLFileProperties::MassUnit(UnitTypeEnum& unit) const
{
    return UnitOf(Names::MassUnit, unit);
}
IsValueSpecifiedEnum XMLFileProperties::TimeUnit(UnitTypeEnum& unit) const
{
    return UnitOf(Names::TimeUnit, unit);
}

IsValueSpecifiedEnum XMLFileProperties::CreationDate(Time& time) const
{
    UTF16String text;
    if (TextOf(Names::CreationDate, text) != kIsValueSpecified_Yes || !Time::FromString(UTF8String(text), time))
        return kIsValueSpecified_No;
    return kIsValueSpecified_Yes;
}

IsValueSpecifiedEnum XMLFileProperties::CustomPropertyAt(unsigned long long index, CustomProperty& property) const
{
    if (index >= m_customProperties.size())
        return kIsValueSpecified_No;
    property = m_customProperties[index];
    return kIsValueSpecified_Yes;
}

IsValueSpecifiedEnum XMLFileProperties::ViewDataOf(ViewData& viewData) const
{
    IsValueSpecifiedEnum answer = kIsValueSpecified_No;
    UTF16String text;
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    if (TextOf(Names::UpVector, text) == kIsValueSpecified_Yes && ReadVectorText(UTF8String(text), x, y, z))
    {
        viewData.SetUpVector(x, y, z);
        answer = kIsValueSpecified_Yes;
    }
    if (TextOf(Names::FrontVector, text) == kIsValueSpecified_Yes && ReadVectorText(UTF8String(text), x, y, z))
    {
        viewData.SetFrontVector(x, y, z);
        answer = kIsValueSpecified_Yes;
    }
    return answer;
}

}  // namespace KVR

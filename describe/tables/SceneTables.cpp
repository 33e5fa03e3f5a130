#include "describe/Rows.h"
#include "framework/api/Color.h"
#include "framework/api/CustomProperty.h"
#include "framework/api/FileProperties.h"
#include "framework/api/IProducer.h"
#include "framework/api/IProperty.h"
#include "framework/api/IUniverse.h"
#include "framework/api/Time.h"
#include "framework/api/Variant.h"
#include "framework/api/ViewingData.h"

// What belongs to the scene as a whole, and what files say about themselves.

namespace KVR
{

namespace
{

constexpr Row kProducerRows[] = {
    Value<&IProducer::RootObjectId>("RootObjectId").RefersTo(Refers::Object),
};

IsValueSpecifiedEnum FutureVersion(FileQueryResult const& query, UTF16String& version)
{
    bool isFuture = false;
    return query.FutureFileVersion(isFuture, version);
}

constexpr Row kQueryRows[] = {
    Value<&FileQueryResult::SupportsFile>("SupportsFile"),
    Value<&FileQueryResult::HasAssemblyStructure>("HasAssemblyStructure"),
    Value<&FileQueryResult::FileVersion>("FileVersion").NotInDump(),
    Value<&FutureVersion, &FileQueryResult::FutureFileVersion>("FutureFileVersion").NotInDump(),
};

bool HasPropertyDatabase(IUniverse const& universe)
{
    return universe.PropertyDatabaseOf() != nullptr;
}

// The key is there in any case; a value that is not specified is none.
void CustomData(IUniverse const& universe, unsigned long long index, UTF8String& key, Variant& value)
{
    if (universe.CustomDataAt(index, key, value) != kIsValueSpecified_Yes)
        value = Variant();
}

constexpr Row kCustomDataRows[] = {
    Written<&CustomData, 0>("Key"),
    Written<&CustomData, 1>("Value"),
};
constexpr Interface kCustomData{"CustomData", kCustomDataRows};

constexpr Row kUniverseRows[] = {
    Value<&IUniverse::DefaultCurveColor>("DefaultCurveColor"),
    Value<&IUniverse::DefaultSurfaceColor>("DefaultSurfaceColor"),
    Value<&IUniverse::ViewingDataOf>("ViewingDataOf"),
    Value<&HasPropertyDatabase, &IUniverse::PropertyDatabaseOf>("HasPropertyDatabase").NotInDump(),
    Records<&IUniverse::CustomDataCount, &CustomData, &kCustomData, &IUniverse::CustomDataAt>("CustomData"),
};

constexpr Row kViewingDataRows[] = {
    Value<&ViewingData::UpVector>("UpVector"),
    Value<&ViewingData::FrontVector>("FrontVector"),
};

constexpr Row kViewDataRows[] = {
    Inherits<ViewData, ViewingData>(),
};

template <class T, class Property>
void TellIfOfType(Property const& property, Telling const& telling)
{
    T value{};
    auto const answer = Ask([&] { return property.Value(value); }, [&] { telling.OnThrow(); });
    if (answer == kIsValueSpecified_Yes)
        Tell(telling, value);
    else
        telling.to.Null();
}

// Properties hold one value of the five types; they are asked for the type that they state.
template <class Property>
void TellPropertyValue(void const* object, Telling const& telling)
{
    auto const& property = *static_cast<Property const*>(object);
    auto const type = Ask([&] { return property.Type(); }, [&] { telling.OnThrow(); });
    if (!type)
        return telling.to.Null();
    switch (*type)
    {
        case kPropertyType_String:
            return TellIfOfType<UTF16String>(property, telling);
        case kPropertyType_Int:
            return TellIfOfType<int>(property, telling);
        case kPropertyType_Double:
            return TellIfOfType<double>(property, telling);
        case kPropertyType_Bool:
            return TellIfOfType<bool>(property, telling);
        case kPropertyType_Time:
            return TellIfOfType<std::tm>(property, telling);
    }
    telling.to.Null();
}

constexpr AnswerType kPropertyValue{.kind = AnswerType::Kind::PropertyValue, .canBeNull = true};

constexpr Row kPropertyRows[] = {
    Value<&IProperty::Id>("Id"),
    Value<&IProperty::Name>("Name"),
    Value<&IProperty::Type>("Type"),
    Told<&TellPropertyValue<IProperty>>("Value", kPropertyValue),
    Value<Writing<UTF16String>(&IProperty::Value)>("ValueAsText").NotInDump(),
    Value<Writing<int>(&IProperty::Value)>("ValueAsInteger").NotInDump(),
    Value<Writing<double>(&IProperty::Value)>("ValueAsNumber").NotInDump(),
    Value<Writing<bool>(&IProperty::Value)>("ValueAsFlag").NotInDump(),
    Value<Writing<struct tm>(&IProperty::Value)>("ValueAsTime").NotInDump(),
};

constexpr Row kCustomPropertyRows[] = {
    Value<&CustomProperty::Name>("Name"),
    Value<&CustomProperty::Type>("Type"),
    Told<&TellPropertyValue<CustomProperty>>("Value", kPropertyValue),
    Value<Writing<UTF16String>(&CustomProperty::Value)>("ValueAsText").NotInDump(),
    Value<Writing<int>(&CustomProperty::Value)>("ValueAsInteger").NotInDump(),
    Value<Writing<double>(&CustomProperty::Value)>("ValueAsNumber").NotInDump(),
    Value<Writing<bool>(&CustomProperty::Value)>("ValueAsFlag").NotInDump(),
    Value<Writing<struct tm>(&CustomProperty::Value)>("ValueAsTime").NotInDump(),
};

constexpr Row kFilePropertiesRows[] = {
    Value<&FileProperties::Title>("Title"),
    Value<&FileProperties::Author>("Author"),
    Value<&FileProperties::Organization>("Organization"),
    Value<&FileProperties::Description>("Description"),
    Value<&FileProperties::SendingSystem>("SendingSystem"),
    Value<&FileProperties::PartNumber>("PartNumber"),
    Value<&FileProperties::Revision>("Revision"),
    Value<&FileProperties::Preprocessor>("Preprocessor"),
    Value<&FileProperties::CreationDate>("CreationDate"),
    Value<&FileProperties::Authorisation>("Authorisation"),
    Value<&FileProperties::MassUnit>("MassUnit"),
    Value<&FileProperties::TimeUnit>("TimeUnit"),
    List<&FileProperties::CustomPropertyCount, &FileProperties::CustomPropertyAt>("CustomProperties"),
    Value<&FileProperties::ViewDataOf>("ViewDataOf"),
};

}  // namespace

Interface const TableOf<IProducer>::kTable = {"IProducer", kProducerRows};
Interface const TableOf<FileQueryResult>::kTable = {"FileQueryResult", kQueryRows};
Interface const TableOf<IUniverse>::kTable = {"IUniverse", kUniverseRows, Interface::Form::Named};
Interface const TableOf<ViewingData>::kTable = {"ViewingData", kViewingDataRows};
Interface const TableOf<ViewData>::kTable = {"ViewData", kViewDataRows};
Interface const TableOf<IProperty>::kTable = {"IProperty", kPropertyRows};
Interface const TableOf<CustomProperty>::kTable = {"CustomProperty", kCustomPropertyRows};
Interface const TableOf<FileProperties>::kTable = {"FileProperties", kFilePropertiesRows};

}  // namespace KVR

#include "host/dump/DumpValues.h"

#include <fmt/format.h>

#include "framework/api/Blob.h"
#include "framework/api/Color.h"
#include "framework/api/CustomProperty.h"
#include "framework/api/IProperty.h"
#include "framework/api/IdSet.h"
#include "framework/api/IdSetSet.h"
#include "framework/api/Interval.h"
#include "framework/api/Matrix3d.h"
#include "framework/api/Plane.h"
#include "framework/api/Position.h"
#include "framework/api/Time.h"
#include "framework/api/TypesafeId.h"
#include "framework/api/UTF16String.h"
#include "framework/api/UTF8String.h"
#include "framework/api/UnitText.h"
#include "framework/api/Variant.h"
#include "framework/api/Vector.h"
#include "framework/api/ViewingData.h"
#include "host/dump/Ask.h"

namespace KVR
{

namespace
{

constexpr JsonWriter::Layout kRow = JsonWriter::Layout::Row;

template <class T, class Property>
void WriteTypedValue(JsonWriter& json, Property const& property)
{
    T value{};
    if (Ask([&] { return property.Value(value); }) == kIsValueSpecified_Yes)
        WriteValue(json, value);
    else
        json.Null();
}

// CustomProperty and IProperty hold one value of the five types; both are asked for the type that they state.
template <class Property>
void WritePropertyValue(JsonWriter& json, Property const& property, std::optional<PropertyTypeEnum> type)
{
    if (!type)
        return json.Null();
    switch (*type)
    {
        case kPropertyType_String:
            return WriteTypedValue<UTF16String>(json, property);
        case kPropertyType_Int:
            return WriteTypedValue<int>(json, property);
        case kPropertyType_Double:
            return WriteTypedValue<double>(json, property);
        case kPropertyType_Bool:
            return WriteTypedValue<bool>(json, property);
        case kPropertyType_Time:
            return WriteTypedValue<std::tm>(json, property);
    }
    json.Null();
}

template <class Property>
void WriteNameTypeValue(JsonWriter& json, Property const& property)
{
    json.Key("Name");
    WriteValue(json, Ask([&] { return property.Name(); }));
    auto const type = Ask([&] { return property.Type(); });
    json.Key("Type");
    WriteValue(json, type);
    json.Key("Value");
    WritePropertyValue(json, property, type);
}

}  // namespace

void WriteValue(JsonWriter& json, UnitTypeEnum unit)
{
    if (char const* const text = TextOfUnit(unit))
        json.String(text);
    else
        json.Integer(unit);
}

void WriteValue(JsonWriter& json, UTF8String const& text)
{
    json.String(text.View());
}

void WriteValue(JsonWriter& json, UTF16String const& text)
{
    json.String(UTF8String(text).View());
}

void WriteValue(JsonWriter& json, TypesafeId const& id)
{
    json.String(id.Id().View());
}

void WriteValue(JsonWriter& json, IdSet const& ids)
{
    json.BeginList(kRow);
    for (unsigned long long i = 0; i < ids.Size(); ++i)
        WriteValue(json, ids.At(i));
    json.EndList();
}

void WriteValue(JsonWriter& json, IdSetSet const& sets)
{
    json.BeginList();
    for (unsigned long long i = 0; i < sets.Size(); ++i)
        WriteValue(json, sets.At(i));
    json.EndList();
}

void WriteValue(JsonWriter& json, Matrix3d const& matrix)
{
    json.BeginList(kRow);
    for (double const element : matrix.Elements())
        json.Number(element);
    json.EndList();
}

void WriteValue(JsonWriter& json, Position const& position)
{
    WriteRow(json, position.X(), position.Y(), position.Z());
}

void WriteValue(JsonWriter& json, Vector const& vector)
{
    WriteRow(json, vector[0], vector[1], vector[2]);
}

void WriteValue(JsonWriter& json, Plane const& plane)
{
    json.BeginObject();
    json.Key("Origin");
    WriteValue(json, Ask([&] { return plane.Origin(); }));
    json.Key("Normal");
    WriteValue(json, Ask([&] { return plane.Normal(); }));
    json.Key("ReferenceDirection");
    UnitVector direction;
    if (Ask([&] { return plane.ReferenceDirection(direction); }) == kIsValueSpecified_Yes)
        WriteValue(json, direction);
    else
        json.Null();
    json.EndObject();
}

void WriteValue(JsonWriter& json, Color const& color)
{
    WriteRow(json, color.Red(), color.Green(), color.Blue(), color.Alpha());
}

void WriteValue(JsonWriter& json, Interval const& interval)
{
    WriteRow(json, interval.Lower(), interval.Upper());
}

void WriteValue(JsonWriter& json, Time const& time)
{
    WriteValue(json, time.Value());
}

void WriteValue(JsonWriter& json, std::tm const& time)
{
    json.String(fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}", time.tm_year + 1900LL, time.tm_mon + 1LL,
                            time.tm_mday, time.tm_hour, time.tm_min, time.tm_sec));
}

void WriteValue(JsonWriter& json, ViewingData const& viewingData)
{
    json.BeginObject();
    json.Key("UpVector");
    WriteValue(json, viewingData.UpVector());
    json.Key("FrontVector");
    WriteValue(json, viewingData.FrontVector());
    json.EndObject();
}

void WriteValue(JsonWriter& json, Blob const& blob)
{
    json.BeginObject();
    WriteBytes(json, blob.Data(), blob.Size());
    json.EndObject();
}

void WriteValue(JsonWriter& json, Variant const& value)
{
    if (auto const* text = value.AStringValue())
        WriteValue(json, *text);
    else if (auto const* ids = value.IdSetValue())
        WriteValue(json, *ids);
    else if (auto const* blob = value.BlobValue())
        WriteValue(json, *blob);
    else
        json.Null();
}

void WriteValue(JsonWriter& json, CustomProperty const& property)
{
    json.BeginObject();
    WriteNameTypeValue(json, property);
    json.EndObject();
}

void WriteValue(JsonWriter& json, IProperty const& property)
{
    json.BeginObject();
    json.Key("Id");
    WriteValue(json, Ask([&] { return property.Id(); }));
    WriteNameTypeValue(json, property);
    json.EndObject();
}

void WriteBytes(JsonWriter& json, void const* bytes, unsigned long long size)
{
    json.Key("Size");
    json.Unsigned(size);
    json.Key("Base64");
    json.Base64(bytes, static_cast<std::size_t>(size));
}

}  // namespace KVR

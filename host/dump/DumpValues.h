#pragma once

#include <concepts>
#include <ctime>
#include <optional>
#include <type_traits>

#include "framework/api/Enums.h"
#include "output/JsonWriter.h"

namespace KVR
{

class Blob;
class Color;
class CustomProperty;
class IdSet;
class IdSetSet;
class Interval;
class IProperty;
class Matrix3d;
class Plane;
class Position;
class Time;
class TypesafeId;
class UTF16String;
class UTF8String;
class Variant;
class Vector;
class ViewingData;

// How each type of value stands in a dump.

/// Only for bool itself: pointers and numbers would convert.
void WriteValue(JsonWriter& json, std::same_as<bool> auto value)
{
    json.Bool(value);
}

void WriteValue(JsonWriter& json, std::floating_point auto value)
{
    json.Number(value);
}

void WriteValue(JsonWriter& json, std::integral auto value) requires(!std::same_as<decltype(value), bool>)
{
    if constexpr (std::is_signed_v<decltype(value)>)
        json.Integer(value);
    else
        json.Unsigned(value);
}

template <class Enum>
requires std::is_enum_v<Enum>
void WriteValue(JsonWriter& json, Enum value)
{
    json.Integer(static_cast<long long>(value));
}

/// The unit's text.
void WriteValue(JsonWriter& json, UnitTypeEnum unit);
void WriteValue(JsonWriter& json, UTF8String const& text);
void WriteValue(JsonWriter& json, UTF16String const& text);
void WriteValue(JsonWriter& json, TypesafeId const& id);
void WriteValue(JsonWriter& json, IdSet const& ids);
void WriteValue(JsonWriter& json, IdSetSet const& sets);
/// 16 numbers, row by row.
void WriteValue(JsonWriter& json, Matrix3d const& matrix);
void WriteValue(JsonWriter& json, Position const& position);
void WriteValue(JsonWriter& json, Vector const& vector);
void WriteValue(JsonWriter& json, Plane const& plane);
void WriteValue(JsonWriter& json, Color const& color);
void WriteValue(JsonWriter& json, Interval const& interval);
void WriteValue(JsonWriter& json, Time const& time);
void WriteValue(JsonWriter& json, std::tm const& time);
void WriteValue(JsonWriter& json, ViewingData const& viewingData);
void WriteValue(JsonWriter& json, Blob const& blob);
/// Text, list of ids or blob; null for a variant of no kind.
void WriteValue(JsonWriter& json, Variant const& value);
void WriteValue(JsonWriter& json, CustomProperty const& property);
void WriteValue(JsonWriter& json, IProperty const& property);

/// {"Size", "Base64"}; further members that the caller opens an object for may precede them.
void WriteBytes(JsonWriter& json, void const* bytes, unsigned long long size);

/// Numbers on one line.
template <std::convertible_to<double>... Numbers>
void WriteRow(JsonWriter& json, Numbers... numbers)
{
    json.BeginList(JsonWriter::Layout::Row);
    (WriteValue(json, numbers), ...);
    json.EndList();
}

/// Null for no value.
template <class T>
void WriteValue(JsonWriter& json, std::optional<T> const& value)
{
    if (!value)
        json.Null();
    else if constexpr (requires { value->get(); })
        WriteValue(json, value->get());
    else
        WriteValue(json, *value);
}

}  // namespace KVR

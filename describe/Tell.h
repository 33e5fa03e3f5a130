#pragma once

#include <array>
#include <concepts>
#include <functional>
#include <optional>

#include "describe/AnswerTypes.h"
#include "describe/AnswerVisitor.h"
#include "framework/api/Polygon.h"

namespace KVR
{

// How each type of value is told.

/// Only for bool itself: pointers and numbers would convert.
void Tell(Telling const& telling, std::same_as<bool> auto value)
{
    telling.to.Bool(value);
}

void Tell(Telling const& telling, std::floating_point auto value)
{
    telling.to.Number(value);
}

void Tell(Telling const& telling, std::integral auto value) requires(!std::same_as<decltype(value), bool>)
{
    if constexpr (std::is_signed_v<decltype(value)>)
        telling.to.Integer(value);
    else
        telling.to.Unsigned(value);
}

template <class Enum>
requires std::is_enum_v<Enum>
void Tell(Telling const& telling, Enum value)
{
    telling.to.Integer(static_cast<long long>(value));
}

void Tell(Telling const& telling, UnitTypeEnum unit);
void Tell(Telling const& telling, UTF8String const& text);
void Tell(Telling const& telling, UTF16String const& text);
void Tell(Telling const& telling, TypesafeId const& id);
void Tell(Telling const& telling, IdSet const& ids);
void Tell(Telling const& telling, IdSetSet const& sets);
void Tell(Telling const& telling, OccurrencePathCollection const& paths);
void Tell(Telling const& telling, Matrix3d const& matrix);
void Tell(Telling const& telling, Position const& position);
void Tell(Telling const& telling, Vector const& vector);
void Tell(Telling const& telling, Color const& color);
void Tell(Telling const& telling, Interval const& interval);
void Tell(Telling const& telling, Time const& time);
void Tell(Telling const& telling, std::tm const& time);
void Tell(Telling const& telling, Variant const& value);
void Tell(Telling const& telling, PolygonIndexSet const& indices);
void Tell(Telling const& telling, VertexIndexSet const& indices);
void Tell(Telling const& telling, EdgeSegmentInfo const& segment);
void Tell(Telling const& telling, EditablePolygon::IndexList const& indices);
void Tell(Telling const& telling, SubEntityToStylesMap const& styles);
void Tell(Telling const& telling, DataIdToPersistentIdMap const& ids);
/// Null for a curve that was destroyed.
void Tell(Telling const& telling, curve& kernelCurve);
/// By its kind; null at a depth of nesting that no reader reaches.
void Tell(Telling const& telling, ICurveData& data);

void Tell(Telling const& telling, Described auto const& value)
{
    TellObject(TableOf<std::remove_cvref_t<decltype(value)>>::kTable, &value, telling);
}

/// Null for no object.
template <class T>
void Tell(Telling const& telling, T* object);

/// Null for no value.
template <class T>
void Tell(Telling const& telling, std::optional<T> const& value)
{
    if (!value)
        telling.to.Null();
    else if constexpr (requires { value->get(); })
        Tell(telling, value->get());
    else
        Tell(telling, *value);
}

template <class T>
void Tell(Telling const& telling, T* object)
{
    if (object)
        Tell(telling, *object);
    else
        telling.to.Null();
}

template <class T>
void Tell(Telling const& telling, GMK::gmk_array<T> const& items)
{
    telling.to.BeginList(AnswerVisitor::Layout::Lines);
    for (T const& item : items)
        Tell(telling, item);
    telling.to.EndList();
}

template <class T, std::size_t n>
void Tell(Telling const& telling, std::array<T, n> const& values)
{
    if constexpr (std::is_same_v<T, double>)
        return telling.to.Numbers(values.data(), n);
    telling.to.BeginList(AnswerVisitor::Layout::Row);
    for (T const& value : values)
        Tell(telling, value);
    telling.to.EndList();
}

}  // namespace KVR

#pragma once

#include <array>
#include <ctime>
#include <optional>
#include <type_traits>
#include <vector>

#include "describe/Tables.h"
#include "framework/api/Enums.h"
#include "framework/api/Polygon.h"

namespace KVR
{

class Color;
class DataIdToPersistentIdMap;
class EdgeSegmentInfo;
class IdSet;
class IdSetSet;
class Interval;
class Matrix3d;
class OccurrencePathCollection;
class PolygonIndexSet;
class Position;
class SubEntityToStylesMap;
class Time;
class TypesafeId;
class UnitVector;
class UTF16String;
class UTF8String;
class Variant;
class Vector;
class VertexIndexSet;

namespace GMK
{
template <class T>
class gmk_array;
}

// The type of what an operation answers, found from the type that its declaration says.

template <class T>
inline constexpr AnswerType kAnswerType = []
{
    static_assert(std::is_void_v<T> && !std::is_void_v<T>, "no type of answer is known for this");
    return AnswerType{};
}();

/// The type, or null.
template <class T>
inline constexpr AnswerType kAnswerTypeOrNull = []
{
    AnswerType type = kAnswerType<T>;
    type.canBeNull = true;
    return type;
}();

constexpr AnswerType ListType(AnswerType const& item, unsigned length = 0)
{
    return {.kind = AnswerType::Kind::List, .length = length, .item = &item};
}

template <class T>
requires std::is_same_v<T, UTF8String> || std::is_same_v<T, UTF16String> || std::is_convertible_v<T*, TypesafeId const*>
inline constexpr AnswerType kAnswerType<T> = {.kind = AnswerType::Kind::Text};
template <>
inline constexpr AnswerType kAnswerType<bool> = {.kind = AnswerType::Kind::Bool};
template <class T>
requires std::is_unsigned_v<T> &&
    (!std::is_same_v<T, bool>)inline constexpr AnswerType kAnswerType<T> = {.kind = AnswerType::Kind::Unsigned};
template <class T>
requires(std::is_enum_v<T> && !std::is_same_v<T, UnitTypeEnum>) ||
    (std::is_integral_v<T> &&
     std::is_signed_v<T>)inline constexpr AnswerType kAnswerType<T> = {.kind = AnswerType::Kind::Integer};
template <>
inline constexpr AnswerType kAnswerType<double> = {.kind = AnswerType::Kind::Number};
template <>
inline constexpr AnswerType kAnswerType<UnitTypeEnum> = {.kind = AnswerType::Kind::Unit};
template <>
inline constexpr AnswerType kAnswerType<Time> = {.kind = AnswerType::Kind::Time};
template <>
inline constexpr AnswerType kAnswerType<struct tm> = {.kind = AnswerType::Kind::Time};
template <>
inline constexpr AnswerType kAnswerType<Variant> = {.kind = AnswerType::Kind::Variant};
template <class T>
requires Described<T>
inline constexpr AnswerType kAnswerType<T> = {.kind = AnswerType::Kind::Object, .interface = &TableOf<T>::kTable};
template <>
inline constexpr AnswerType kAnswerType<IdSet> = ListType(kAnswerType<UTF8String>);
template <>
inline constexpr AnswerType kAnswerType<IdSetSet> = ListType(kAnswerType<IdSet>);
template <>
inline constexpr AnswerType kAnswerType<OccurrencePathCollection> = ListType(kAnswerType<IdSet>);
template <>
inline constexpr AnswerType kAnswerType<Matrix3d> = ListType(kAnswerType<double>, 16);
template <>
inline constexpr AnswerType kAnswerType<Position> = ListType(kAnswerType<double>, 3);
template <>
inline constexpr AnswerType kAnswerType<Vector> = ListType(kAnswerType<double>, 3);
template <>
inline constexpr AnswerType kAnswerType<UnitVector> = ListType(kAnswerType<double>, 3);
template <>
inline constexpr AnswerType kAnswerType<Color> = ListType(kAnswerType<double>, 4);
template <>
inline constexpr AnswerType kAnswerType<Interval> = ListType(kAnswerType<double>, 2);
template <>
inline constexpr AnswerType kAnswerType<PolygonIndexSet> = ListType(kAnswerType<unsigned>);
template <>
inline constexpr AnswerType kAnswerType<VertexIndexSet> = ListType(kAnswerType<int>);
template <>
inline constexpr AnswerType kAnswerType<EdgeSegmentInfo> = ListType(kAnswerType<int>);
template <>
inline constexpr AnswerType kAnswerType<ICurveData> = {.kind = AnswerType::Kind::AnyOf,
                                                       .alternatives = kCurveDataTables};
template <>
inline constexpr AnswerType kAnswerType<SubEntityToStylesMap> = {.kind = AnswerType::Kind::Map,
                                                                 .item = &kAnswerType<IdSet>};
template <>
inline constexpr AnswerType kAnswerType<DataIdToPersistentIdMap> = {.kind = AnswerType::Kind::Map,
                                                                    .item = &kAnswerType<UTF8String>};
template <>
inline constexpr AnswerType kAnswerType<EditablePolygon::IndexList> = {
    .kind = AnswerType::Kind::List, .canBeNull = true, .item = &kAnswerType<int>};
template <class T>
inline constexpr AnswerType kAnswerType<std::optional<T>> = kAnswerTypeOrNull<T>;
template <class T>
inline constexpr AnswerType kAnswerType<T*> = kAnswerTypeOrNull<std::remove_const_t<T>>;
template <class T>
inline constexpr AnswerType kAnswerType<GMK::gmk_array<T>> = ListType(kAnswerType<T>);
template <class T, std::size_t n>
inline constexpr AnswerType kAnswerType<std::array<T, n>> = ListType(kAnswerType<T>, n);

}  // namespace KVR

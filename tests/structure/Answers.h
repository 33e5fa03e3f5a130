#pragma once

#include <array>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>

#include "framework/api/kvr_api.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

/// A document whose root holds the text.
inline std::string InScene(std::string_view body)
{
    return "<Scene>" + std::string(body) + "</Scene>";
}

/// What a getter with one output answers; nothing when it is not specified.
template <class Value, class Asked, class Interface>
std::optional<Value> AnswerOf(Asked const& asked, IsValueSpecifiedEnum (Interface::*getter)(Value&) const)
{
    Value value{};
    if ((asked.*getter)(value) != kIsValueSpecified_Yes)
        return {};
    return value;
}

/// The same for a getter of text, as bytes.
template <class Value, class Asked, class Interface>
std::optional<std::string> TextOf(Asked const& asked, IsValueSpecifiedEnum (Interface::*getter)(Value&) const)
{
    std::optional<Value> const value = AnswerOf(asked, getter);
    return value ? std::optional(Text(*value)) : std::nullopt;
}

inline std::optional<std::string> ChangeKeyOf(IObject const& object,
                                              SnapshotVersionEnum version = kSnapshotVersion_Current)
{
    UTF8String key;
    return object.ChangeKey(version, key) == kIsValueSpecified_Yes ? std::optional(Text(key)) : std::nullopt;
}

inline std::optional<ExtensionDataContent> ExtensionOf(IObject const& object, char const* typeId)
{
    ExtensionDataContent content;
    return object.ExtensionDataByTypeId(typeId, content) == kIsValueSpecified_Yes ? std::optional(content)
                                                                                  : std::nullopt;
}

inline std::optional<std::string> ExtensionTextOf(IObject const& object, char const* typeId)
{
    auto const content = ExtensionOf(object, typeId);
    return content ? std::optional(Text(content->Data())) : std::nullopt;
}

/// The three units of an object, each nothing when it is not specified.
struct UnitAnswers
{
    std::optional<UnitTypeEnum> length;
    std::optional<UnitTypeEnum> displayAngle;
    std::optional<UnitTypeEnum> displayLength;

    friend bool operator==(UnitAnswers const&, UnitAnswers const&) = default;
    friend std::ostream& operator<<(std::ostream& out, UnitAnswers const& units)
    {
        for (auto const& unit : {units.length, units.displayAngle, units.displayLength})
            out << (unit ? std::to_string(*unit) : "none") << ' ';
        return out;
    }
};

inline UnitAnswers UnitsOf(IUnit const& object)
{
    return {AnswerOf(object, &IUnit::LengthUnit), AnswerOf(object, &IUnit::DisplayAngleUnit),
            AnswerOf(object, &IUnit::DisplayLengthUnit)};
}

inline constexpr std::array<double, 16> kIdentity = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

/// A move by x, as a scene writes it.
inline std::string MoveText(int x)
{
    return "1 0 0 " + std::to_string(x) + " 0 1 0 0 0 0 1 0 0 0 0 1";
}

inline std::array<double, 3> ComponentsOf(Vector const& vector)
{
    return {vector[0], vector[1], vector[2]};
}

}  // namespace KVR::Test

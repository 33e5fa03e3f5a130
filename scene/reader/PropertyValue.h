#pragma once

#include <ctime>
#include <string>
#include <type_traits>

#include "framework/api/UTF16String.h"
#include "framework/api/UTF8String.h"
#include "scene/SceneComponent.h"

namespace KVR
{

/// Takes a value of that type; false when the property has one of another type.
template <class Value, class Property>
bool TakeValue(Property const& property, SceneProperty& entry)
{
    Value value{};
    if (property.Value(value) != kIsValueSpecified_Yes)
        return false;
    if constexpr (std::is_same_v<Value, UTF16String>)
        entry.value = std::string(UTF8String(value).View());
    else
        entry.value = value;
    return true;
}

/// Name and value of a custom property, or of one of the property database.
template <class Property>
SceneProperty PropertyOf(Property const& property)
{
    SceneProperty entry;
    entry.name = std::string(UTF8String(property.Name()).View());
    static_cast<void>(TakeValue<UTF16String>(property, entry) || TakeValue<double>(property, entry) ||
                      TakeValue<int>(property, entry) || TakeValue<bool>(property, entry) ||
                      TakeValue<std::tm>(property, entry));
    return entry;
}

}  // namespace KVR

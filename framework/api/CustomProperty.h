#pragma once

#include <ctime>
#include <variant>

#include "framework/api/Enums.h"
#include "framework/api/Export.h"
#include "framework/api/UTF16String.h"

namespace KVR
{

/// A name with a value of one of five types; nameless, with an empty text, until set.
class KVR_API CustomProperty
{
public:
    CustomProperty();
    ~CustomProperty();
    CustomProperty(CustomProperty const&) = default;
    CustomProperty(CustomProperty&&) noexcept = default;
    CustomProperty& operator=(CustomProperty const&) = default;
    CustomProperty& operator=(CustomProperty&&) noexcept = default;

    /// Replaces name, type and value.
    void SetProperty(UTF16String const& name, int value);
    void SetProperty(UTF16String const& name, double value);
    void SetProperty(UTF16String const& name, bool value);
    void SetProperty(UTF16String const& name, UTF16String const& value);
    void SetProperty(UTF16String const& name, struct tm value);

    /// The name; owned by the property.
    UTF16String const& Name() const noexcept { return m_name; }
    /// Which of the getters below answers.
    PropertyTypeEnum Type() const noexcept { return static_cast<PropertyTypeEnum>(m_value.index()); }

    /// Not specified, with the output left alone, unless the value is of the output's type.
    IsValueSpecifiedEnum Value(UTF16String& value) const;
    IsValueSpecifiedEnum Value(int& value) const;
    IsValueSpecifiedEnum Value(double& value) const;
    IsValueSpecifiedEnum Value(bool& value) const;
    IsValueSpecifiedEnum Value(struct tm& value) const;

private:
    UTF16String m_name;
    // In the order of PropertyTypeEnum.
    std::variant<UTF16String, int, double, bool, struct tm> m_value;
};

}  // namespace KVR

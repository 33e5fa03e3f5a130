#include "framework/api/CustomProperty.h"

namespace KVR
{

namespace
{

template <class T, class Values>
IsValueSpecifiedEnum Get(Values const& values, T& value)
{
    T const* const held = std::get_if<T>(&values);
    if (!held)
        return kIsValueSpecified_No;
    value = *held;
    return kIsValueSpecified_Yes;
}

}  // namespace

CustomProperty::CustomProperty() = default;
CustomProperty::~CustomProperty() = default;

void CustomProperty::SetProperty(UTF16String const& name, int value)
{
    m_name = name;
    m_value = value;
}

void CustomProperty::SetProperty(UTF16String const& name, double value)
{
    m_name = name;
    m_value = value;
}

void CustomProperty::SetProperty(UTF16String const& name, bool value)
{
    m_name = name;
    m_value = value;
}

void CustomProperty::SetProperty(UTF16String const& name, UTF16String const& value)
{
    m_name = name;
    m_value = value;
}

void CustomProperty::SetProperty(UTF16String const& name, struct tm value)
{
    m_name = name;
    m_value = value;
}

IsValueSpecifiedEnum CustomProperty::Value(UTF16String& value) const
{
    return Get(m_value, value);
}
IsValueSpecifiedEnum CustomProperty::Value(int& value) const
{
    return Get(m_value, value);
}
IsValueSpecifiedEnum CustomProperty::Value(double& value) const
{
    return Get(m_value, value);
}
IsValueSpecifiedEnum CustomProperty::Value(bool& value) const
{
    return Get(m_value, value);
}
IsValueSpecifiedEnum CustomProperty::Value(struct tm& value) const
{
    return Get(m_value, value);
}

}  // namespace KVR

#include "framework/xml_util/XMLProperty.h"

#include <utility>

#include "framework/api/Unicode.h"

namespace KVR
{

namespace
{

template <class T>
IsValueSpecifiedEnum Get(XMLProperty::ValueOf const& held, T& value)
{
    T const* const found = std::get_if<T>(&held);
    if (!found)
        return kIsValueSpecified_No;
    value = *found;
    return kIsValueSpecified_Yes;
}

std::u16string_view ViewOf(XMLCh const* text)
{
    return text ? std::u16string_view(text) : std::u16string_view();
}

UTF16String Wide(std::string_view bytes)
{
    return UTF16String(Unicode::WideFromUtf8(bytes));
}

}  // namespace

XMLProperty::XMLProperty(XMLCh const* id, XMLCh const* name, ValueOf value, XMLCh const* text)
    : m_value(std::move(value))
{
    std::u16string_view const idView = ViewOf(id);
    std::u16string_view const nameView = ViewOf(name);
    std::u16string_view const textView = ViewOf(text);
    m_text.reserve(idView.size() + nameView.size() + textView.size());
    Unicode::AppendUtf8(m_text, idView);
    m_idEnd = m_text.size();
    Unicode::AppendUtf8(m_text, nameView);
    m_nameEnd = m_text.size();
    Unicode::AppendUtf8(m_text, textView);
}

XMLProperty::~XMLProperty() = default;

UTF8String XMLProperty::Id() const
{
    return UTF8String(std::string_view(m_text).substr(0, m_idEnd));
}

UTF16String XMLProperty::Name() const
{
    return Wide(std::string_view(m_text).substr(m_idEnd, m_nameEnd - m_idEnd));
}

IsValueSpecifiedEnum XMLProperty::Value(UTF16String& value) const
{
    if (Type() != kPropertyType_String)
        return kIsValueSpecified_No;
    value = Wide(std::string_view(m_text).substr(m_nameEnd));
    return kIsValueSpecified_Yes;
}

IsValueSpecifiedEnum XMLProperty::Value(int& value) const
{
    return Get(m_value, value);
}
IsValueSpecifiedEnum XMLProperty::Value(double& value) const
{
    return Get(m_value, value);
}
IsValueSpecifiedEnum XMLProperty::Value(bool& value) const
{
    return Get(m_value, value);
}

IsValueSpecifiedEnum XMLProperty::Value(struct tm& value) const
{
    auto const* const time = std::get_if<std::unique_ptr<struct tm const>>(&m_value);
    if (!time)
        return kIsValueSpecified_No;
    value = **time;
    return kIsValueSpecified_Yes;
}

}  // namespace KVR

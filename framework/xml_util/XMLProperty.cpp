#include "framework/xml_util/XMLProperty.h"

#include <algorithm>
#include <new>

#include "framework/api/Time.h"
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

UTF16String Wide(std::string_view bytes)
{
    return UTF16String(Unicode::WideFromUtf8(bytes));
}

}  // namespace

XMLProperty* XMLProperty::Make(Texts const& texts, ValueOf value)
{
    return new (texts.id.size() + texts.name.size() + texts.value.size()) XMLProperty(texts, value);
}

void* XMLProperty::operator new(std::size_t size, std::size_t textSize)
{
    return ::operator new(size + textSize);
}

void XMLProperty::operator delete(void* memory, std::size_t) noexcept
{
    ::operator delete(memory);
}

void XMLProperty::operator delete(void* memory) noexcept
{
    ::operator delete(memory);
}

XMLProperty::XMLProperty(Texts const& texts, ValueOf value)
    : m_value(value),
      m_idEnd(texts.id.size()),
      m_nameEnd(m_idEnd + texts.name.size()),
      m_valueEnd(m_nameEnd + texts.value.size())
{
    char* out = static_cast<char*>(static_cast<void*>(this + 1));
    for (std::string_view const text : {texts.id, texts.name, texts.value})
        out = std::copy(text.begin(), text.end(), out);
}

XMLProperty::~XMLProperty() = default;

std::string_view XMLProperty::TextAt(std::size_t begin, std::size_t end) const
{
    return {static_cast<char const*>(static_cast<void const*>(this + 1)) + begin, end - begin};
}

UTF8String XMLProperty::Id() const
{
    return UTF8String(TextAt(0, m_idEnd));
}

UTF16String XMLProperty::Name() const
{
    return Wide(TextAt(m_idEnd, m_nameEnd));
}

IsValueSpecifiedEnum XMLProperty::Value(UTF16String& value) const
{
    if (!std::holds_alternative<IsText>(m_value))
        return kIsValueSpecified_No;
    value = Wide(TextAt(m_nameEnd, m_valueEnd));
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
    Time time;
    if (!std::holds_alternative<IsTime>(m_value) || !Time::FromString(UTF8String(TextAt(m_nameEnd, m_valueEnd)), time))
        return kIsValueSpecified_No;
    value = time.Value();
    return kIsValueSpecified_Yes;
}

}  // namespace KVR

#include "framework/api/UTF16String.h"

#include <utility>

#include "framework/api/UTF8String.h"
#include "framework/api/Unicode.h"

namespace KVR
{

UTF16String::UTF16String(wchar_t const* text) : m_text(text ? text : L"") {}
UTF16String::UTF16String(char16_t const* text) : m_text(Unicode::WideFromUtf16(text ? text : u"")) {}
UTF16String::UTF16String(std::wstring text) noexcept : m_text(std::move(text)) {}
UTF16String::UTF16String(UTF8String const& text) : m_text(Unicode::WideFromUtf8(text.View())) {}
UTF16String::~UTF16String() = default;

int UTF16String::Compare(wchar_t const* text) const noexcept
{
    return m_text.compare(text ? text : L"");
}

UTF16String& UTF16String::ToLower() noexcept
{
    for (wchar_t& unit : m_text)
    {
        if (unit >= L'A' && unit <= L'Z')
            unit = static_cast<wchar_t>(unit - L'A' + L'a');
    }
    return *this;
}

}  // namespace KVR

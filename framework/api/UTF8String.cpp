#include "framework/api/UTF8String.h"

#include <algorithm>
#include <utility>

#include "framework/api/UTF16String.h"
#include "framework/api/Unicode.h"

namespace KVR
{

UTF8String::UTF8String(char const* text) : m_bytes(text ? text : "") {}
UTF8String::UTF8String(std::string bytes) noexcept : m_bytes(std::move(bytes)) {}
UTF8String::UTF8String(std::string_view bytes) : m_bytes(bytes) {}
UTF8String::UTF8String(UTF16String const& text) : m_bytes(Unicode::Utf8FromWide(text.View())) {}
UTF8String::~UTF8String() = default;

UTF8String& UTF8String::operator=(char const* text)
{
    m_bytes = text ? text : "";
    return *this;
}

int UTF8String::Compare(char const* text) const noexcept
{
    return m_bytes.compare(text ? text : "");
}

long long UTF8String::Find(char byte, unsigned long long start) const noexcept
{
    auto const at = m_bytes.find(byte, start);
    return at == std::string::npos ? -1 : static_cast<long long>(at);
}

UTF8String UTF8String::Substr(unsigned long long start, long length) const
{
    if (start >= m_bytes.size() || length <= 0)
        return {};
    return UTF8String(View().substr(start, static_cast<std::size_t>(length)));
}

UTF8String& UTF8String::Insert(unsigned long long position, UTF8String const& text)
{
    m_bytes.insert(std::min<unsigned long long>(position, m_bytes.size()), text.m_bytes);
    return *this;
}

UTF8String UTF8String::operator+(UTF8String const& text) const
{
    return UTF8String(m_bytes + text.m_bytes);
}

UTF8String& UTF8String::Trim(char byte)
{
    m_bytes.erase(m_bytes.find_last_not_of(byte) + 1);
    m_bytes.erase(0, m_bytes.find_first_not_of(byte));
    return *this;
}

}  // namespace KVR

#include "scene/reader/SceneText.h"

#include <algorithm>
#include <cstring>
#include <type_traits>

namespace KVR
{

namespace
{

constexpr std::size_t kFirstBlock = 1024;
constexpr std::size_t kLargestBlock = std::size_t{256} * 1024;

}  // namespace

char* SceneText::Room(std::size_t size)
{
    if (size > m_left)
    {
        // A long text has a block of its own, so that little is left unused.
        std::size_t const block = std::min(kLargestBlock, kFirstBlock << std::min<std::size_t>(m_blocks.size(), 8));
        if (size > block / 8)
            return m_blocks.emplace_back(std::make_unique<char[]>(size)).get();
        m_next = m_blocks.emplace_back(std::make_unique<char[]>(block)).get();
        m_left = block;
    }
    char* const room = m_next;
    m_next += size;
    m_left -= size;
    return room;
}

std::string_view SceneText::Keep(std::string_view text)
{
    if (text.empty())
        return {};
    char* const room = Room(text.size());
    std::memcpy(room, text.data(), text.size());
    return {room, text.size()};
}

std::string_view SceneText::Keep(UTF16String const& text)
{
    std::wstring_view const wide = text.View();
    if (wide.empty())
        return {};
    // Bits of all units together: quicker than to ask each by itself.
    std::make_unsigned_t<wchar_t> bits = 0;
    for (wchar_t const unit : wide)
        bits |= static_cast<std::make_unsigned_t<wchar_t>>(unit);
    if (bits >= 0x80)
        return Keep(UTF8String(text));
    char* const room = Room(wide.size());
    std::transform(wide.begin(), wide.end(), room, [](wchar_t unit) { return static_cast<char>(unit); });
    return {room, wide.size()};
}

}  // namespace KVR

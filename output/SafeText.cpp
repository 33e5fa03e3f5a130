#include "output/SafeText.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "framework/api/Unicode.h"
#include "output/Output.h"

namespace KVR
{

namespace
{

bool IsPlain(char byte)
{
    auto const value = static_cast<unsigned char>(byte);
    return value >= 0x20 && value < 0x7F && byte != '"' && byte != '\\';
}

bool IsAscii(char byte)
{
    return static_cast<unsigned char>(byte) < 0x80;
}

// The code unit of the character at the front of the text when it is to be escaped, with its length in bytes; length 0
// for text that may stand. The text is valid UTF-8.
struct Hidden
{
    unsigned unit = 0;
    std::size_t length = 0;
};

Hidden HiddenAt(std::string_view text)
{
    auto const byte = [text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    if (byte(0) < 0x80)
        return IsPlain(text[0]) ? Hidden{} : Hidden{byte(0), 1};
    if (byte(0) == 0xC2 && byte(1) < 0xA0)
        return {byte(1), 2};
    if (byte(0) == 0xD8 && byte(1) == 0x9C)
        return {0x061C, 2};
    if (byte(0) == 0xEF && byte(1) == 0xBB && byte(2) == 0xBF)
        return {0xFEFF, 3};
    if (byte(0) != 0xE2 || (byte(1) != 0x80 && byte(1) != 0x81))
        return {};
    unsigned const unit = 0x2000 | ((byte(1) & 0x3FU) << 6) | (byte(2) & 0x3FU);
    bool const isMark =
        unit == 0x200E || unit == 0x200F || (unit >= 0x2028 && unit <= 0x202E) || (unit >= 0x2066 && unit <= 0x2069);
    return isMark ? Hidden{unit, 3} : Hidden{};
}

template <class Sink>
void PutEscape(Sink& sink, unsigned unit)
{
    switch (unit)
    {
        case '"':
            return sink("\\\"");
        case '\\':
            return sink("\\\\");
        case '\b':
            return sink("\\b");
        case '\f':
            return sink("\\f");
        case '\n':
            return sink("\\n");
        case '\r':
            return sink("\\r");
        case '\t':
            return sink("\\t");
        default:
            break;
    }
    std::array<char, 6> escape = {'\\', 'u', '0', '0', '0', '0'};
    for (std::size_t i = 5; i > 1; --i, unit >>= 4)
        escape[i] = "0123456789abcdef"[unit & 0xF];
    sink(std::string_view(escape.data(), escape.size()));
}

// Whether all eight bytes of a word are plain, each by the bit that it carries where it is not: 0x80 and above have
// their highest bit; what is below 0x20, and what a mask makes zero, borrows it when a number is taken away.
bool ArePlain(std::uint64_t word)
{
    constexpr std::uint64_t kEach = 0x0101010101010101U;
    auto const hasByte = [&](std::uint64_t byte)
    {
        std::uint64_t const masked = word ^ (kEach * byte);
        return (masked - kEach) & ~masked;
    };
    std::uint64_t const bad = word | (word - kEach * 0x20) | hasByte('"') | hasByte('\\') | hasByte(0x7F);
    return (bad & (kEach * 0x80)) == 0;
}

// How many bytes at the front are plain.
std::size_t PlainLength(std::string_view text)
{
    std::size_t length = 0;
    for (std::uint64_t word = 0; length + sizeof word <= text.size(); length += sizeof word)
    {
        std::memcpy(&word, text.data() + length, sizeof word);
        if (!ArePlain(word))
            break;
    }
    if (std::uint64_t word = 0; length < text.size() && text.size() >= sizeof word)
    {
        // The last eight, of which some were looked at.
        std::memcpy(&word, text.data() + text.size() - sizeof word, sizeof word);
        if (ArePlain(word) && text.size() - length < sizeof word)
            return text.size();
    }
    while (length < text.size() && IsPlain(text[length]))
        ++length;
    return length;
}

template <class Sink>
void Escape(std::string_view text, Sink sink)
{
    while (!text.empty())
    {
        std::size_t const plain = PlainLength(text);
        sink(text.substr(0, plain));
        text.remove_prefix(plain);
        if (text.empty())
            return;
        Hidden const hidden = HiddenAt(text);
        if (hidden.length > 0)
        {
            PutEscape(sink, hidden.unit);
            text.remove_prefix(hidden.length);
            continue;
        }
        // A lead byte; the bytes that continue it cannot be taken for the start of a hidden character.
        sink(text.substr(0, 1));
        text.remove_prefix(1);
        while (!text.empty() && (static_cast<unsigned char>(text[0]) & 0xC0) == 0x80)
        {
            sink(text.substr(0, 1));
            text.remove_prefix(1);
        }
    }
}

template <class Sink>
void EscapeAny(std::string_view text, Sink sink)
{
    if (IsPlainText(text))
        sink(text);
    else if (std::all_of(text.begin(), text.end(), IsAscii))
        Escape(text, sink);
    else
        Escape(std::string_view(Unicode::Utf8FromWide(Unicode::WideFromUtf8(text))), sink);
}

}  // namespace

void PutEscaped(Output& out, std::string_view text)
{
    EscapeAny(text, [&out](std::string_view piece) { out.Put(piece); });
}

std::string Escaped(std::string_view text)
{
    std::string escaped;
    EscapeAny(text, [&escaped](std::string_view piece) { escaped += piece; });
    return escaped;
}

bool IsPlainText(std::string_view text)
{
    return PlainLength(text) == text.size();
}

}  // namespace KVR

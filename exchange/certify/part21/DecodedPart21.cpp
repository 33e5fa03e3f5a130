#include "exchange/certify/part21/DecodedPart21.h"

#include <charconv>
#include <optional>

#include "framework/api/Unicode.h"

namespace KVR::Certification
{

namespace
{

void Append(std::string& text, unsigned long code)
{
    auto const put = [&](unsigned long byte) { text.push_back(static_cast<char>(byte)); };
    if (code < 0x80)
        put(code);
    else if (code < 0x800)
    {
        put(0xC0 | (code >> 6));
        put(0x80 | (code & 0x3F));
    }
    else if (code < 0x10000)
    {
        put(0xE0 | (code >> 12));
        put(0x80 | ((code >> 6) & 0x3F));
        put(0x80 | (code & 0x3F));
    }
    else if (code < 0x110000)
    {
        put(0xF0 | (code >> 18));
        put(0x80 | ((code >> 12) & 0x3F));
        put(0x80 | ((code >> 6) & 0x3F));
        put(0x80 | (code & 0x3F));
    }
}

std::optional<unsigned long> Hex(std::string_view bytes, std::size_t place, std::size_t digits)
{
    unsigned long code = 0;
    if (place + digits > bytes.size())
        return {};
    auto const [stop, error] = std::from_chars(bytes.data() + place, bytes.data() + place + digits, code, 16);
    return error == std::errc() && stop == bytes.data() + place + digits ? std::optional(code) : std::nullopt;
}

// The codes between \X2\ or \X4\ and \X0\; the place behind them.
std::size_t AppendCodes(std::string& text, std::string_view bytes, std::size_t place, std::size_t digits)
{
    unsigned long high = 0;
    while (auto const code = Hex(bytes, place, digits))
    {
        place += digits;
        bool const isLow = *code >= 0xDC00 && *code < 0xE000;
        if (*code >= 0xD800 && *code < 0xDC00)
            high = *code;
        else
            Append(text, isLow && high != 0 ? 0x10000 + ((high - 0xD800) << 10) + (*code - 0xDC00) : *code);
    }
    return bytes.substr(place, 4) == "\\X0\\" ? place + 4 : place;
}

}  // namespace

std::string DecodedPart21(std::string_view bytes)
{
    bool const isUtf8 = Unicode::Utf8FromUtf16(Unicode::Utf16FromUtf8(bytes)) == bytes;
    std::string text;
    for (std::size_t i = 0; i < bytes.size();)
    {
        auto const byte = static_cast<unsigned char>(bytes[i]);
        if (bytes[i] == '\'' && bytes.substr(i, 2) == "''")
        {
            text.push_back('\'');
            i += 2;
        }
        else if (bytes.substr(i, 4) == "\\X2\\" || bytes.substr(i, 4) == "\\X4\\")
            i = AppendCodes(text, bytes, i + 4, bytes[i + 2] == '2' ? 4 : 8);
        else if (bytes.substr(i, 3) == "\\X\\" && Hex(bytes, i + 3, 2))
        {
            Append(text, *Hex(bytes, i + 3, 2));
            i += 5;
        }
        else if (bytes.substr(i, 3) == "\\S\\" && i + 3 < bytes.size())
        {
            Append(text, 0x80UL + static_cast<unsigned char>(bytes[i + 3]));
            i += 4;
        }
        else if (bytes.substr(i, 2) == "\\P" && i + 3 < bytes.size() && bytes[i + 3] == '\\')
            i += 4;
        else if (bytes.substr(i, 2) == "\\\\")
        {
            text.push_back('\\');
            i += 2;
        }
        else if (bytes[i] == '\n' || bytes[i] == '\r')
            ++i;
        else
        {
            if (byte < 0x80 || isUtf8)
                text.push_back(bytes[i]);
            else
                Append(text, byte);
            ++i;
        }
    }
    return text;
}

}  // namespace KVR::Certification

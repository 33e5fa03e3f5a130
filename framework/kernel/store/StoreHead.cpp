#include "framework/kernel/store/StoreHead.h"

#include <charconv>
#include <cstring>
#include <string>
#include <string_view>

namespace KVR
{

namespace
{

// Binary: the letters, the version and a word of zeros (u32 each), the digest and the size (u64 each), little-endian.
constexpr std::string_view kBinaryMagic = "KVRKERNB";
constexpr std::size_t kBinarySize = 8 + 4 + 4 + 8 + 8;

// Text: one line of fixed length, the numbers with 16 hexadecimal digits.
constexpr std::string_view kTextMagic = "KVRKERNT ";
constexpr std::size_t kDigits = 16;
constexpr std::size_t kTextSize = kTextMagic.size() + 3 * (kDigits + 1);

template <class Number>
void AppendNumber(std::string& bytes, Number value)
{
    for (std::size_t i = 0; i < sizeof value; ++i)
        bytes.push_back(static_cast<char>(value >> (8 * i) & 0xFF));
}

template <class Number>
Number NumberAt(std::string_view bytes, std::size_t at)
{
    Number value = 0;
    for (std::size_t i = 0; i < sizeof value; ++i)
        value |= static_cast<Number>(static_cast<unsigned char>(bytes[at + i])) << (8 * i);
    return value;
}

void AppendDigits(std::string& text, std::uint64_t value, char behind)
{
    char digits[kDigits + 1];
    std::snprintf(digits, sizeof digits, "%016llx", static_cast<unsigned long long>(value));
    text.append(digits, kDigits);
    text.push_back(behind);
}

bool DigitsAt(std::string_view text, std::size_t at, char behind, std::uint64_t& value)
{
    char const* const begin = text.data() + at;
    auto const result = std::from_chars(begin, begin + kDigits, value, 16);
    return result.ec == std::errc() && result.ptr == begin + kDigits && begin[kDigits] == behind;
}

}  // namespace

bool StoreHead::Read(std::FILE* file, bool textMode)
{
    char buffer[kTextSize > kBinarySize ? kTextSize : kBinarySize];
    std::size_t const wanted = textMode ? kTextSize : kBinarySize;
    if (std::fread(buffer, 1, wanted, file) != wanted)
        return false;
    std::string_view const head(buffer, wanted);
    std::string_view const magic = textMode ? kTextMagic : kBinaryMagic;
    if (!head.starts_with(magic))
        return false;
    if (!textMode)
    {
        digest = NumberAt<std::uint64_t>(head, 16);
        size = NumberAt<std::uint64_t>(head, 24);
        return NumberAt<std::uint32_t>(head, 8) == kVersion && NumberAt<std::uint32_t>(head, 12) == 0;
    }
    std::uint64_t version = 0;
    std::size_t at = magic.size();
    bool const isWhole = DigitsAt(head, at, ' ', version) && DigitsAt(head, at += kDigits + 1, ' ', digest) &&
                         DigitsAt(head, at += kDigits + 1, '\n', size);
    return isWhole && version == kVersion;
}

bool StoreHead::Write(std::FILE* file, bool textMode) const
{
    std::string head(textMode ? kTextMagic : kBinaryMagic);
    if (textMode)
    {
        AppendDigits(head, kVersion, ' ');
        AppendDigits(head, digest, ' ');
        AppendDigits(head, size, '\n');
    }
    else
    {
        AppendNumber(head, kVersion);
        AppendNumber(head, std::uint32_t{0});
        AppendNumber(head, digest);
        AppendNumber(head, size);
    }
    return std::fwrite(head.data(), 1, head.size(), file) == head.size();
}

}  // namespace KVR

#include "geometry/NumberTexts.h"

#include <cstdint>
#include <string_view>

#include "framework/api/StringUtil.h"
#include "framework/xml_util/ReadObserver.h"

namespace KVR
{

namespace
{

constexpr char16_t kSeparator = u' ';
constexpr char kEnd = ' ';

template <class Character>
constexpr bool IsWhiteSpace(Character c)
{
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

// A character beyond ASCII becomes one that no number holds.
constexpr char Narrowed(char16_t c)
{
    return c < 0x80 ? static_cast<char>(c) : '\x7F';
}

constexpr double kPowersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,
                                   1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19};
constexpr double kMinusPowersOfTen[] = {-1e0,  -1e1,  -1e2,  -1e3,  -1e4,  -1e5,  -1e6,  -1e7,  -1e8,  -1e9,
                                        -1e10, -1e11, -1e12, -1e13, -1e14, -1e15, -1e16, -1e17, -1e18, -1e19};
// Up to here every integer is a double.
constexpr std::uint64_t kLargestExact = std::uint64_t{1} << 53U;
// So many digits never overflow 64 bits.
constexpr int kMostDigits = 19;

// Reads a run of digits behind those in `mantissa`.
char const* ReadDigits(char const* at, std::uint64_t& mantissa)
{
    for (; *at >= '0' && *at <= '9'; ++at)
        mantissa = mantissa * 10 + static_cast<std::uint64_t>(*at - '0');
    return at;
}

// Converts the text that begins there; the answer is where the next one does. The plain form that nearly all
// coordinates have is read here: digits with perhaps a sign and a point, few enough that mantissa and power of ten are
// doubles exactly, so that their quotient is the nearest double to the text. Any other is left to the common
// conversion, which is half as fast.
char const* ReadNumber(char const* start, double& value)
{
    bool const isNegative = *start == '-';
    char const* const first = start + static_cast<std::ptrdiff_t>(isNegative);
    std::uint64_t mantissa = 0;
    char const* end = ReadDigits(first, mantissa);
    std::ptrdiff_t digits = end - first;
    std::ptrdiff_t decimals = 0;
    if (*end == '.')
    {
        char const* const point = end + 1;
        end = ReadDigits(point, mantissa);
        decimals = end - point;
        digits += decimals;
    }
    if (*end == kEnd && digits > 0 && digits <= kMostDigits && mantissa <= kLargestExact)
    {
        value = static_cast<double>(mantissa) / (isNegative ? kMinusPowersOfTen : kPowersOfTen)[decimals];
    }
    else
    {
        while (*end != kEnd)
            ++end;
        // A text that is no number leaves the value alone.
        static_cast<void>(StringUtil::ToDouble(std::string_view(start, end), value));
    }
    return end + 1;
}

// Whether the texts, each with a blank behind it, all convert.
bool AreNumbers(std::string_view texts)
{
    double value = 0.0;
    for (std::size_t at = 0; at < texts.size();)
    {
        std::size_t const end = texts.find(kEnd, at);
        if (StringUtil::ToDouble(texts.substr(at, end - at), value) != StringUtil::kConversionStatus_Success)
            return false;
        at = end + 1;
    }
    return true;
}

}  // namespace

void NumberTexts::Append(XMLCh const* text)
{
    if (!text)
        return;
    XMLCh const* const whole = text;
    std::size_t const former = m_texts.size();
    // Each piece takes what it has in the text and a blank, so that this is enough.
    m_texts.resize(former + std::char_traits<char16_t>::length(text) + 1);
    char* const begin = m_texts.data();
    char* out = begin + former;
    for (;;)
    {
        while (IsWhiteSpace(*text))
            ++text;
        if (*text == 0)
            break;
        if (m_count++ % kRow == 0)
            m_rows.push_back(static_cast<std::size_t>(out - begin));
        for (; *text != 0 && *text != kSeparator; ++text)
            *out++ = Narrowed(*text);
        // The piece begins with what is no white space.
        while (IsWhiteSpace(out[-1]))
            --out;
        *out++ = kEnd;
    }
    m_texts.resize(static_cast<std::size_t>(out - begin));
    if (Observer()) [[unlikely]]
        ToldText(whole, TextForm::kNumberList, AreNumbers(std::string_view(m_texts).substr(former)));
}

void NumberTexts::ReleaseSpare()
{
    if (m_texts.capacity() / 2 > m_texts.size())
        m_texts.shrink_to_fit();
}

void NumberTexts::ReadRow(std::size_t index, double& x, double& y, double& z) const
{
    char const* const behindX = ReadNumber(m_texts.data() + m_rows[index], x);
    char const* const behindY = ReadNumber(behindX, y);
    ReadNumber(behindY, z);
}

}  // namespace KVR

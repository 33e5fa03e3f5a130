#include "framework/xml_util/XMLStrUtil.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include "framework/api/Matrix3d.h"
#include "framework/api/StringUtil.h"
#include "framework/api/Unicode.h"
#include "framework/api/UnitText.h"
#include "framework/xml_util/ReadObserver.h"

namespace KVR
{

namespace
{

std::u16string_view ViewOf(XMLCh const* text)
{
    return text ? std::u16string_view(text) : std::u16string_view();
}

// Document text as narrow text of ASCII for the length of a scope: on the stack when it is short, as numbers are. A
// character beyond ASCII becomes a byte that no number holds.
template <std::size_t kShort>
class AsciiText
{
public:
    explicit AsciiText(std::u16string_view text) : m_size(text.size())
    {
        if (text.size() >= kShort)
            m_long.resize(text.size());
        char* const out = text.size() < kShort ? m_short.data() : m_long.data();
        m_text = out;
        // Without a branch, so that many characters are converted at a time.
        *std::transform(text.begin(), text.end(), out,
                        [](char16_t c) { return static_cast<char>(std::min<char16_t>(c, 0x7F)); }) = '\0';
    }

    char const* Value() const { return m_text; }
    std::string_view View() const { return {m_text, m_size}; }

private:
    std::array<char, kShort> m_short;
    std::string m_long;
    char const* m_text;
    std::size_t m_size;
};

using NumberText = AsciiText<257>;

// Of the characters of numbers only the plus stands below the comma.
constexpr bool IsSeparator(char c)
{
    return c <= ',' && (c == ' ' || c == ',' || (c >= '\t' && c <= '\r'));
}

constexpr bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

// Reads the number that begins at `at`, up to a separator or the end, and goes behind it.
bool ReadElement(std::string_view text, std::string_view::const_iterator& at, double& element)
{
    auto const isEnd = [&](auto place) { return place == text.end() || IsSeparator(*place); };
    // The texts of most elements are one digit.
    if (IsDigit(*at) && isEnd(at + 1))
    {
        element = *at++ - '0';
        return true;
    }
    if (IsDigit(*at) || (*at == '-' && at + 1 != text.end() && IsDigit(at[1])))
    {
        auto const [end, error] = std::from_chars(&*at, text.data() + text.size(), element);
        at = text.begin() + (end - text.data());
        return error == std::errc() && isEnd(at);
    }
    auto const end = std::find_if(at, text.end(), IsSeparator);
    std::string_view const piece(at, end);
    at = end;
    return StringUtil::ToDouble(piece, element) == StringUtil::kConversionStatus_Success;
}

// Parses in place; StringUtil would want each number to stand by itself.
bool ReadElements(std::string_view text, std::array<double, Matrix3d::kElementCount>& elements)
{
    std::size_t count = 0;
    auto at = text.begin();
    for (;;)
    {
        at = std::find_if_not(at, text.end(), IsSeparator);
        if (at == text.end())
            return count == elements.size();
        if (count == elements.size() || !ReadElement(text, at, elements[count++]))
            return false;
    }
}

bool ReadTransform(std::string_view text, Matrix3d& matrix)
{
    std::array<double, Matrix3d::kElementCount> elements;
    bool const isRead = ReadElements(text, elements);
    if (isRead)
        matrix.SetElements(elements);
    return isRead;
}

constexpr std::string_view kWhiteSpace = " \t\r\n";

std::string_view Trimmed(std::string_view text)
{
    auto const first = text.find_first_not_of(kWhiteSpace);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(kWhiteSpace) - first + 1);
}

}  // namespace

UTF8String XMLStrUtil::XMLStrToAStr(XMLCh const* text)
{
    return UTF8String(Unicode::Utf8FromUtf16(ViewOf(text)));
}
UTF16String XMLStrUtil::XMLStrToWStr(XMLCh const* text)
{
    return UTF16String(Unicode::WideFromUtf16(ViewOf(text)));
}

int XMLStrUtil::XMLStrToInt(XMLCh const* text)
{
    int value = 0;
    NumberText const narrow(ViewOf(text));
    // No failure signal: what does not convert stays 0.
    static_cast<void>(ToldText(text, TextForm::kInteger,
                               StringUtil::ToInt(narrow.Value(), value, 10) == StringUtil::kConversionStatus_Success));
    return value;
}

bool XMLStrUtil::XMLStrToDouble(XMLCh const* text, double& value)
{
    NumberText const narrow(ViewOf(text));
    return ToldText(text, TextForm::kNumber,
                    StringUtil::ToDouble(narrow.View(), value) == StringUtil::kConversionStatus_Success);
}

void XMLStrUtil::SplitStr(UTF8String const& text, UTF8String const& separator, std::vector<UTF8String>& pieces)
{
    std::string_view rest = text.View();
    auto const add = [&](std::string_view piece)
    {
        if (std::string_view const trimmed = Trimmed(piece); !trimmed.empty())
            pieces.emplace_back(trimmed);
    };
    while (!separator.IsEmpty())
    {
        auto const at = rest.find(separator.View());
        if (at == std::string_view::npos)
            break;
        add(rest.substr(0, at));
        rest.remove_prefix(at + separator.Size());
    }
    add(rest);
}

void XMLStrUtil::GetTransfFromStr(UTF8String const& text, Matrix3d& matrix)
{
    ReadTransform(text.View(), matrix);
}

void XMLStrUtil::GetTransfFromStr(XMLCh const* text, Matrix3d& matrix)
{
    AsciiText<1024> const narrow(ViewOf(text));
    bool const isRead = ReadTransform(narrow.View(), matrix);
    if (ReadObserver* const observer = Observer()) [[unlikely]]
    {
        TextReading reading;
        reading.text = text;
        reading.form = TextForm::kTransform;
        reading.isUnderstood = isRead;
        reading.transform = &matrix;
        observer->TextRead(reading);
    }
}

bool XMLStrUtil::StringToUnitType(UTF8String const& text, UnitTypeEnum& unit)
{
    return UnitOfText(text.View(), unit);
}

bool XMLStrUtil::StringToUnitType(XMLCh const* text, UnitTypeEnum& unit)
{
    return ToldText(text, TextForm::kUnit, StringToUnitType(XMLStrToAStr(text), unit));
}

char const* XMLStrUtil::UnitTypeToString(UnitTypeEnum unit) noexcept
{
    return TextOfUnit(unit);
}

}  // namespace KVR

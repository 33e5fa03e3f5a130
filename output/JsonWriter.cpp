#include "output/JsonWriter.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <string_view>

#include "output/Output.h"
#include "output/SafeText.h"

namespace KVR
{

namespace
{

constexpr std::size_t kIndent = 2;
// Deeper levels are not indented further, so that the text of a deep document grows with its content alone.
constexpr std::size_t kDeepestIndent = 64;

constexpr std::string_view kSpaces = "        ";

// As long as any number is, with room to spare.
constexpr std::size_t kMostOfNumber = 32;
// As long as any separator is: a comma, a line end, and spaces, of which there may be some too many at first.
constexpr std::size_t kMostOfSeparator = 2 + kIndent * kDeepestIndent + kSpaces.size();
// Longer keys are rare.
constexpr std::size_t kMostOfKey = 256;
constexpr std::string_view kEndOfKey = "\": ";
// Of a list of numbers room is made for so many at once.
constexpr std::size_t kAtOnce = 16;
constexpr std::size_t kMostOfRow = kAtOnce * (kMostOfNumber + 2);

// Each writes behind `place`, where there is room for it, and answers the end.

char* PutText(char* place, std::string_view text)
{
    return std::copy(text.begin(), text.end(), place);
}

template <class Integer>
char* PutNumber(char* place, Integer value)
{
    return std::to_chars(place, place + kMostOfNumber, value).ptr;
}

char* PutNumber(char* place, double value)
{
    if (!std::isfinite(value))
        return PutText(place, "null");
    char* end = std::to_chars(place, place + kMostOfNumber, value).ptr;
    // Without a fraction readers take "-0" for an integer, which has no negative zero.
    if (value == 0.0 && std::signbit(value))
    {
        *end++ = '.';
        *end++ = '0';
    }
    return end;
}

}  // namespace

JsonWriter::JsonWriter(Output& out) : m_out(out) {}

void JsonWriter::BeginObject(Layout layout)
{
    Begin('{', layout);
}
void JsonWriter::EndObject()
{
    End('}');
}
void JsonWriter::BeginList(Layout layout)
{
    Begin('[', layout);
}
void JsonWriter::EndList()
{
    End(']');
}

void JsonWriter::Key(std::string_view name)
{
    char* place = Separated(kMostOfKey + 1 + kEndOfKey.size());
    *place++ = '"';
    if (name.size() <= kMostOfKey && IsPlainText(name))
    {
        m_out.EndAt(PutText(PutText(place, name), kEndOfKey));
    }
    else
    {
        m_out.EndAt(place);
        PutEscaped(m_out, name);
        m_out.Put(kEndOfKey);
    }
    m_hasKey = true;
}

void JsonWriter::Null()
{
    m_out.EndAt(PutText(Separated(kMostOfNumber), "null"));
}

void JsonWriter::Bool(bool value)
{
    m_out.EndAt(PutText(Separated(kMostOfNumber), value ? "true" : "false"));
}

void JsonWriter::Integer(long long value)
{
    m_out.EndAt(PutNumber(Separated(kMostOfNumber), value));
}

void JsonWriter::Unsigned(unsigned long long value)
{
    m_out.EndAt(PutNumber(Separated(kMostOfNumber), value));
}

void JsonWriter::Number(double value)
{
    m_out.EndAt(PutNumber(Separated(kMostOfNumber), value));
}

// Most of a dump of meshes is this: nothing is asked or called for each number that one answer for the list will do
// for.
template <class Value>
void JsonWriter::PutRow(std::span<Value const> values)
{
    char* place = Separated(kMostOfRow + 2);
    *place++ = '[';
    for (std::size_t i = 0; i < values.size(); ++i)
    {
        if (i > 0)
        {
            if (i % kAtOnce == 0)
            {
                m_out.EndAt(place);
                place = m_out.Room(kMostOfRow + 2);
            }
            *place++ = ',';
            *place++ = ' ';
        }
        place = PutNumber(place, values[i]);
    }
    *place++ = ']';
    m_out.EndAt(place);
}

void JsonWriter::Row(std::span<double const> values)
{
    PutRow(values);
}
void JsonWriter::Row(std::span<int const> values)
{
    PutRow(values);
}
void JsonWriter::Row(std::span<unsigned int const> values)
{
    PutRow(values);
}

void JsonWriter::String(std::string_view text)
{
    m_out.EndAt(Separated(0));
    m_out.Put('"');
    PutEscaped(m_out, text);
    m_out.Put('"');
}

void JsonWriter::Base64(void const* bytes, std::size_t size)
{
    static constexpr std::string_view kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    m_out.EndAt(Separated(0));
    m_out.Put('"');
    auto const* data = static_cast<unsigned char const*>(bytes);
    for (std::size_t i = 0; i < size; i += 3)
    {
        std::size_t const count = std::min<std::size_t>(3, size - i);
        unsigned group = data[i] << 16U;
        if (count > 1)
            group |= data[i + 1] << 8U;
        if (count > 2)
            group |= data[i + 2];
        for (std::size_t digit = 0; digit < 4; ++digit)
            m_out.Put(digit <= count ? kDigits[(group >> (18 - 6 * digit)) & 0x3F] : '=');
    }
    m_out.Put('"');
}

void JsonWriter::EndDocument()
{
    m_out.Put('\n');
}

char* JsonWriter::Separated(std::size_t room)
{
    char* place = m_out.Room(kMostOfSeparator + room);
    if (m_hasKey)
    {
        m_hasKey = false;
        return place;
    }
    if (m_levels.empty())
        return place;
    Level& level = m_levels.back();
    if (!level.isEmpty)
        *place++ = ',';
    if (!level.isRow)
        place = PutLine(place);
    else if (!level.isEmpty)
        *place++ = ' ';
    level.isEmpty = false;
    return place;
}

char* JsonWriter::PutLine(char* place) const
{
    *place++ = '\n';
    std::size_t const indent = kIndent * std::min(m_levels.size(), kDeepestIndent);
    for (std::size_t at = 0; at < indent; at += kSpaces.size())
        std::memcpy(place + at, kSpaces.data(), kSpaces.size());
    return place + indent;
}

void JsonWriter::Begin(char bracket, Layout layout)
{
    char* place = Separated(1);
    *place++ = bracket;
    m_out.EndAt(place);
    bool const isRow = layout == Layout::Row || (!m_levels.empty() && m_levels.back().isRow);
    m_levels.push_back({isRow, true});
}

void JsonWriter::End(char bracket)
{
    Level const level = m_levels.back();
    m_levels.pop_back();
    char* place = m_out.Room(kMostOfSeparator + 1);
    if (!level.isEmpty && !level.isRow)
        place = PutLine(place);
    *place++ = bracket;
    m_out.EndAt(place);
}

}  // namespace KVR

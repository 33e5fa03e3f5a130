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

// As long as any number is, with room to spare.
constexpr std::size_t kMostOfNumber = 32;

// Each writes behind `place`, where there is room for kMostOfNumber, and answers the end.

template <class Integer>
char* PutNumber(char* place, Integer value)
{
    return std::to_chars(place, place + kMostOfNumber, value).ptr;
}

char* PutNumber(char* place, double value)
{
    static constexpr std::string_view kNull = "null";
    if (!std::isfinite(value))
        return std::copy(kNull.begin(), kNull.end(), place);
    char* end = std::to_chars(place, place + kMostOfNumber, value).ptr;
    // Without a fraction readers take "-0" for an integer, which has no negative zero.
    if (value == 0.0 && std::signbit(value))
    {
        *end++ = '.';
        *end++ = '0';
    }
    return end;
}

template <class Number>
void Put(Output& out, Number value)
{
    out.EndAt(PutNumber(out.Room(kMostOfNumber), value));
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
    Separate();
    m_out.Put('"');
    PutEscaped(m_out, name);
    m_out.Put("\": ");
    m_hasKey = true;
}

void JsonWriter::Null()
{
    Separate();
    m_out.Put("null");
}

void JsonWriter::Bool(bool value)
{
    Separate();
    m_out.Put(value ? "true" : "false");
}

void JsonWriter::Integer(long long value)
{
    Separate();
    Put(m_out, value);
}

void JsonWriter::Unsigned(unsigned long long value)
{
    Separate();
    Put(m_out, value);
}

void JsonWriter::Number(double value)
{
    Separate();
    Put(m_out, value);
}

// Most of a dump of meshes is this: nothing is asked or called for each number that one answer for the list will do
// for.
template <class Value>
void JsonWriter::PutRow(std::span<Value const> values)
{
    Separate();
    m_out.Put('[');
    for (std::size_t i = 0; i < values.size(); ++i)
    {
        char* place = m_out.Room(kMostOfNumber + 2);
        if (i > 0)
        {
            *place++ = ',';
            *place++ = ' ';
        }
        m_out.EndAt(PutNumber(place, values[i]));
    }
    m_out.Put(']');
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
    Separate();
    m_out.Put('"');
    PutEscaped(m_out, text);
    m_out.Put('"');
}

void JsonWriter::Base64(void const* bytes, std::size_t size)
{
    static constexpr std::string_view kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    Separate();
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

void JsonWriter::Separate()
{
    if (m_hasKey)
    {
        m_hasKey = false;
        return;
    }
    if (m_levels.empty())
        return;
    Level& level = m_levels.back();
    if (!level.isEmpty)
        m_out.Put(level.isRow ? ", " : ",");
    level.isEmpty = false;
    if (!level.isRow)
        NewLine();
}

void JsonWriter::NewLine()
{
    std::size_t const indent = kIndent * std::min(m_levels.size(), kDeepestIndent);
    char* const place = m_out.Room(indent + 1);
    *place = '\n';
    std::memset(place + 1, ' ', indent);
    m_out.EndAt(place + 1 + indent);
}

void JsonWriter::Begin(char bracket, Layout layout)
{
    Separate();
    m_out.Put(bracket);
    bool const isRow = layout == Layout::Row || (!m_levels.empty() && m_levels.back().isRow);
    m_levels.push_back({isRow, true});
}

void JsonWriter::End(char bracket)
{
    Level const level = m_levels.back();
    m_levels.pop_back();
    if (!level.isEmpty && !level.isRow)
        NewLine();
    m_out.Put(bracket);
}

}  // namespace KVR

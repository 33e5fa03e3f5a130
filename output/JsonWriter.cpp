#include "output/JsonWriter.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "output/Output.h"
#include "output/SafeText.h"

namespace KVR
{

namespace
{

constexpr std::size_t kIndent = 2;
// Deeper levels are not indented further, so that the text of a deep document grows with its content alone.
constexpr std::size_t kDeepestIndent = 64;

template <class Number>
std::string_view TextOf(Number value, std::array<char, 32>& buffer)
{
    auto const end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr;
    return {buffer.data(), static_cast<std::size_t>(end - buffer.data())};
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
    std::array<char, 32> buffer;
    m_out.Put(TextOf(value, buffer));
}

void JsonWriter::Unsigned(unsigned long long value)
{
    Separate();
    std::array<char, 32> buffer;
    m_out.Put(TextOf(value, buffer));
}

void JsonWriter::Number(double value)
{
    if (!std::isfinite(value))
    {
        Null();
        return;
    }
    Separate();
    std::array<char, 32> buffer;
    m_out.Put(TextOf(value, buffer));
    // Without a fraction readers take "-0" for an integer, which has no negative zero.
    if (value == 0.0 && std::signbit(value))
        m_out.Put(".0");
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
    m_out.Put('\n');
    m_out.PutSpaces(kIndent * std::min(m_levels.size(), kDeepestIndent));
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

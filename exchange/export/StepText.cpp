#include "exchange/export/StepText.h"

#include <fmt/format.h>

#include "output/Output.h"

namespace KVR
{

namespace
{

constexpr std::uint32_t kReplacement = 0xFFFD;

}  // namespace

void StepText::Finish()
{
    if (m_missing > 0)
        PutCharacter(kReplacement);
    m_missing = 0;
    Enter(Escape::kNone);
}

StepText::int_type StepText::overflow(int_type byte)
{
    if (!traits_type::eq_int_type(byte, traits_type::eof()))
        Put(static_cast<unsigned char>(traits_type::to_char_type(byte)));
    return traits_type::not_eof(byte);
}

std::streamsize StepText::xsputn(char const* bytes, std::streamsize count)
{
    for (std::streamsize i = 0; i < count; ++i)
        Put(static_cast<unsigned char>(bytes[i]));
    return count;
}

void StepText::Put(unsigned char byte)
{
    bool const isInside = m_missing > 0 || m_escape != Escape::kNone;
    if (byte == '\n' && isInside)
        return;
    if ((byte & 0xC0U) == 0x80U && m_missing > 0)
    {
        m_character = m_character << 6U | (byte & 0x3FU);
        if (--m_missing == 0)
        {
            bool const isGood =
                m_character >= m_least && m_character <= 0x10FFFF && (m_character < 0xD800 || m_character > 0xDFFF);
            PutCharacter(isGood ? m_character : kReplacement);
        }
        return;
    }
    if (m_missing > 0)
    {
        m_missing = 0;
        PutCharacter(kReplacement);
    }
    if (byte < 0x80)
    {
        Enter(Escape::kNone);
        m_out.Put(static_cast<char>(byte));
        return;
    }
    if ((byte & 0xE0U) == 0xC0U)
    {
        m_missing = 1;
        m_character = byte & 0x1FU;
        m_least = 0x80;
    }
    else if ((byte & 0xF0U) == 0xE0U)
    {
        m_missing = 2;
        m_character = byte & 0x0FU;
        m_least = 0x800;
    }
    else if ((byte & 0xF8U) == 0xF0U)
    {
        m_missing = 3;
        m_character = byte & 0x07U;
        m_least = 0x10000;
    }
    else
    {
        PutCharacter(kReplacement);
    }
}

void StepText::PutCharacter(std::uint32_t character)
{
    if (character < 0x10000)
    {
        Enter(Escape::kTwoBytes);
        m_out.Put(fmt::format("{:04X}", character));
    }
    else
    {
        Enter(Escape::kFourBytes);
        m_out.Put(fmt::format("{:08X}", character));
    }
}

void StepText::Enter(Escape escape)
{
    if (escape == m_escape)
        return;
    if (m_escape != Escape::kNone)
        m_out.Put("\\X0\\");
    if (escape == Escape::kTwoBytes)
        m_out.Put("\\X2\\");
    if (escape == Escape::kFourBytes)
        m_out.Put("\\X4\\");
    m_escape = escape;
}

}  // namespace KVR

#include "inspect/estimate/DocumentBytes.h"

#include <string_view>

#include "framework/api/Unicode.h"

namespace KVR
{

namespace
{

constexpr std::size_t kPiece = std::size_t{256} * 1024;

}  // namespace

DocumentBytes::DocumentBytes(std::FILE* file) : m_file(file), m_raw(kPiece, '\0')
{
    m_next = m_end = m_raw.data();
    if (Fill())
        FindEncoding();
}

// By the first bytes, as XML tells: a mark of the byte order, or how "<?" or "<" and a letter stand.
void DocumentBytes::FindEncoding()
{
    using namespace std::literals;
    std::string_view const head(m_next, static_cast<std::size_t>(m_end - m_next));
    if (head.starts_with("\xEF\xBB\xBF"sv))
        m_next += 3;
    else if (head.starts_with("\0\0"sv) || head.starts_with("\xFF\xFE\0\0"sv) || head.starts_with("<\0\0"sv) ||
             head.starts_with("\x4C\x6F"sv))
        m_encoding = Encoding::kOther;
    else if (head.starts_with("\xFF\xFE"sv) || head.starts_with("<\0"sv))
        m_encoding = Encoding::kUtf16Low;
    else if (head.starts_with("\xFE\xFF"sv) || head.starts_with("\0<"sv))
        m_encoding = Encoding::kUtf16High;
    if (m_encoding == Encoding::kOther)
        m_next = m_end;
    else if (m_encoding != Encoding::kAscii)
        FromUtf16();
}

bool DocumentBytes::Fill()
{
    if (m_encoding == Encoding::kOther)
        return false;
    do
    {
        std::size_t const got = std::fread(m_raw.data(), 1, m_raw.size(), m_file);
        m_next = m_raw.data();
        m_end = m_next + got;
        if (got == 0)
            return false;
        if (m_encoding != Encoding::kAscii)
            FromUtf16();
    } while (m_next == m_end);
    return true;
}

// An odd byte at the end of a piece is that of the file: pieces have an even size.
void DocumentBytes::FromUtf16()
{
    bool const isLow = m_encoding == Encoding::kUtf16Low;
    for (char const* byte = m_next; m_end - byte >= 2; byte += 2)
    {
        auto const first = static_cast<unsigned char>(byte[0]);
        auto const second = static_cast<unsigned char>(byte[1]);
        auto const unit = static_cast<char16_t>(isLow ? first | second << 8 : second | first << 8);
        if (unit != 0xFEFF)
            m_units.push_back(unit);
    }
    bool const isCut = !m_units.empty() && m_units.back() >= 0xD800 && m_units.back() < 0xDC00;
    char16_t const last = isCut ? m_units.back() : u'\0';
    if (isCut)
        m_units.pop_back();
    m_text = Unicode::Utf8FromUtf16(m_units);
    m_units.assign(isCut ? 1 : 0, last);
    m_next = m_text.data();
    m_end = m_next + m_text.size();
}

}  // namespace KVR

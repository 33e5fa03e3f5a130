#include "framework/kernel/store/ShapeBytes.h"

#include <algorithm>
#include <charconv>
#include <cstring>

#include "framework/kernel/store/StoreStream.h"

namespace KVR
{

namespace
{
constexpr std::size_t kWindow = 64 * 1024;
constexpr std::size_t kLongestCount = 16;
}  // namespace

ShapeBytes::ShapeBytes(StoreReadBuffer& content)
    : m_content(content), m_buffer(std::make_unique<char[]>(kWindow)), m_at(m_buffer.get()), m_end(m_buffer.get())
{
}

ShapeBytes::~ShapeBytes() = default;

void ShapeBytes::Refill()
{
    if (!m_isGood)
        return;
    auto const kept = static_cast<std::size_t>(m_end - m_at);
    std::memmove(m_buffer.get(), m_at, kept);
    auto const got = m_content.sgetn(m_buffer.get() + kept, static_cast<std::streamsize>(kWindow - kept));
    m_at = m_buffer.get();
    m_end = m_at + kept + got;
}

void ShapeBytes::Skip(std::uint64_t count)
{
    while (count > 0)
    {
        std::size_t const piece = std::min<std::uint64_t>(count, Ahead(1).size());
        if (piece == 0)
            return Fail();
        Pass(piece);
        count -= piece;
    }
}

void ShapeBytes::SkipBlanks()
{
    while (m_at != m_end || !Ahead(1).empty())
    {
        m_at = std::find_if_not(m_at, m_end, IsBlank);
        if (m_at != m_end)
            return;
    }
}

void ShapeBytes::Expect(std::string_view text)
{
    if (!Ahead(text.size()).starts_with(text))
        return Fail();
    Pass(text.size());
}

void ShapeBytes::LineEnd()
{
    Expect(Ahead(2).starts_with("\r\n") ? "\r\n" : "\n");
}

int ShapeBytes::Section(std::string_view title)
{
    SkipBlanks();
    Expect(title);
    Expect(" ");
    std::string_view const ahead = Ahead(kLongestCount);
    int count = 0;
    auto const result = std::from_chars(ahead.data(), ahead.data() + ahead.size(), count);
    if (result.ec != std::errc() || count < 0)
    {
        Fail();
        return 0;
    }
    Pass(static_cast<std::size_t>(result.ptr - ahead.data()));
    LineEnd();
    return count;
}

}  // namespace KVR

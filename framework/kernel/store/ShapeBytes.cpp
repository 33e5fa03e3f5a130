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

std::uint64_t ShapeBytes::Left() const noexcept
{
    return m_content.Remaining() + static_cast<std::uint64_t>(m_end - m_at);
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

void ShapeBytes::SkipBlankLines()
{
    char last = '\n';
    for (std::string_view ahead = Ahead(1); !ahead.empty() && IsBlank(ahead[0]); ahead = Ahead(1))
    {
        last = ahead[0];
        Pass(1);
    }
    Require(last == '\n');
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

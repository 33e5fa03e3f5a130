#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

namespace KVR
{

class StoreReadBuffer;

/// The bytes of a store's shapes. A failure stays: what is read behind it is
/// zero, and no byte is ahead.
class ShapeBytes
{
public:
    explicit ShapeBytes(StoreReadBuffer& content);
    ~ShapeBytes();
    ShapeBytes(ShapeBytes const&) = delete;
    ShapeBytes& operator=(ShapeBytes const&) = delete;

    bool IsGood() const noexcept { return m_isGood; }
    void Require(bool condition) noexcept
    {
        if (!condition)
            Fail();
    }

    /// Passes the text, which has to be ahead.
    void Expect(std::string_view text);
    /// Passes the end of a line, in either form.
    void LineEnd();
    /// Passes a title behind any blanks, its count, which is not negative, and the line's end.
    int Section(std::string_view title);

    /// A count, or as many as there can be ahead where each takes so many bytes: what may be set aside for them.
    std::size_t Within(int count, std::size_t size) const noexcept
    {
        return static_cast<std::size_t>(std::min(static_cast<std::uint64_t>(count), Left() / size));
    }

protected:
    /// The bytes ahead that stand together: as many as wanted, up to 64 KiB, and fewer only at the content's end.
    std::string_view Ahead(std::size_t wanted)
    {
        if (static_cast<std::size_t>(m_end - m_at) < wanted)
            Refill();
        return {m_at, static_cast<std::size_t>(m_end - m_at)};
    }
    /// Passes bytes that were ahead.
    void Pass(std::size_t count) noexcept { m_at += count; }
    /// All bytes ahead, also those that stand elsewhere yet.
    std::uint64_t Left() const noexcept;
    /// Passes so many bytes and gives where they stand; nullptr when there are fewer. At most 64 KiB.
    char const* Take(std::size_t count)
    {
        if (Ahead(count).size() < count)
        {
            Fail();
            return nullptr;
        }
        m_at += count;
        return m_at - count;
    }
    void SkipBlanks();
    /// Blanks, of which the last ends a line.
    void SkipBlankLines();

private:
    void Refill();
    void Fail() noexcept
    {
        m_isGood = false;
        m_at = m_end;
    }

    StoreReadBuffer& m_content;
    std::unique_ptr<char[]> m_buffer;
    char const* m_at;
    char const* m_end;
    bool m_isGood = true;
};

/// What parts words for a stream with the classic locale.
constexpr bool IsBlank(char character) noexcept
{
    return character == ' ' || (character >= '\t' && character <= '\r');
}

}  // namespace KVR

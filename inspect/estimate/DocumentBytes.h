#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>

namespace KVR
{

/// The text of a document as bytes, one after the other: in UTF-8 or another encoding in which ASCII stands as itself,
/// or in UTF-16, which is turned into UTF-8. Holds a piece of the file at a time.
class DocumentBytes
{
public:
    static constexpr int kEnd = -1;

    /// The file, at its beginning, must outlive the object.
    explicit DocumentBytes(std::FILE* file);

    /// False for encodings in which ASCII does not stand as itself, other than UTF-16: nothing can be read then.
    bool IsKnownEncoding() const noexcept { return m_encoding != Encoding::kOther; }
    /// Whether the system failed to read the file to its end.
    bool HasFailed() const noexcept { return std::ferror(m_file) != 0; }

    /// The next byte, which stays where it is; kEnd behind the last one.
    int Peek() { return m_next != m_end || Fill() ? static_cast<unsigned char>(*m_next) : kEnd; }
    /// The next byte, which is consumed.
    int Take()
    {
        int const byte = Peek();
        if (byte != kEnd)
            ++m_next;
        return byte;
    }
    /// Goes behind the next such byte, and adds the number of bytes in front of it. False when there is none, with all
    /// consumed.
    bool SkipPast(char byte, std::uint64_t& passed)
    {
        while (m_next != m_end || Fill())
        {
            auto const size = static_cast<std::size_t>(m_end - m_next);
            auto const* const found = static_cast<char const*>(std::memchr(m_next, byte, size));
            passed += static_cast<std::uint64_t>((found ? found : m_end) - m_next);
            m_next = found ? found + 1 : m_end;
            if (found)
                return true;
        }
        return false;
    }

private:
    enum class Encoding
    {
        kAscii,
        kUtf16Low,
        kUtf16High,
        kOther
    };

    bool Fill();
    void FindEncoding();
    void FromUtf16();

    std::FILE* m_file;
    Encoding m_encoding = Encoding::kAscii;
    std::string m_raw;
    /// UTF-8 that was made of UTF-16, and the first half of a pair whose second half is in the next piece.
    std::string m_text;
    std::u16string m_units;
    char const* m_next = nullptr;
    char const* m_end = nullptr;
};

}  // namespace KVR

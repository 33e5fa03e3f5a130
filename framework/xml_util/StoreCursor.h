#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string_view>
#include <vector>

#include "framework/api/UTF8String.h"
#include "framework/xml_util/Export.h"

namespace KVR
{

/// Reads the records of a binary store, field by field in file order, from an open file that it does not own. A field
/// that the file cannot deliver leaves its output alone, and what was left of the file is then consumed. Counts in a
/// file are claims: Expect weighs each before a list is built.
class KVR_XML_UTIL_API StoreCursor
{
public:
    /// What lists may take, over one whole file, for items that the file claims and does not hold.
    static constexpr unsigned long long kClaimLimit = 64ULL * 1024 * 1024;
    /// The bytes that a cursor over a whole store reads at a time.
    static constexpr std::size_t kWholeStore = 256 * 1024;
    /// Reads nothing beyond the fields asked for, so that the file's own position stays behind the last one.
    static constexpr std::size_t kFieldsOnly = 0;

    StoreCursor(std::FILE* file, bool swapBytes, std::size_t readAhead);
    ~StoreCursor();
    StoreCursor(StoreCursor const&) = delete;
    StoreCursor& operator=(StoreCursor const&) = delete;

    /// One number, little-endian in the file; whether it was there.
    bool Read(unsigned long long& value) { return ReadItem(value); }
    bool Read(unsigned int& value) { return ReadItem(value); }
    bool Read(double& value) { return ReadItem(value); }
    /// Three doubles, each by itself; whether all were there.
    bool Read(double& x, double& y, double& z);
    /// One byte, of which any value but 0 is true; whether it was there.
    bool Read(bool& flag);
    /// A u64 length in bytes and that many bytes of UTF-8; whether all were there.
    bool Read(UTF8String& text);
    /// The same where it stands, not copied: valid until the next call.
    bool Read(std::string_view& text);
    /// So many doubles in a row; the number that were there.
    std::size_t ReadDoubles(double* values, std::size_t count);
    /// So many u64 in a row, each narrowed to 32 bits; the number that were there.
    std::size_t ReadIndices(std::int32_t* indices, std::size_t count);
    /// So many u64 in a row at most, as long as each is one more than the one before; the number of them. `first` is
    /// left alone when there is none. It may be 0 although there are some where bytes have to be swapped.
    std::size_t ReadRun(unsigned long long& first, std::size_t count);

    /// The next bytes in the file's own order, not yet consumed; null when there are fewer or bytes have to be swapped,
    /// in which case the fields have to be read one by one. Valid until the next call.
    unsigned char const* Peek(std::size_t count)
    {
        if (m_swapBytes || (m_end - m_next < count && (Remaining() < count || !Fill(count))))
            return nullptr;
        return m_buffer.data() + m_next;
    }
    /// The bytes that stand there, those that Peek gave among them.
    std::size_t Peeked() const noexcept { return m_end - m_next; }
    /// Consumes bytes that stand there.
    void Skip(std::size_t count)
    {
        m_next += count;
        m_position += count;
    }

    /// The bytes that are left.
    unsigned long long Remaining() const noexcept { return m_size - m_position; }
    /// Whether no field can be read any more.
    bool HasEnded() const noexcept { return m_position >= m_size; }
    /// The bytes that stand before the next field.
    unsigned long long Position() const noexcept { return m_position; }
    /// Goes to a place counted from the file's beginning; one beyond the end has nothing to read.
    void Seek(unsigned long long position);

    /// To be called before a list is built to a count: throws std::length_error "vector<T> too long" when the items
    /// that the rest of the file does not hold would take more memory than is left of the limit.
    void Expect(unsigned long long count, std::size_t bytesInFile, std::size_t bytesInMemory)
    {
        if (unsigned long long const held = Remaining() / bytesInFile; count > held)
            Claim(count - held, bytesInMemory);
    }
    /// The same for items that the file does not hold in any case.
    void Claim(unsigned long long count, std::size_t bytesInMemory);

private:
    template <class Item>
    bool ReadItem(Item& value)
    {
        unsigned char const* const bytes = Take(sizeof(Item));
        if (!bytes)
            return false;
        Load(value, bytes);
        return true;
    }

    template <class Item>
    void Load(Item& value, unsigned char const* bytes) const
    {
        unsigned char* const target = reinterpret_cast<unsigned char*>(&value);
        if (!m_swapBytes)
            __builtin_memcpy(target, bytes, sizeof(Item));
        else
            LoadSwapped(target, bytes, sizeof(Item));
    }

    static void LoadSwapped(unsigned char* target, unsigned char const* bytes, std::size_t size);

    /// The next bytes, valid until the next call; null, with the rest of the file consumed, when there are fewer.
    unsigned char const* Take(std::size_t count)
    {
        if (m_end - m_next < count && !Fill(count))
            return nullptr;
        unsigned char const* const bytes = m_buffer.data() + m_next;
        m_next += count;
        m_position += count;
        return bytes;
    }

    bool Fill(std::size_t count);
    bool ReadLength(unsigned long long& length);
    std::size_t ReadDirectly(double* values, std::size_t count);

    std::FILE* m_file;
    bool m_swapBytes;
    std::size_t m_readAhead;
    std::vector<unsigned char> m_buffer;
    std::size_t m_next = 0;
    std::size_t m_end = 0;
    unsigned long long m_position = 0;
    unsigned long long m_size = 0;
    unsigned long long m_claimed = 0;
    unsigned long long m_shortReads = 0;
};

}  // namespace KVR

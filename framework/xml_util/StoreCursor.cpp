#include "framework/xml_util/StoreCursor.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>

#include "framework/api/Subscript.h"
#include "framework/xml_util/ReadObserver.h"

namespace KVR
{

namespace
{
// The largest field that is taken in one piece.
constexpr std::size_t kLargestField = 64;
constexpr std::size_t kPage = 4096;

#if defined(__GNUC__) && defined(__x86_64__)
#define KVR_WIDE_VECTORS "avx2"
#define KVR_IN_EACH_FORM [[gnu::always_inline]]
#else
#define KVR_IN_EACH_FORM
#endif

// By how much a u64 in the machine's order differs from the one that would continue a run; 0 for none.
KVR_IN_EACH_FORM inline unsigned long long Difference(unsigned char const* bytes, std::size_t i,
                                                      unsigned long long next)
{
    unsigned long long value = 0;
    std::memcpy(&value, bytes + i * sizeof value, sizeof value);
    return value ^ (next + i);
}

// Blocks first, without a way out in the middle, and their halves side by side, then what is left of the list: that is
// what a compiler makes wide instructions of.
KVR_IN_EACH_FORM inline std::size_t RunLengthIn(unsigned char const* bytes, std::size_t count, unsigned long long next)
{
    constexpr std::size_t kHalf = 64;
    std::size_t i = 0;
    for (; count - i >= 2 * kHalf; i += 2 * kHalf)
    {
        unsigned long long inFirst = 0;
        unsigned long long inSecond = 0;
        for (std::size_t j = i; j < i + kHalf; ++j)
        {
            inFirst |= Difference(bytes, j, next);
            inSecond |= Difference(bytes, j + kHalf, next);
        }
        if ((inFirst | inSecond) != 0)
            break;
    }
    unsigned long long inRest = 0;
    std::size_t const end = std::min(count, i + 2 * kHalf);
    for (std::size_t j = i; j < end; ++j)
        inRest |= Difference(bytes, j, next);
    if (inRest == 0)
        return end;
    while (Difference(bytes, i, next) == 0)
        ++i;
    return i;
}

#if defined(KVR_WIDE_VECTORS)
// The same in vectors of four numbers, which processors of this kind mostly have and programs for all of them must not
// take for granted.
[[gnu::target(KVR_WIDE_VECTORS)]] std::size_t WideRunLength(unsigned char const* bytes, std::size_t count,
                                                            unsigned long long next)
{
    return RunLengthIn(bytes, count, next);
}
#endif

// How many u64 in the machine's order, of so many, are the next number and those that follow it.
std::size_t RunLength(unsigned char const* bytes, std::size_t count, unsigned long long next)
{
#if defined(KVR_WIDE_VECTORS)
    if (__builtin_cpu_supports(KVR_WIDE_VECTORS) != 0)
        return WideRunLength(bytes, count, next);
#endif
    return RunLengthIn(bytes, count, next);
}
}  // namespace

StoreCursor::StoreCursor(std::FILE* file, bool swapBytes, std::size_t readAhead)
    : m_file(file), m_swapBytes(swapBytes), m_readAhead(readAhead)
{
    long const start = std::ftell(file);
    if (start < 0 || std::fseek(file, 0, SEEK_END) != 0)
        return;
    long const end = std::ftell(file);
    if (end < 0 || std::fseek(file, start, SEEK_SET) != 0)
        return;
    m_position = static_cast<unsigned long long>(start);
    m_size = static_cast<unsigned long long>(std::max(start, end));
    m_buffer.resize(static_cast<std::size_t>(std::min<unsigned long long>(readAhead, Remaining()) + kLargestField));
}

StoreCursor::~StoreCursor()
{
    // What an observer throws here ends the program: it has to hold its own.
    if (m_readAhead != kFieldsOnly)
        TellObserver(&ReadObserver::StoreLeft, m_position, m_size, m_shortReads);
}

void StoreCursor::LoadSwapped(unsigned char* target, unsigned char const* bytes, std::size_t size)
{
    std::reverse_copy(bytes, bytes + size, target);
}

bool StoreCursor::Fill(std::size_t count)
{
    if (Remaining() < count)
    {
        ++m_shortReads;
        // Behind the end a list may still be long, and every seek costs a call of the system.
        if (!HasEnded())
            Seek(m_size);
        return false;
    }
    std::size_t const held = m_end - m_next;
    if (m_buffer.size() < count)
        m_buffer.resize(count);
    std::memmove(m_buffer.data(), m_buffer.data() + m_next, held);
    m_next = 0;
    m_end = held;
    std::size_t wanted = count - held;
    if (m_readAhead != kFieldsOnly)
    {
        // All that is left, or whole pages, which come without a stop in the file's own buffer.
        std::size_t const room = m_buffer.size() - held;
        bool const isLast = Remaining() - held <= room;
        wanted = std::max(wanted, isLast || room < kPage ? room : room / kPage * kPage);
    }
    m_end += std::fread(m_buffer.data() + held, 1, wanted, m_file);
    if (m_end >= count)
        return true;
    // The file gave less than its size: it was cut while it was read.
    m_size = m_position;
    m_next = m_end = 0;
    return false;
}

void StoreCursor::Seek(unsigned long long position)
{
    m_next = m_end = 0;
    m_position = std::min(position, m_size);
    if (std::fseek(m_file, static_cast<long>(m_position), SEEK_SET) != 0)
        m_size = m_position;
}

bool StoreCursor::Read(double& x, double& y, double& z)
{
    bool const hasX = Read(x);
    bool const hasY = Read(y);
    bool const hasZ = Read(z);
    return hasX && hasY && hasZ;
}

bool StoreCursor::Read(bool& flag)
{
    unsigned char const* const byte = Take(1);
    if (!byte)
        return false;
    flag = *byte != 0;
    return true;
}

bool StoreCursor::ReadLength(unsigned long long& length)
{
    if (!Read(length))
        return false;
    if (length <= Remaining())
        return true;
    Seek(m_size);
    return false;
}

bool StoreCursor::Read(std::string_view& text)
{
    unsigned long long length = 0;
    if (!ReadLength(length))
        return false;
    unsigned char const* const bytes = Take(static_cast<std::size_t>(length));
    if (!bytes)
        return false;
    text = {reinterpret_cast<char const*>(bytes), static_cast<std::size_t>(length)};
    return true;
}

bool StoreCursor::Read(UTF8String& text)
{
    unsigned long long length = 0;
    if (!ReadLength(length))
        return false;
    std::string bytes;
    bytes.reserve(static_cast<std::size_t>(length));
    while (bytes.size() < length)
    {
        std::size_t const piece = std::min<std::size_t>(static_cast<std::size_t>(length) - bytes.size(), kLargestField);
        unsigned char const* const taken = Take(piece);
        if (!taken)
            return false;
        bytes.append(taken, taken + piece);
    }
    text = UTF8String(std::move(bytes));
    return true;
}

std::size_t StoreCursor::ReadDirectly(double* values, std::size_t count)
{
    std::size_t const bytes =
        static_cast<std::size_t>(std::min<unsigned long long>(count, Remaining() / sizeof(double))) * sizeof(double);
    std::size_t const held = std::min(m_end - m_next, bytes);
    std::memcpy(values, m_buffer.data() + m_next, held);
    Skip(held);
    std::size_t const got = std::fread(reinterpret_cast<unsigned char*>(values) + held, 1, bytes - held, m_file);
    m_position += got;
    // The file gave less than its size: it was cut while it was read.
    if (held + got < bytes)
        m_size = m_position;
    return (held + got) / sizeof(double);
}

std::size_t StoreCursor::ReadDoubles(double* values, std::size_t count)
{
    std::size_t read = 0;
    // A long list goes where it belongs without a stop in the buffer.
    if (!m_swapBytes && m_readAhead != kFieldsOnly && count > 2 * m_buffer.size() / sizeof(double))
        read = ReadDirectly(values, count);
    while (read < count)
    {
        std::size_t const ready = std::min((m_end - m_next) / sizeof(double), count - read);
        if (ready == 0)
        {
            if (!Read(values[read]))
                return read;
            ++read;
            continue;
        }
        unsigned char const* const bytes = Take(ready * sizeof(double));
        if (!m_swapBytes)
            std::memcpy(values + read, bytes, ready * sizeof(double));
        else
            for (std::size_t i = 0; i < ready; ++i)
                Load(values[read + i], bytes + i * sizeof(double));
        read += ready;
    }
    return read;
}

std::size_t StoreCursor::ReadIndices(std::int32_t* indices, std::size_t count)
{
    constexpr std::size_t kItem = sizeof(unsigned long long);
    std::size_t read = 0;
    while (read < count)
    {
        std::size_t const ready = std::min((m_end - m_next) / kItem, count - read);
        if (ready == 0)
        {
            unsigned long long value = 0;
            if (!Read(value))
                return read;
            indices[read++] = static_cast<std::int32_t>(value);
            continue;
        }
        unsigned char const* const bytes = Take(ready * kItem);
        for (std::size_t i = 0; i < ready; ++i)
        {
            unsigned long long value = 0;
            Load(value, bytes + i * kItem);
            indices[read + i] = static_cast<std::int32_t>(value);
        }
        read += ready;
    }
    return read;
}

std::size_t StoreCursor::ReadRun(unsigned long long& first, std::size_t count)
{
    constexpr std::size_t kItem = sizeof(unsigned long long);
    std::size_t read = 0;
    while (read < count)
    {
        unsigned char const* const bytes = Peek(kItem);
        if (!bytes)
            break;
        if (read == 0)
            Load(first, bytes);
        std::size_t const ready = std::min(Peeked() / kItem, count - read);
        std::size_t const run = RunLength(bytes, ready, first + read);
        Skip(run * kItem);
        read += run;
        if (run < ready)
            break;
    }
    return read;
}

void StoreCursor::Claim(unsigned long long count, std::size_t bytesInMemory)
{
    if (count > (kClaimLimit - m_claimed) / bytesInMemory)
        ThrowTooLong();
    m_claimed += count * bytesInMemory;
}

}  // namespace KVR

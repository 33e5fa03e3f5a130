#include "framework/kernel/store/StoreStream.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace KVR
{

namespace
{
constexpr std::size_t kBufferSize = 64 * 1024;
constexpr std::streamsize kLeastRead = kBufferSize / 2;
}  // namespace

bool MeasureRest(std::FILE* file, std::uint64_t& size)
{
    long const at = std::ftell(file);
    if (at < 0 || std::fseek(file, 0, SEEK_END) != 0)
        return false;
    long const end = std::ftell(file);
    if (end < at || std::fseek(file, at, SEEK_SET) != 0)
        return false;
    size = static_cast<std::uint64_t>(end - at);
    return true;
}

StoreDigest::StoreDigest() : m_state(XXH3_createState())
{
    if (!m_state)
        throw std::bad_alloc();
    XXH3_64bits_reset(m_state);
}

StoreDigest::~StoreDigest()
{
    XXH3_freeState(m_state);
}

void StoreDigest::Add(void const* bytes, std::size_t count) noexcept
{
    XXH3_64bits_update(m_state, bytes, count);
}

std::uint64_t StoreDigest::Value() const noexcept
{
    return XXH3_64bits_digest(m_state);
}

StoreReadBuffer::StoreReadBuffer(std::FILE* file, std::uint64_t size)
    : m_file(file),
      m_start(std::ftell(file)),
      m_size(size),
      m_left(size),
      m_buffer(std::make_unique<char[]>(kBufferSize))
{
}

StoreReadBuffer::~StoreReadBuffer() = default;

std::uint64_t StoreReadBuffer::Remaining() const noexcept
{
    return m_left + static_cast<std::uint64_t>(egptr() - gptr());
}

std::size_t StoreReadBuffer::Read(char* target, std::size_t count)
{
    auto const wanted = static_cast<std::size_t>(std::min<std::uint64_t>(m_left, count));
    std::size_t const got = wanted == 0 ? 0 : std::fread(target, 1, wanted, m_file);
    m_left = got < wanted ? 0 : m_left - got;
    return got;
}

StoreReadBuffer::int_type StoreReadBuffer::underflow()
{
    std::size_t const got = Read(m_buffer.get(), kBufferSize);
    setg(m_buffer.get(), m_buffer.get(), m_buffer.get() + got);
    return got == 0 ? traits_type::eof() : traits_type::to_int_type(*gptr());
}

std::streamsize StoreReadBuffer::xsgetn(char* target, std::streamsize count)
{
    std::streamsize taken = 0;
    while (taken < count)
    {
        // What is nearly a buffer in length is read to where it belongs.
        if (gptr() == egptr() && count - taken >= kLeastRead)
        {
            setg(m_buffer.get(), m_buffer.get(), m_buffer.get());
            return taken + static_cast<std::streamsize>(Read(target + taken, static_cast<std::size_t>(count - taken)));
        }
        if (gptr() == egptr() && traits_type::eq_int_type(underflow(), traits_type::eof()))
            break;
        std::streamsize const piece = std::min<std::streamsize>(egptr() - gptr(), count - taken);
        std::memcpy(target + taken, gptr(), static_cast<std::size_t>(piece));
        gbump(static_cast<int>(piece));
        taken += piece;
    }
    return taken;
}

StoreReadBuffer::pos_type StoreReadBuffer::seekoff(off_type offset, std::ios_base::seekdir from,
                                                   std::ios_base::openmode mode)
{
    auto const at = static_cast<off_type>(m_size - Remaining());
    if (from == std::ios_base::cur && offset == 0)
        return pos_type(at);
    off_type const base = from == std::ios_base::beg   ? 0
                          : from == std::ios_base::cur ? at
                                                       : static_cast<off_type>(m_size);
    return seekpos(pos_type(base + offset), mode);
}

StoreReadBuffer::pos_type StoreReadBuffer::seekpos(pos_type position, std::ios_base::openmode)
{
    auto const wanted = static_cast<off_type>(position);
    if (wanted < 0 || static_cast<std::uint64_t>(wanted) > m_size)
        return pos_type(off_type(-1));
    auto const endOfBuffer = static_cast<off_type>(m_size - m_left);
    auto const startOfBuffer = endOfBuffer - (egptr() - eback());
    if (wanted >= startOfBuffer && wanted <= endOfBuffer)
    {
        setg(eback(), eback() + (wanted - startOfBuffer), egptr());
        return position;
    }
    if (std::fseek(m_file, m_start + static_cast<long>(wanted), SEEK_SET) != 0)
        return pos_type(off_type(-1));
    m_left = m_size - static_cast<std::uint64_t>(wanted);
    setg(m_buffer.get(), m_buffer.get(), m_buffer.get());
    return position;
}

StoreWriteBuffer::StoreWriteBuffer(std::FILE* file) : m_file(file), m_buffer(std::make_unique<char[]>(kBufferSize))
{
    setp(m_buffer.get(), m_buffer.get() + kBufferSize);
}

StoreWriteBuffer::~StoreWriteBuffer() = default;

bool StoreWriteBuffer::Flush() noexcept
{
    auto const count = static_cast<std::size_t>(pptr() - pbase());
    if (std::fwrite(pbase(), 1, count, m_file) != count)
        return false;
    m_digest.Add(pbase(), count);
    m_size += count;
    setp(m_buffer.get(), m_buffer.get() + kBufferSize);
    return true;
}

StoreWriteBuffer::int_type StoreWriteBuffer::overflow(int_type character)
{
    if (!Flush())
        return traits_type::eof();
    if (!traits_type::eq_int_type(character, traits_type::eof()))
        sputc(traits_type::to_char_type(character));
    return traits_type::not_eof(character);
}

std::streamsize StoreWriteBuffer::xsputn(char const* bytes, std::streamsize count)
{
    std::streamsize put = 0;
    while (put < count)
    {
        if (pptr() == epptr() && !Flush())
            break;
        std::streamsize const piece = std::min<std::streamsize>(epptr() - pptr(), count - put);
        std::memcpy(pptr(), bytes + put, static_cast<std::size_t>(piece));
        pbump(static_cast<int>(piece));
        put += piece;
    }
    return put;
}

int StoreWriteBuffer::sync()
{
    return Flush() ? 0 : -1;
}

// Writers ask where they are, and go nowhere else.
StoreWriteBuffer::pos_type StoreWriteBuffer::seekoff(off_type offset, std::ios_base::seekdir from,
                                                     std::ios_base::openmode)
{
    if (offset != 0 || from != std::ios_base::cur)
        return pos_type(off_type(-1));
    return pos_type(static_cast<off_type>(m_size) + (pptr() - pbase()));
}

}  // namespace KVR

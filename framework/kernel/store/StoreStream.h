#pragma once

#include <xxhash.h>
#include <array>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <streambuf>

#include "framework/kernel/Export.h"

namespace KVR
{

/// A digest of bytes as they pass.
class StoreDigest
{
public:
    StoreDigest();
    ~StoreDigest();
    StoreDigest(StoreDigest const&) = delete;
    StoreDigest& operator=(StoreDigest const&) = delete;

    void Add(void const* bytes, std::size_t count) noexcept;
    /// XXH3 with 64 bits over all that was added.
    std::uint64_t Value() const noexcept;

private:
    XXH3_state_t* m_state;
};

/// Tells how many bytes there are from the file's position to its end. False when that cannot be told.
bool MeasureRest(std::FILE* file, std::uint64_t& size);

/// Reads so many bytes of a file and then ends.
class KVR_KERNEL_API StoreReadBuffer final : public std::streambuf
{
public:
    StoreReadBuffer(std::FILE* file, std::uint64_t size);
    ~StoreReadBuffer() override;

    /// The bytes that were not taken yet.
    std::uint64_t Remaining() const noexcept;

protected:
    int_type underflow() override;
    std::streamsize xsgetn(char* target, std::streamsize count) override;
    /// Open CASCADE looks ahead and goes back. Positions count from where the file stood.
    pos_type seekoff(off_type offset, std::ios_base::seekdir from, std::ios_base::openmode mode) override;
    pos_type seekpos(pos_type position, std::ios_base::openmode mode) override;

private:
    /// Behind the buffer; what there is of so many bytes.
    std::size_t Read(char* target, std::size_t count);

    std::FILE* m_file;
    long m_start;
    std::uint64_t m_size;
    /// What is behind the buffer.
    std::uint64_t m_left;
    std::unique_ptr<char[]> m_buffer;
};

/// Writes to a file and keeps the digest and the number of the bytes.
class StoreWriteBuffer final : public std::streambuf
{
public:
    explicit StoreWriteBuffer(std::FILE* file);
    ~StoreWriteBuffer() override;

    std::uint64_t Size() const noexcept { return m_size; }
    std::uint64_t Digest() const noexcept { return m_digest.Value(); }

protected:
    int_type overflow(int_type character) override;
    std::streamsize xsputn(char const* bytes, std::streamsize count) override;
    int sync() override;
    pos_type seekoff(off_type offset, std::ios_base::seekdir from, std::ios_base::openmode mode) override;

private:
    bool Flush() noexcept;

    std::FILE* m_file;
    std::uint64_t m_size = 0;
    StoreDigest m_digest;
    std::unique_ptr<char[]> m_buffer;
};

}  // namespace KVR

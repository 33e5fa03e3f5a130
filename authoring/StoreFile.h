#pragma once

#include <cstdint>
#include <cstdio>
#include <span>

#include "authoring/Export.h"
#include "framework/api/UTF16String.h"
#include "framework/api/UTF8String.h"

namespace KVR::Authoring
{

/// Writes the primitive items of a side file, little-endian, to a temporary name beside the file. The file
/// itself appears whole at Commit, or not at all. Every operation throws FileException when the file system refuses,
/// with the system's reason in errno.
class KVR_AUTHORING_API StoreFile
{
public:
    explicit StoreFile(UTF16String const& path);
    /// Without a Commit nothing stays behind.
    ~StoreFile();
    StoreFile(StoreFile const&) = delete;
    StoreFile& operator=(StoreFile const&) = delete;

    /// An unsigned number of eight bytes.
    void U64(std::uint64_t value);
    /// An unsigned number of four bytes.
    void U32(std::uint32_t value);
    /// A double, eight bytes.
    void F64(double value);
    /// One byte, 1 or 0.
    void Flag(bool value);
    /// A u64 length in bytes and that many bytes of UTF-8.
    void Text(UTF8String const& text);
    /// The bytes as they stand.
    void Bytes(void const* bytes, std::size_t size);
    /// Unsigned numbers of eight bytes, one behind the other, without a count.
    void U64s(std::span<std::uint64_t const> values);
    /// Doubles, one behind the other, without a count.
    void F64s(std::span<double const> values);

    /// The open file, for writers of other libraries; still owned, and Position does not count what they write.
    std::FILE* File() const noexcept { return m_file; }
    /// Throws the exception of a refusal.
    [[noreturn]] void Fail() const;

    /// The bytes that were written so far.
    std::uint64_t Position() const noexcept { return m_position; }
    /// Writes over an item at a position behind which writing goes on where it was.
    void PatchU64(std::uint64_t position, std::uint64_t value);

    /// Closes the file and gives it its name; nothing can be written afterwards.
    void Commit();

private:
    UTF16String m_path;
    UTF8String m_temporaryPath;
    std::FILE* m_file;
    std::uint64_t m_position = 0;
};

}  // namespace KVR::Authoring

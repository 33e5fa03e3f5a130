#include "authoring/StoreFile.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cerrno>
#include <cstring>

#include "framework/api/Exception.h"
#include "framework/api/IOUtil.h"

namespace KVR::Authoring
{

namespace
{

template <class Value>
std::array<unsigned char, sizeof(Value)> LittleEndian(Value value)
{
    std::array<unsigned char, sizeof(Value)> bytes;
    std::memcpy(bytes.data(), &value, bytes.size());
    if constexpr (std::endian::native == std::endian::big)
        std::reverse(bytes.begin(), bytes.end());
    return bytes;
}

}  // namespace

StoreFile::StoreFile(UTF16String const& path)
    : m_path(path), m_temporaryPath(UTF8String(path) + ".part"), m_file(IOUtil::OpenFile(m_temporaryPath, "wb"))
{
    if (!m_file)
        Fail();
}

StoreFile::~StoreFile()
{
    if (!m_file)
        return;
    // What the file system said of the failure that ends the writing stays for whoever asks.
    int const errorNumber = errno;
    IOUtil::CloseFile(m_file);
    std::remove(m_temporaryPath.Value());
    errno = errorNumber;
}

void StoreFile::Fail() const
{
    FileException exception;
    exception.SetFileName(m_path);
    throw FileException(exception);
}

void StoreFile::Bytes(void const* bytes, std::size_t size)
{
    // An empty list may have no place at all, which fwrite must not be given.
    if (size == 0)
        return;
    if (std::fwrite(bytes, 1, size, m_file) != size)
        Fail();
    m_position += size;
}

void StoreFile::U64(std::uint64_t value)
{
    Bytes(LittleEndian(value).data(), sizeof value);
}
void StoreFile::U32(std::uint32_t value)
{
    Bytes(LittleEndian(value).data(), sizeof value);
}
void StoreFile::F64(double value)
{
    Bytes(LittleEndian(value).data(), sizeof value);
}

void StoreFile::Flag(bool value)
{
    unsigned char const byte = value ? 1 : 0;
    Bytes(&byte, 1);
}

void StoreFile::Text(UTF8String const& text)
{
    U64(text.Size());
    Bytes(text.Value(), text.Size());
}

void StoreFile::U64s(std::span<std::uint64_t const> values)
{
    if constexpr (std::endian::native == std::endian::little)
        Bytes(values.data(), values.size_bytes());
    else
        for (std::uint64_t const value : values)
            U64(value);
}

void StoreFile::F64s(std::span<double const> values)
{
    if constexpr (std::endian::native == std::endian::little)
        Bytes(values.data(), values.size_bytes());
    else
        for (double const value : values)
            F64(value);
}

void StoreFile::PatchU64(std::uint64_t position, std::uint64_t value)
{
    std::uint64_t const end = m_position;
    if (std::fseek(m_file, static_cast<long>(position), SEEK_SET) != 0)
        Fail();
    U64(value);
    if (std::fseek(m_file, 0, SEEK_END) != 0)
        Fail();
    m_position = end;
}

void StoreFile::Commit()
{
    std::FILE* const file = m_file;
    m_file = nullptr;
    bool const isWritten = std::fflush(file) == 0 && std::ferror(file) == 0;
    bool const isClosed = std::fclose(file) == 0;
    if (!isWritten || !isClosed || std::rename(m_temporaryPath.Value(), UTF8String(m_path).Value()) != 0)
    {
        int const errorNumber = errno;
        std::remove(m_temporaryPath.Value());
        errno = errorNumber;
        Fail();
    }
}

}  // namespace KVR::Authoring

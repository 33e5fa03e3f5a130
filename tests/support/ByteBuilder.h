#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace KVR::Test
{

/// Builds the bytes of a binary side file, item by item in file order. Numbers are little-endian on every machine.
class ByteBuilder
{
public:
    ByteBuilder& Byte(unsigned value);
    ByteBuilder& U32(std::uint32_t value);
    ByteBuilder& U64(std::uint64_t value);
    ByteBuilder& F64(double value);
    /// The length in bytes, as a u64, and the bytes.
    ByteBuilder& String(std::string_view bytes);
    /// Two bytes, 1 for true.
    ByteBuilder& BoolPair(bool first, bool second);
    /// The bytes without a length.
    ByteBuilder& Raw(std::string_view bytes);

    std::string const& Bytes() const noexcept { return m_bytes; }
    operator std::string_view() const noexcept { return m_bytes; }

private:
    ByteBuilder& LittleEndian(std::uint64_t value, int size);

    std::string m_bytes;
};

}  // namespace KVR::Test

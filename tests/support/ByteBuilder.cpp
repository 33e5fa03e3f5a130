#include "tests/support/ByteBuilder.h"

#include <bit>

namespace KVR::Test
{

ByteBuilder& ByteBuilder::Byte(unsigned value)
{
    return LittleEndian(value, 1);
}
ByteBuilder& ByteBuilder::U32(std::uint32_t value)
{
    return LittleEndian(value, 4);
}
ByteBuilder& ByteBuilder::U64(std::uint64_t value)
{
    return LittleEndian(value, 8);
}
ByteBuilder& ByteBuilder::F64(double value)
{
    return LittleEndian(std::bit_cast<std::uint64_t>(value), 8);
}
ByteBuilder& ByteBuilder::String(std::string_view bytes)
{
    return U64(bytes.size()).Raw(bytes);
}
ByteBuilder& ByteBuilder::BoolPair(bool first, bool second)
{
    return Byte(first ? 1 : 0).Byte(second ? 1 : 0);
}
ByteBuilder& ByteBuilder::Raw(std::string_view bytes)
{
    m_bytes += bytes;
    return *this;
}

ByteBuilder& ByteBuilder::LittleEndian(std::uint64_t value, int size)
{
    for (int i = 0; i < size; ++i)
        m_bytes.push_back(static_cast<char>(static_cast<unsigned char>(value >> (8 * i))));
    return *this;
}

}  // namespace KVR::Test

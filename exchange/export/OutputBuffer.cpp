#include "exchange/export/OutputBuffer.h"

#include "output/Output.h"

namespace KVR
{

OutputBuffer::int_type OutputBuffer::overflow(int_type byte)
{
    if (!traits_type::eq_int_type(byte, traits_type::eof()))
        m_out.Put(traits_type::to_char_type(byte));
    return traits_type::not_eof(byte);
}

std::streamsize OutputBuffer::xsputn(char const* bytes, std::streamsize count)
{
    m_out.Put(std::string_view(bytes, static_cast<std::size_t>(count)));
    return count;
}

}  // namespace KVR

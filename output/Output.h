#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

namespace KVR
{

/// Buffered writing to a file descriptor, which it does not own. Every operation may throw OutputError. What was not
/// flushed is lost when the object ends: only Flush can tell that all of it arrived.
class Output
{
public:
    explicit Output(int descriptor);

    void Put(char byte)
    {
        if (m_used == kCapacity)
            Flush();
        m_buffer[m_used++] = byte;
    }
    void Put(std::string_view text);
    void PutSpaces(std::size_t count);
    void Flush();

private:
    static constexpr std::size_t kCapacity = std::size_t{64} * 1024;

    void Write(char const* bytes, std::size_t count) const;

    std::unique_ptr<char[]> m_buffer;
    std::size_t m_used = 0;
    int m_descriptor;
};

}  // namespace KVR

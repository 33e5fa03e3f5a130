#pragma once

#include <cstddef>
#include <cstring>
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
    void Put(std::string_view text)
    {
        if (text.size() > kCapacity - m_used)
            return PutLong(text);
        // Nothing is held apart for an empty text.
        if (!text.empty())
            std::memcpy(m_buffer.get() + m_used, text.data(), text.size());
        m_used += text.size();
    }
    void PutSpaces(std::size_t count);

    /// Places for so many bytes, at most kMostRoom, for a caller that makes them itself and then says where they end.
    static constexpr std::size_t kMostRoom = 1024;
    char* Room(std::size_t count)
    {
        if (count > kCapacity - m_used)
            Flush();
        return m_buffer.get() + m_used;
    }
    void EndAt(char const* end) noexcept { m_used = static_cast<std::size_t>(end - m_buffer.get()); }
    void Flush();

private:
    static constexpr std::size_t kCapacity = std::size_t{512} * 1024;

    void PutLong(std::string_view text);
    void Write(char const* bytes, std::size_t count) const;

    std::unique_ptr<char[]> m_buffer;
    std::size_t m_used = 0;
    int m_descriptor;
};

}  // namespace KVR

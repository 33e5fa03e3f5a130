#include "output/Output.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "output/OutputError.h"

namespace KVR
{

Output::Output(int descriptor) : m_buffer(std::make_unique_for_overwrite<char[]>(kCapacity)), m_descriptor(descriptor)
{
}

void Output::PutLong(std::string_view text)
{
    Flush();
    if (text.size() > kCapacity)
        Write(text.data(), text.size());
    else
        Put(text);
}

void Output::PutSpaces(std::size_t count)
{
    for (; count > 0;)
    {
        std::size_t const some = std::min(count, kMostRoom);
        char* const place = Room(some);
        std::memset(place, ' ', some);
        EndAt(place + some);
        count -= some;
    }
}

void Output::Flush()
{
    std::size_t const count = m_used;
    m_used = 0;
    Write(m_buffer.get(), count);
}

void Output::Write(char const* bytes, std::size_t count) const
{
    while (count > 0)
    {
        ssize_t const written = write(m_descriptor, bytes, count);
        if (written < 0)
        {
            if (errno == EINTR)
                continue;
            throw OutputError(errno);
        }
        bytes += written;
        count -= static_cast<std::size_t>(written);
    }
}

}  // namespace KVR

#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdio>

namespace KVR
{

/// Appends `count` bytes of the file to a container of bytes, which grows as they arrive and not on the word of the
/// count. Whether all were there; what was there is consumed in any case.
template <class Bytes>
bool AppendBytes(std::FILE* file, unsigned long long count, Bytes& bytes)
{
    constexpr unsigned long long kChunk = 64 * 1024;
    while (count > 0)
    {
        auto const wanted = static_cast<std::size_t>(std::min(count, kChunk));
        std::size_t const former = bytes.size();
        bytes.resize(former + wanted);
        std::size_t const got = std::fread(bytes.data() + former, 1, wanted, file);
        if (got < wanted)
        {
            bytes.resize(former + got);
            return false;
        }
        count -= got;
    }
    return true;
}

}  // namespace KVR

#pragma once

#include <cstdint>
#include <cstdio>

namespace KVR
{

/// What stands in front of a store's content.
struct StoreHead
{
    static constexpr std::uint32_t kVersion = 1;

    std::uint64_t digest = 0;
    /// The bytes of the content.
    std::uint64_t size = 0;

    /// Reads the head at the file's position, behind which the file then stands. False for a file without such a head
    /// and one of another version.
    bool Read(std::FILE* file, bool textMode);
    /// Writes it; it is as long for all values. False when the file system refuses.
    bool Write(std::FILE* file, bool textMode) const;
};

}  // namespace KVR

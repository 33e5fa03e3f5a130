#pragma once

#include <vector>

#include "framework/api/Export.h"

namespace KVR
{

/// Bytes without meaning to the framework.
class KVR_API Blob
{
public:
    Blob();
    /// Copies `size` bytes; with a null pointer the blob is empty.
    Blob(unsigned long long size, void const* data);
    ~Blob();
    Blob(Blob const&) = default;
    Blob(Blob&&) noexcept = default;
    Blob& operator=(Blob const&) = default;
    Blob& operator=(Blob&&) noexcept = default;

    /// The number of bytes.
    unsigned long long Size() const noexcept { return m_bytes.size(); }
    /// The bytes, owned by the blob; null when there are none.
    void const* Data() const noexcept { return m_bytes.empty() ? nullptr : m_bytes.data(); }

private:
    std::vector<unsigned char> m_bytes;
};

}  // namespace KVR

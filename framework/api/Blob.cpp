#include "framework/api/Blob.h"

namespace KVR
{

Blob::Blob() = default;
Blob::~Blob() = default;

Blob::Blob(unsigned long long size, void const* data)
{
    if (data)
    {
        auto const* bytes = static_cast<unsigned char const*>(data);
        m_bytes.assign(bytes, bytes + size);
    }
}

}  // namespace KVR

#pragma once

#include <unistd.h>

#include <utility>

namespace KVR
{

/// A descriptor of a file or folder, which is closed with the object; negative for none.
class Descriptor
{
public:
    explicit Descriptor(int descriptor) noexcept : m_descriptor(descriptor) {}
    ~Descriptor()
    {
        if (m_descriptor >= 0)
            ::close(m_descriptor);
    }
    Descriptor(Descriptor const&) = delete;
    Descriptor& operator=(Descriptor const&) = delete;

    operator int() const noexcept { return m_descriptor; }
    int Release() noexcept { return std::exchange(m_descriptor, -1); }

private:
    int m_descriptor;
};

}  // namespace KVR

#pragma once

#include <array>
#include <cstddef>

namespace KVR
{

/// The names of what stands in a folder, without "." and "..", read without any memory of its own: they are also read
/// where memory has run out. What goes while they are read may be among them, or not.
class FolderNames
{
public:
    /// Of a descriptor that is open for reading, at its beginning, and is not owned.
    explicit FolderNames(int folder) noexcept : m_folder(folder) {}

    /// The next name, which stays until the one behind it is asked for. Null at the end, and when reading fails.
    char const* Next() noexcept;
    /// Why reading failed, as an errno; 0 when it did not.
    int Error() const noexcept { return m_error; }

private:
    // Room for three names of the greatest length.
    static constexpr std::size_t kRoom = 1024;

    int m_folder;
    int m_error = 0;
    std::size_t m_place = 0;
    std::size_t m_end = 0;
    alignas(8) std::array<char, kRoom> m_entries;
};

/// Removes all that stands in a folder, but for one name if it is not null, without any memory of its own. What the
/// system refuses to remove stays.
void RemoveAllIn(int folder, char const* spared = nullptr) noexcept;

}  // namespace KVR

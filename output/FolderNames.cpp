#include "output/FolderNames.h"

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "output/Descriptor.h"

namespace KVR
{

char const* FolderNames::Next() noexcept
{
    for (;;)
    {
        if (m_place == m_end)
        {
            ssize_t const count = ::getdents64(m_folder, m_entries.data(), m_entries.size());
            m_error = count < 0 ? errno : 0;
            if (count <= 0)
                return nullptr;
            m_place = 0;
            m_end = static_cast<std::size_t>(count);
        }
        auto const* const entry = reinterpret_cast<struct dirent64 const*>(m_entries.data() + m_place);
        m_place += entry->d_reclen;
        char const* const name = m_entries.data() + (m_place - entry->d_reclen) + offsetof(struct dirent64, d_name);
        if (std::strcmp(name, ".") != 0 && std::strcmp(name, "..") != 0)
            return name;
    }
}

void RemoveAllIn(int folder, char const* spared) noexcept
{
    FolderNames names(folder);
    while (char const* const name = names.Next())
    {
        if (spared && std::strcmp(name, spared) == 0)
            continue;
        if (::unlinkat(folder, name, 0) == 0 || (errno != EISDIR && errno != EPERM))
            continue;
        {
            Descriptor const inner(::openat(folder, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
            if (inner >= 0)
                RemoveAllIn(inner);
        }
        ::unlinkat(folder, name, AT_REMOVEDIR);
    }
}

}  // namespace KVR

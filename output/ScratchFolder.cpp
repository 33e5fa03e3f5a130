#include "output/ScratchFolder.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string_view>
#include <system_error>

#include "output/Descriptor.h"
#include "output/FolderNames.h"

namespace KVR
{

namespace fs = std::filesystem;

namespace
{

// What stands for the end of the name, in the pattern.
constexpr std::string_view kVaries = "XXXXXX";
constexpr char kInside[] = "files";
constexpr char kLockName[] = ".kvr-lock";
constexpr char kNewLockName[] = ".kvr-lock-new";
// By which nobody else's file is taken for a lock.
constexpr std::string_view kLockText = "a folder of the program kvr, which it may remove\n";
// A folder gets its lock at once. One that has none after that many seconds belongs to nobody who lives.
constexpr time_t kLockedWithin = 600;

int OpenedFolder(char const* path) noexcept
{
    return open(path, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
}

// A lock has its name only when it is held, so that none is ever found that is on its way. -1 for none.
int LockIn(int folder) noexcept
{
    Descriptor lock(openat(folder, kNewLockName, O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    bool const isHeld = lock >= 0 && write(lock, kLockText.data(), kLockText.size()) == ssize_t{kLockText.size()} &&
                        flock(lock, LOCK_EX | LOCK_NB) == 0 && renameat(folder, kNewLockName, folder, kLockName) == 0;
    if (!isHeld)
        unlinkat(folder, kNewLockName, 0);
    return isHeld ? lock.Release() : -1;
}

// The lock goes last: what is left of a folder when this ends early is still known by it.
void RemoveWithLock(int folder) noexcept
{
    RemoveAllIn(folder, kLockName);
    unlinkat(folder, kLockName, 0);
}

bool IsMine(int descriptor, mode_t kind)
{
    struct stat status = {};
    return fstat(descriptor, &status) == 0 && (status.st_mode & S_IFMT) == kind && status.st_uid == geteuid();
}

// Whatever there is of it, for a lock that is on its way.
bool HasLockText(int lock, bool isComplete)
{
    std::array<char, kLockText.size() + 1> bytes{};
    ssize_t const count = pread(lock, bytes.data(), bytes.size(), 0);
    if (count < 0)
        return false;
    std::string_view const text(bytes.data(), static_cast<std::size_t>(count));
    return isComplete ? text == kLockText : kLockText.starts_with(text);
}

// A lock of that name which nobody holds, held from here on; -1 for none.
int FreeLock(int folder, char const* name, bool isComplete)
{
    Descriptor lock(openat(folder, name, O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    bool const isFree =
        lock >= 0 && IsMine(lock, S_IFREG) && HasLockText(lock, isComplete) && flock(lock, LOCK_EX | LOCK_NB) == 0;
    return isFree ? lock.Release() : -1;
}

// Whether whoever made a folder ended before it had its lock: it has stood for long, with nothing in it but perhaps a
// lock on its way.
bool IsUnfinished(int folder)
{
    struct stat status = {};
    if (fstat(folder, &status) != 0 || status.st_mtime > time(nullptr) - kLockedWithin)
        return false;
    FolderNames names(folder);
    char const* const name = names.Next();
    if (!name)
        return names.Error() == 0;
    return std::strcmp(name, kNewLockName) == 0 && !names.Next() && names.Error() == 0 &&
           Descriptor(FreeLock(folder, kNewLockName, false)) >= 0;
}

// Removes a folder that has a lock which nobody holds, or never got one. All is done by descriptors: the name could
// come to be another's.
void RemoveIfLeft(int outer, char const* name)
{
    Descriptor const folder(openat(outer, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (folder < 0 || !IsMine(folder, S_IFDIR))
        return;
    Descriptor const lock(FreeLock(folder, kLockName, true));
    if (lock >= 0)
        RemoveWithLock(folder);
    else if (IsUnfinished(folder))
        unlinkat(folder, kNewLockName, 0);
    else
        return;
    unlinkat(outer, name, AT_REMOVEDIR);
}

void RemoveLeft(fs::path const& folder, std::string_view name)
{
    Descriptor const outer(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    FolderNames names(outer);
    while (char const* const found = names.Next())
        if (std::string_view(found).size() == name.size() + kVaries.size() && std::string_view(found).starts_with(name))
            RemoveIfLeft(outer, found);
}

}  // namespace

ScratchFolder::ScratchFolder(fs::path const& folder, std::string const& name)
    : m_outer((folder / name).string().append(kVaries))
{
    RemoveLeft(folder.empty() ? fs::path(".") : folder, name);
    if (!mkdtemp(m_outer.data()))
        throw std::system_error(errno, std::generic_category());
    try
    {
        m_path = fs::path(m_outer) / kInside;
        m_lock = LockIn(Descriptor(OpenedFolder(m_outer.c_str())));
        if (mkdir(m_path.c_str(), 0700) != 0)
            throw std::system_error(errno, std::generic_category());
    }
    catch (...)
    {
        Remove();
        throw;
    }
}

ScratchFolder::~ScratchFolder()
{
    Remove();
}

void ScratchFolder::Remove() const noexcept
{
    if (Descriptor const folder(OpenedFolder(m_outer.c_str())); folder >= 0)
        RemoveWithLock(folder);
    rmdir(m_outer.c_str());
    if (m_lock >= 0)
        close(m_lock);
}

}  // namespace KVR

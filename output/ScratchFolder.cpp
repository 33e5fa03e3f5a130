#include "output/ScratchFolder.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <ctime>
#include <string_view>
#include <system_error>
#include <utility>

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

class Descriptor
{
public:
    explicit Descriptor(int descriptor) noexcept : m_descriptor(descriptor) {}
    ~Descriptor()
    {
        if (m_descriptor >= 0)
            close(m_descriptor);
    }
    Descriptor(Descriptor const&) = delete;
    Descriptor& operator=(Descriptor const&) = delete;

    operator int() const noexcept { return m_descriptor; }
    int Release() noexcept { return std::exchange(m_descriptor, -1); }

private:
    int m_descriptor;
};

// A lock has its name only when it is held, so that none is ever found that is on its way. -1 for none.
int LockIn(fs::path const& folder)
{
    fs::path const path = folder / kNewLockName;
    Descriptor lock(open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    bool const isHeld = lock >= 0 && write(lock, kLockText.data(), kLockText.size()) == ssize_t{kLockText.size()} &&
                        flock(lock, LOCK_EX | LOCK_NB) == 0 && rename(path.c_str(), (folder / kLockName).c_str()) == 0;
    if (!isHeld)
        unlink(path.c_str());
    return isHeld ? lock.Release() : -1;
}

// The lock goes last: what is left of a folder when this ends early is still known by it.
void RemoveAllIn(fs::path const& folder)
{
    std::error_code ignored;
    for (fs::directory_iterator i(folder, ignored), end; i != end; i.increment(ignored))
        if (i->path().filename() != kLockName)
            fs::remove_all(i->path(), ignored);
    fs::remove(folder / kLockName, ignored);
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
bool IsUnfinished(int folder, fs::path const& content)
{
    struct stat status = {};
    if (fstat(folder, &status) != 0 || status.st_mtime > time(nullptr) - kLockedWithin)
        return false;
    std::error_code error;
    fs::directory_iterator entry(content, error);
    if (error || entry == fs::directory_iterator())
        return !error;
    bool const isNewLock = entry->path().filename() == kNewLockName;
    return isNewLock && entry.increment(error) == fs::directory_iterator() && !error &&
           Descriptor(FreeLock(folder, kNewLockName, false)) >= 0;
}

// Removes a folder that has a lock which nobody holds, or never got one. All is done by descriptors: the name could
// come to be another's.
void RemoveIfLeft(fs::path const& path)
{
    Descriptor const folder(open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (folder < 0 || !IsMine(folder, S_IFDIR))
        return;
    fs::path const content = fs::path("/proc/self/fd") / std::to_string(folder);
    Descriptor const lock(FreeLock(folder, kLockName, true));
    if (lock >= 0)
        RemoveAllIn(content);
    else if (IsUnfinished(folder, content))
        unlinkat(folder, kNewLockName, 0);
    else
        return;
    rmdir(path.c_str());
}

void RemoveLeft(fs::path const& folder, std::string const& name)
{
    std::error_code ignored;
    for (fs::directory_iterator i(folder, ignored), end; i != end; i.increment(ignored))
    {
        std::string const found = i->path().filename().string();
        if (found.size() == name.size() + kVaries.size() && found.starts_with(name))
            RemoveIfLeft(i->path());
    }
}

fs::path Made(fs::path const& folder, std::string const& name)
{
    RemoveLeft(folder, name);
    std::string path = (folder / name).string().append(kVaries);
    if (!mkdtemp(path.data()))
        throw std::system_error(errno, std::generic_category());
    return path;
}

}  // namespace

ScratchFolder::ScratchFolder(fs::path const& folder, std::string const& name)
    : m_outer(Made(folder, name)), m_path(m_outer / kInside), m_lock(LockIn(m_outer))
{
    if (mkdir(m_path.c_str(), 0700) == 0)
        return;
    int const error = errno;
    Remove();
    throw std::system_error(error, std::generic_category());
}

ScratchFolder::~ScratchFolder()
{
    try
    {
        Remove();
    }
    catch (std::exception const&)
    {
        // For want of memory: the next folder of the name removes it.
    }
}

void ScratchFolder::Remove() const
{
    RemoveAllIn(m_outer);
    rmdir(m_outer.c_str());
    if (m_lock >= 0)
        close(m_lock);
}

}  // namespace KVR

#include "framework/api/IOUtil.h"

#include <bit>
#include <cerrno>
#include <new>

#if !defined(_WIN32)
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace KVR
{

namespace
{

#if defined(_WIN32)
std::FILE* OpenToRead(UTF8String const& path, UTF8String const& mode)
{
    return std::fopen(path.Value(), mode.Value());
}
#else
// Opened without waiting, since opening a FIFO would wait for a writer.
std::FILE* OpenToRead(UTF8String const& path, UTF8String const& mode)
{
    int const descriptor = ::open(path.Value(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    if (descriptor < 0)
        return nullptr;
    struct stat status
    {
    };
    bool const isKnown = ::fstat(descriptor, &status) == 0;
    bool const isOther = isKnown && !S_ISREG(status.st_mode);
    std::FILE* const file = isKnown && !isOther ? ::fdopen(descriptor, mode.Value()) : nullptr;
    if (!file)
    {
        int const error = isOther ? 0 : errno;
        ::close(descriptor);
        errno = error;
    }
    return file;
}
#endif

}  // namespace

bool IOUtil::IsBigEndian() noexcept
{
    return std::endian::native == std::endian::big;
}

std::FILE* IOUtil::OpenFile(UTF8String const& path, UTF8String const& mode)
{
    bool const onlyReads = mode.Compare("r") == 0 || mode.Compare("rb") == 0;
    std::FILE* const file = onlyReads ? OpenToRead(path, mode) : std::fopen(path.Value(), mode.Value());
    if (!file && errno == ENOMEM)
        throw std::bad_alloc();
    return file;
}

void IOUtil::CloseFile(std::FILE* file) noexcept
{
    if (file)
        std::fclose(file);
}

FilePtr::FilePtr(UTF8String const& path, UTF8String const& mode) : m_file(IOUtil::OpenFile(path, mode)) {}
FilePtr::~FilePtr()
{
    IOUtil::CloseFile(m_file);
}

}  // namespace KVR

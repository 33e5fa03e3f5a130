#include "exchange/run/NewFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "output/OutputError.h"

namespace KVR
{

namespace
{

int Opened(std::string const& path)
{
    int const descriptor = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (descriptor < 0)
        throw OutputError(errno);
    return descriptor;
}

// A device is not the file that was begun, and stays.
void RemoveFile(std::string const& path)
{
    struct stat status = {};
    if (::lstat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode))
        ::unlink(path.c_str());
}

}  // namespace

NewFile::NewFile(std::string const& path) : m_path(path), m_descriptor(Opened(path)), m_out(m_descriptor) {}

NewFile::~NewFile()
{
    if (m_descriptor < 0)
        return;
    ::close(m_descriptor);
    RemoveFile(m_path);
}

void NewFile::Patch(std::size_t place, std::string_view bytes)
{
    m_out.Flush();
    while (!bytes.empty())
    {
        ssize_t const count = ::pwrite(m_descriptor, bytes.data(), bytes.size(), static_cast<off_t>(place));
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            throw OutputError(count < 0 ? errno : EIO);
        place += static_cast<std::size_t>(count);
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
}

void NewFile::Finish()
{
    m_out.Flush();
    int const descriptor = m_descriptor;
    m_descriptor = -1;
    if (::close(descriptor) != 0)
    {
        int const error = errno;
        RemoveFile(m_path);
        throw OutputError(error);
    }
}

}  // namespace KVR

#include "exchange/export/ExportFile.h"

#include <fcntl.h>
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

}  // namespace

ExportFile::ExportFile(std::string const& path) : m_descriptor(Opened(path)), m_out(m_descriptor) {}

ExportFile::~ExportFile()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

void ExportFile::Finish()
{
    m_out.Flush();
    int const descriptor = m_descriptor;
    m_descriptor = -1;
    if (::close(descriptor) != 0)
        throw OutputError(errno);
}

}  // namespace KVR

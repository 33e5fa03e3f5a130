#include "framework/api/Exception.h"

namespace KVR
{

Exception::Exception() = default;
Exception::~Exception() = default;

void Exception::SetReporter(ComponentRoleEnum reporter) noexcept
{
    m_reporter = reporter;
    m_hasReporter = true;
}

IsValueSpecifiedEnum Exception::Reporter(ComponentRoleEnum& reporter) const noexcept
{
    if (!m_hasReporter)
        return kIsValueSpecified_No;
    reporter = m_reporter;
    return kIsValueSpecified_Yes;
}

GeneralException::GeneralException(UTF8String const& message) : m_message(message) {}
GeneralException::~GeneralException() = default;
std::unique_ptr<Exception> GeneralException::Clone() const
{
    return std::make_unique<GeneralException>(*this);
}

FileException::FileException() : m_what("a file could not be read") {}
FileException::~FileException() = default;
std::unique_ptr<Exception> FileException::Clone() const
{
    return std::make_unique<FileException>(*this);
}

void FileException::SetFileName(UTF16String const& fileName)
{
    m_fileName = fileName;
    m_what = UTF8String("a file could not be read: ") + UTF8String(fileName);
}

}  // namespace KVR

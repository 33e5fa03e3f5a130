#include "framework/api/Exception.h"

namespace KVR
{

namespace
{

char const* DescriptionOf(FileException::FileErrorCodeEnum code)
{
    switch (code)
    {
        case FileException::kFileErrorCode_InsecureContentRestored:
            return "a file with insecure content was read";
        case FileException::kFileErrorCode_InsecureContentRefused:
            return "a file with insecure content was refused";
        case FileException::kFileErrorCode_CannotRead:
            break;
    }
    return "a file could not be read";
}

}  // namespace

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

FileException::FileException() : m_what(DescriptionOf(m_code)) {}
FileException::~FileException() = default;
std::unique_ptr<Exception> FileException::Clone() const
{
    return std::make_unique<FileException>(*this);
}

void FileException::SetFileName(UTF16String const& fileName)
{
    m_fileName = fileName;
    Describe();
}

void FileException::SetErrorCode(FileErrorCodeEnum code)
{
    m_code = code;
    Describe();
}

void FileException::Describe()
{
    m_what = DescriptionOf(m_code);
    if (!m_fileName.IsEmpty())
        m_what = m_what + ": " + UTF8String(m_fileName);
}

}  // namespace KVR

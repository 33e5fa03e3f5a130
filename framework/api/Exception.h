#pragma once

#include <exception>
#include <memory>

#include "framework/api/Enums.h"
#include "framework/api/Export.h"
#include "framework/api/UTF16String.h"
#include "framework/api/UTF8String.h"

namespace KVR
{

/// Base of all that the framework throws.
class KVR_API Exception : public std::exception
{
public:
    ~Exception() override;

    /// Says who reports the exception.
    void SetReporter(ComponentRoleEnum reporter) noexcept;
    /// Not specified, with the output left alone, until set.
    IsValueSpecifiedEnum Reporter(ComponentRoleEnum& reporter) const noexcept;
    /// A copy of the whole exception, owned by the caller.
    virtual std::unique_ptr<Exception> Clone() const = 0;

protected:
    Exception();
    Exception(Exception const&) = default;
    Exception& operator=(Exception const&) = default;

private:
    ComponentRoleEnum m_reporter = kComponentRole_Unknown;
    bool m_hasReporter = false;
};

/// A failure told by its message.
class KVR_API GeneralException : public Exception
{
public:
    explicit GeneralException(UTF8String const& message);
    GeneralException(GeneralException const&) = default;
    GeneralException& operator=(GeneralException const&) = default;
    ~GeneralException() override;

    /// What happened, in English; owned by the exception.
    UTF8String const& Message() const noexcept { return m_message; }
    /// The message; valid while the exception lives.
    char const* what() const noexcept override { return m_message.Value(); }
    std::unique_ptr<Exception> Clone() const override;

private:
    UTF8String m_message;
};

/// A failure to do with a file.
class KVR_API FileException : public Exception
{
public:
    enum FileErrorCodeEnum : int
    {
        kFileErrorCode_CannotRead = 0,
        /// A kernel store held insecure content, and restoring such stores was allowed.
        kFileErrorCode_InsecureContentRestored = 15,
        /// The same, and restoring such stores was not allowed.
        kFileErrorCode_InsecureContentRefused = 16
    };

    FileException();
    FileException(FileException const&) = default;
    FileException& operator=(FileException const&) = default;
    ~FileException() override;

    /// Says which file the failure is about.
    void SetFileName(UTF16String const& fileName);
    /// Says what failed.
    void SetErrorCode(FileErrorCodeEnum code);
    /// Empty until set.
    UTF16String const& FileName() const noexcept { return m_fileName; }
    /// 0 until set.
    FileErrorCodeEnum ErrorCode() const noexcept { return m_code; }
    /// What the code says, and the file's name; valid while the exception lives unchanged.
    char const* what() const noexcept override { return m_what.Value(); }
    std::unique_ptr<Exception> Clone() const override;

private:
    void Describe();

    FileErrorCodeEnum m_code = kFileErrorCode_CannotRead;
    UTF16String m_fileName;
    UTF8String m_what;
};

}  // namespace KVR

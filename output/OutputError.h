#pragma once

#include <system_error>

namespace KVR
{

/// Output that could not be written.
class OutputError : public std::system_error
{
public:
    explicit OutputError(int errorNumber);

    /// Whether the reader has gone away, which is the reader's good right and no failure.
    bool IsReaderGone() const noexcept;
};

}  // namespace KVR

#pragma once

#include <string>

#include "framework/kernel/Export.h"

namespace KVR
{

/// What became of a kernel operation. Kernel operations throw nothing but std::bad_alloc; what Open CASCADE throws
/// below them becomes a bad outcome.
class KVR_KERNEL_API outcome
{
public:
    enum : int
    {
        kGood = 0,
        /// An argument was null or out of range.
        kBadArgument = 1,
        /// The geometry does not allow it.
        kBadGeometry = 2,
        /// A store is no store, of another version, or cut short.
        kBadStore = 3,
        /// A store's content is not what was written.
        kInsecureStore = 4,
        /// The file system refused.
        kBadFile = 5
    };

    outcome();
    outcome(int errorNumber, std::string message);
    outcome(outcome const& other);
    outcome(outcome&& other) noexcept;
    outcome& operator=(outcome const& other);
    outcome& operator=(outcome&& other) noexcept;
    ~outcome();

    /// 0 for success.
    int error_number() const noexcept { return m_errorNumber; }
    /// Whether the operation succeeded.
    bool ok() const noexcept { return m_errorNumber == kGood; }
    /// A sentence about the failure; empty for success.
    std::string const& message() const noexcept { return m_message; }

private:
    int m_errorNumber = kGood;
    std::string m_message;
};

}  // namespace KVR

#pragma once

#include "framework/api/Export.h"

namespace KVR
{

/// Whether assertion points may speak up; they never change what is done.
class KVR_API AssertOption
{
public:
    /// True in builds with assertions.
    static bool IsAssertEnabled() noexcept;
};

}  // namespace KVR

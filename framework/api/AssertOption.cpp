#include "framework/api/AssertOption.h"

namespace KVR
{

bool AssertOption::IsAssertEnabled() noexcept
{
#if defined(NDEBUG)
    return false;
#else
    return true;
#endif
}

}  // namespace KVR

#pragma once

#include <Standard_Failure.hxx>
#include <string>

namespace KVR
{

/// What a failure of Open CASCADE says, or else what kind it is.
inline std::string KernelFailureText(Standard_Failure const& failure)
{
    char const* const message = failure.GetMessageString();
    return message && *message ? message : failure.DynamicType()->Name();
}

}  // namespace KVR

#pragma once

#include <string>

#include "framework/kernel/Export.h"

class Standard_Failure;

namespace KVR
{

/// What a failure of Open CASCADE means to a user: a plain sentence without its full stop, that begins with "it". What
/// Open CASCADE itself says is for its developers.
KVR_KERNEL_API std::string KernelFailureText(Standard_Failure const& failure);

/// From then on Open CASCADE prints nothing of what it finds, which it otherwise does on standard output.
KVR_KERNEL_API void SilenceKernel();

}  // namespace KVR

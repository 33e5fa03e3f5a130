#pragma once

#include <cstddef>
#include <functional>

#include "tests/support/SanitizedBuild.h"

namespace KVR::Test
{

/// The stack on which the deepest scenes must load. The frames of instrumented code are larger.
inline constexpr std::size_t kSmallStack = (kIsSanitized ? 16U : 2U) * 1024U * 1024U;

/// Runs the action on a thread with a stack of that many bytes and waits for its end. What it throws goes on here.
void RunOnStack(std::size_t size, std::function<void()> const& action);

}  // namespace KVR::Test

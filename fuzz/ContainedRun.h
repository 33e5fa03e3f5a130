#pragma once

#include <functional>

#include "exchange/run/ChildProcess.h"

namespace KVR::Fuzz
{

/// Does what an input asks for in a child process with limits, as the program does, and ends this one when the child
/// came upon a mistake of the project's own: one that a sanitizer tells of, or an end that nobody can explain. What
/// Open CASCADE crashes at, and what the limits end, is no finding: such inputs are counted, and told when the fuzzer
/// ends. The edges that a child covered on its way to a good end are those of the fuzzer. What a child leaks is not
/// seen.
///
/// The environment variable KVR_FUZZ_IN_PROCESS makes it do the work in this process, where a sanitizer tells all.
///
/// Nothing when the limits or Open CASCADE ended it.
std::optional<ChildResult> RunContained(std::function<std::string(ChildVoice const&)> const& work);

/// Whether a failure is one sentence that a user can be shown.
bool IsSentence(std::string const& failure) noexcept;

}  // namespace KVR::Fuzz

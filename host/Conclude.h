#pragma once

#include <string>

#include "host/Command.h"

namespace KVR
{

struct ConvertResult;

/// How a command ends that makes a file of a model or scene: complains of what failed, or of what the result lacks,
/// that unless it is quiet.
ExitStatus Conclude(ConvertResult const& result, std::string const& source, std::string const& target, bool isQuiet);

}  // namespace KVR

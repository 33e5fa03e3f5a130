#include "output/OutputError.h"

#include <cerrno>

namespace KVR
{

OutputError::OutputError(int errorNumber) : std::system_error(errorNumber, std::generic_category()) {}

bool OutputError::IsReaderGone() const noexcept
{
    return code().value() == EPIPE;
}

}  // namespace KVR

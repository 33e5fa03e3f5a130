#pragma once

#include <stdexcept>

namespace KVR::Python
{

/// A callback did not want the work to go on.
class Cancelled : public std::runtime_error
{
public:
    Cancelled() : std::runtime_error("cancelled") {}
};

}  // namespace KVR::Python

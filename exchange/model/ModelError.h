#pragma once

#include <stdexcept>
#include <string>

namespace KVR
{

/// Why a model could not be imported: the cause alone, as it stands behind the file's name in a sentence.
class ModelError : public std::runtime_error
{
public:
    explicit ModelError(std::string const& cause) : std::runtime_error(cause) {}
};

}  // namespace KVR

#pragma once

#include <exception>
#include <optional>
#include <string>

namespace KVR
{

/// What an exception tells, by its members' names. All texts are UTF-8.
struct Failure
{
    /// "FileException", "GeneralException", or "StandardException" for one that is not of the framework.
    std::string type;
    std::optional<std::string> message;
    std::optional<std::string> fileName;
    std::optional<int> errorCode;
    std::optional<int> reporter;

    static Failure Of(std::exception const& exception);
};

}  // namespace KVR

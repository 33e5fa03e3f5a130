#pragma once

#include <exception>
#include <optional>
#include <string>

#include "exchange/Progress.h"

namespace KVR
{

/// The result of work with a callback that throws nothing: what the caller's throws means that the work is not to go
/// on, and is thrown when it has ended.
template <class Work>
auto Heard(Progress const& progress, Work const& work)
{
    std::exception_ptr thrown;
    auto const ask = [&](ProgressReport const& report)
    {
        try
        {
            return progress(report);
        }
        catch (...)
        {
            thrown = std::current_exception();
            return false;
        }
    };
    auto result = work(progress ? Progress(ask) : Progress());
    if (thrown)
        std::rethrow_exception(thrown);
    return result;
}

/// Tells of a new stage; false when the caller does not want to go on.
inline bool Begin(Progress const& progress, char const* stage)
{
    return !progress || progress({stage, std::nullopt});
}

/// A result without content.
template <class Result>
Result Ended(Outcome outcome, std::string const& failure = {})
{
    Result result;
    result.outcome = outcome;
    result.failure = failure;
    return result;
}

}  // namespace KVR

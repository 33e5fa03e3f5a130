#pragma once

#include <optional>

#include "framework/api/Enums.h"

namespace KVR
{

/// Writes a value that an element stated; not specified when it stated none.
template <class Value>
IsValueSpecifiedEnum AnswerMarked(std::optional<Value> const& marked, Value& value)
{
    if (!marked)
        return kIsValueSpecified_No;
    value = *marked;
    return kIsValueSpecified_Yes;
}

}  // namespace KVR

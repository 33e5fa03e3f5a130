#pragma once

#include <new>
#include <optional>
#include <type_traits>
#include <utility>

#include "framework/api/Enums.h"

namespace KVR
{

/// The answer of a getter that says whether it has one.
template <class Value, class Object>
std::optional<Value> Specified(Object const& object, IsValueSpecifiedEnum (Object::*getter)(Value&) const,
                               Value value = Value())
{
    return (object.*getter)(value) == kIsValueSpecified_Yes ? std::optional<Value>(value) : std::nullopt;
}

/// The answer of a getter, or another one when it throws anything but std::bad_alloc: one broken answer must not cost
/// the reader all others.
template <class Getter>
std::invoke_result_t<Getter> AnswerOr(Getter&& getter, std::invoke_result_t<Getter> otherwise = {})
{
    try
    {
        return std::forward<Getter>(getter)();
    }
    catch (std::bad_alloc const&)
    {
        throw;
    }
    catch (...)
    {
        return otherwise;
    }
}

}  // namespace KVR

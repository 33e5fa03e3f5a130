#pragma once

#include <optional>
#include <utility>

#include "framework/api/Enums.h"

namespace KVR
{

/// A value that is not specified until it is set.
template <class T>
class SpecifiedValue
{
public:
    /// Specifies the value, in place of a former one.
    void Set(T value) { m_value = std::move(value); }

    /// Not specified, with the output left alone, until the value was set.
    IsValueSpecifiedEnum Get(T& value) const
    {
        if (!m_value)
            return kIsValueSpecified_No;
        value = *m_value;
        return kIsValueSpecified_Yes;
    }

    /// The value, or null.
    T const* Find() const noexcept { return m_value ? &*m_value : nullptr; }

private:
    std::optional<T> m_value;
};

/// Two values of one type that are specified together or not at all.
template <class T>
class SpecifiedPair
{
public:
    /// Specifies both values, in place of former ones.
    void Set(T first, T second) { m_value = std::pair(first, second); }

    /// Not specified, with the outputs left alone, until the values were set.
    IsValueSpecifiedEnum Get(T& first, T& second) const
    {
        if (!m_value)
            return kIsValueSpecified_No;
        first = m_value->first;
        second = m_value->second;
        return kIsValueSpecified_Yes;
    }

private:
    std::optional<std::pair<T, T>> m_value;
};

}  // namespace KVR

#pragma once

#include <map>
#include <string>

namespace KVR
{

/// What a format cannot carry, counted by kind.
class NotCarried
{
public:
    /// The kind in the plural, as "meshes without a body".
    void Add(std::string const& kind, unsigned long long count = 1)
    {
        if (count > 0)
            m_counts[kind] += count;
    }
    /// "3 meshes without a body, 1 view"; empty when everything was carried.
    std::string Text() const;
    std::map<std::string, unsigned long long> const& Counts() const noexcept { return m_counts; }

private:
    std::map<std::string, unsigned long long> m_counts;
};

}  // namespace KVR

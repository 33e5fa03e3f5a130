#pragma once

#include <map>
#include <string>

namespace KVR
{

/// What a model holds and its scene does not, counted by kind. A kind is in the plural, as in "notes".
class Losses
{
public:
    void Add(std::string const& kind, unsigned long long count = 1)
    {
        if (count > 0)
            m_counts[kind] += count;
    }
    std::map<std::string, unsigned long long> const& Counts() const noexcept { return m_counts; }

private:
    std::map<std::string, unsigned long long> m_counts;
};

}  // namespace KVR

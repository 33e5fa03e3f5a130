#pragma once

#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace KVR
{

/// What a model holds and its scene does not, by kind, with what tells each in the model. A kind is in the plural, as
/// in "notes".
class Losses
{
public:
    struct Kind
    {
        unsigned long long count = 0;
        /// One for each, such as a name or an entity ("#65 CALENDAR_DATE"), or for several: "3 of body1". Never empty.
        std::vector<std::string> items;
    };

    void AddItem(std::string const& kind, std::string item)
    {
        Kind& losses = m_kinds[kind];
        ++losses.count;
        losses.items.push_back(std::move(item));
    }
    /// Several that one thing tells: "3 of body1".
    void AddOf(std::string const& kind, std::string_view owner, unsigned long long count)
    {
        if (count == 0)
            return;
        Kind& losses = m_kinds[kind];
        losses.count += count;
        losses.items.push_back(std::to_string(count) + " of " + std::string(owner));
    }
    std::map<std::string, Kind> const& Kinds() const noexcept { return m_kinds; }

private:
    std::map<std::string, Kind> m_kinds;
};

}  // namespace KVR

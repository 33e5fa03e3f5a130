#include "scene/NearestNames.h"

#include <algorithm>
#include <numeric>
#include <tuple>
#include <utility>

namespace KVR
{

namespace
{

constexpr std::size_t kLongestName = 256;

std::string Lower(std::string_view text)
{
    std::string lower(text);
    for (char& byte : lower)
        if (byte >= 'A' && byte <= 'Z')
            byte = static_cast<char>(byte - 'A' + 'a');
    return lower;
}

}  // namespace

NearestNames::NearestNames(std::string_view text, std::size_t most, std::size_t farthest)
    : m_text(Lower(text.substr(0, kLongestName))), m_most(most), m_farthest(farthest)
{
}

void NearestNames::Add(std::string_view name)
{
    if (name.empty() || name.size() > kLongestName || m_most == 0)
        return;
    bool const isFull = m_entries.size() == m_most;
    std::size_t const limit = isFull ? m_entries.back().distance : m_farthest;
    Entry entry{DistanceTo(Lower(name), limit), std::string(name)};
    if (entry.distance > limit)
        return;
    auto const isBefore = [](Entry const& left, Entry const& right)
    { return std::tie(left.distance, left.name) < std::tie(right.distance, right.name); };
    if (isFull && !isBefore(entry, m_entries.back()))
        return;
    auto const place = std::lower_bound(m_entries.begin(), m_entries.end(), entry, isBefore);
    if (place != m_entries.end() && place->name == entry.name)
        return;
    m_entries.insert(place, std::move(entry));
    m_entries.resize(std::min(m_entries.size(), m_most));
}

std::vector<std::string> NearestNames::Names() const
{
    std::vector<std::string> names;
    for (Entry const& entry : m_entries)
        names.push_back(entry.name);
    return names;
}

std::size_t NearestNames::DistanceTo(std::string const& name, std::size_t limit)
{
    if (name == m_text)
        return 0;
    if (!m_text.empty() && name.find(m_text) != std::string::npos)
        return 1;
    std::size_t const longer = std::max(name.size(), m_text.size());
    std::size_t const difference = longer - std::min(name.size(), m_text.size());
    if (difference > limit)
        return difference;
    // For each beginning of the name, how far it is from the beginning of the text that the row stands for.
    m_row.resize(name.size() + 1);
    m_last.resize(name.size() + 1);
    m_older.resize(name.size() + 1);
    std::iota(m_row.begin(), m_row.end(), std::size_t{0});
    for (std::size_t i = 0; i < m_text.size(); ++i)
    {
        m_older.swap(m_last);
        m_last.swap(m_row);
        m_row[0] = i + 1;
        for (std::size_t j = 0; j < name.size(); ++j)
        {
            std::size_t const changed = m_last[j] + (m_text[i] == name[j] ? 0 : 1);
            m_row[j + 1] = std::min({changed, m_row[j] + 1, m_last[j + 1] + 1});
            if (i > 0 && j > 0 && m_text[i] == name[j - 1] && m_text[i - 1] == name[j])
                m_row[j + 1] = std::min(m_row[j + 1], m_older[j - 1] + 1);
        }
    }
    return m_row.back();
}

}  // namespace KVR

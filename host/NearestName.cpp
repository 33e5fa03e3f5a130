#include "host/NearestName.h"

#include <algorithm>

namespace KVR
{

namespace
{

// Letters left out, put in, changed or swapped with their neighbours.
std::size_t Distance(std::string_view a, std::string_view b)
{
    // Rows of the table of distances between beginnings: the one before the last, the last, and that which is made.
    std::vector<std::size_t> older(b.size() + 1);
    std::vector<std::size_t> old(b.size() + 1);
    std::vector<std::size_t> row(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j)
        row[j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i)
    {
        older.swap(old);
        old.swap(row);
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j)
        {
            row[j] = std::min({old[j] + 1, row[j - 1] + 1, old[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1)});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
                row[j] = std::min(row[j], older[j - 2] + 1);
        }
    }
    return row[b.size()];
}

}  // namespace

std::string NearestName(std::string_view text, std::vector<std::string> const& names)
{
    // No argument that is longer was meant to be a name.
    constexpr std::size_t kMostLetters = 64;
    if (text.size() > kMostLetters)
        return {};
    std::string nearest;
    std::size_t least = 1 + std::max<std::size_t>(1, 2 * text.size() / 5);
    for (std::string const& name : names)
    {
        // A beginning is short of letters alone.
        bool const isBeginning = text.size() > 3 && name.starts_with(text);
        std::size_t const distance = isBeginning ? 1 : Distance(text, name);
        if (distance < least)
        {
            least = distance;
            nearest = name;
        }
    }
    return nearest;
}

}  // namespace KVR

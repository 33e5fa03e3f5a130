#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "scene/Export.h"

namespace KVR
{

/// Finds the names that a mistyped one may have meant: those with the fewest bytes to change, add or leave out, or
/// neighbours to swap, without regard to the case of ASCII letters. A name that has the text in it counts as one byte
/// away.
class KVR_SCENE_API NearestNames
{
public:
    static constexpr std::size_t kAnyDistance = static_cast<std::size_t>(-1);

    /// For so many of the names that are at most so far away; of a text longer than 256 bytes the beginning counts.
    explicit NearestNames(std::string_view text, std::size_t most = 3, std::size_t farthest = kAnyDistance);

    /// A name that there is, which is copied if it is kept; one that was added before has no effect. Names longer than
    /// 256 bytes have none either.
    void Add(std::string_view name);

    /// The nearest of those added, the nearest first, and by their bytes among equals.
    std::vector<std::string> Names() const;

private:
    struct Entry
    {
        std::size_t distance;
        std::string name;
    };

    /// The distance; what is more than the limit may be answered as any number above it.
    std::size_t DistanceTo(std::string const& name, std::size_t limit);

    std::string m_text;
    std::size_t m_most;
    std::size_t m_farthest;
    std::vector<Entry> m_entries;
    /// Rows of the table of distances: that which is made, the last, and the one before it.
    std::vector<std::size_t> m_row;
    std::vector<std::size_t> m_last;
    std::vector<std::size_t> m_older;
};

}  // namespace KVR

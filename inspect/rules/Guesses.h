#pragma once

#include <algorithm>
#include <cstddef>
#include <string>

#include "scene/NearestNames.h"

namespace KVR
{

/// Guesses which of the names that there are was meant by another. There is no end of them: what takes long is left
/// out.
class Guesses
{
public:
    /// So many names are compared at a time, and for so many findings.
    static constexpr std::size_t kMostNames = 20'000;
    static constexpr std::size_t kMostGuesses = 50;

    /// The nearest of the names, which is not the text itself; empty for none that is near.
    template <class List>
    std::string Of(std::string const& text, List const& names)
    {
        if (text.empty() || names.size() > kMostNames || m_count++ >= kMostGuesses)
            return {};
        NearestNames nearest(text, 1, std::max<std::size_t>(1, text.size() / 3));
        for (std::string const& name : names)
            if (name != text)
                nearest.Add(name);
        return nearest.Names().empty() ? std::string() : nearest.Names().front();
    }

private:
    std::size_t m_count = 0;
};

}  // namespace KVR

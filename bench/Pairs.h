#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "bench/ChildProcess.h"

namespace KVR::Bench
{

/// The same figures of two sides, measured in turn. Asked for a figure of which there is none it throws
/// std::out_of_range.
class Pairs
{
public:
    void Add(Figures const& ours, Figures const& theirs)
    {
        m_ours.push_back(ours);
        m_theirs.push_back(theirs);
    }

    double Ours(std::string const& name) const
    {
        return Median([&](std::size_t i) { return m_ours[i].at(name); });
    }
    double Theirs(std::string const& name) const
    {
        return Median([&](std::size_t i) { return m_theirs[i].at(name); });
    }
    /// The median of the pairs' own ratios.
    double Ratio(std::string const& name) const
    {
        return Median([&](std::size_t i) { return m_ours[i].at(name) / m_theirs[i].at(name); });
    }

private:
    template <class Figure>
    double Median(Figure figure) const
    {
        std::vector<double> values;
        for (std::size_t i = 0; i < m_ours.size(); ++i)
            values.push_back(figure(i));
        auto const middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
        std::nth_element(values.begin(), middle, values.end());
        return values.empty() ? 0.0 : *middle;
    }

    std::vector<Figures> m_ours;
    std::vector<Figures> m_theirs;
};

}  // namespace KVR::Bench

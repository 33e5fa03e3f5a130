#pragma once

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string>
#include <vector>

#include "exchange/certify/ModelFacts.h"

/// How the rows of a certificate compare.
namespace KVR::Certification::CertificateNumbers
{

// How far numbers may be apart.
inline constexpr double kTolerance = 1e-6;
// The same for those of single occurrences, colours and meshes, which single precision holds.
inline constexpr double kFineTolerance = 2e-5;
// Between the area of a body and that of its mesh.
inline constexpr double kMeshTolerance = 0.03;
// Of directions, and of angles between normals.
inline constexpr double kAngleTolerance = 1e-4;
inline constexpr std::size_t kMostDifferences = 1000;

using Entry = ModelFacts::Entry;
using Table = ModelFacts::Table;

inline double Relative(double a, double b)
{
    double const most = std::max(std::abs(a), std::abs(b));
    return most > 0.0 ? std::abs(a - b) / most : 0.0;
}

inline double OfCounts(Entry const& a, Entry const& b)
{
    return Relative(a.count, b.count);
}

inline double OfPresence(Entry const& /*a*/, Entry const& /*b*/)
{
    return 0.0;
}

inline double OfNumbers(Entry const& a, Entry const& b)
{
    double most = a.numbers.size() == b.numbers.size() ? 0.0 : 1.0;
    for (std::size_t i = 0; i < std::min(a.numbers.size(), b.numbers.size()); ++i)
        most = std::max(most, Relative(a.numbers[i], b.numbers[i]));
    return most;
}

inline std::string Shown(Entry const& entry)
{
    return entry.numbers.empty() ? fmt::format("{:.9g}", entry.count)
                                 : fmt::format("{:.6g}", fmt::join(entry.numbers, " "));
}

// Colours that are one step of 255 apart are the same: what rounds, rounds either way.
inline bool AreNear(std::string const& a, std::string const& b)
{
    if (a.size() != 9 || b.size() != 9 || a[0] != '#' || b[0] != '#')
        return false;
    for (std::size_t i = 1; i < 9; i += 2)
        if (std::abs(std::stoi(a.substr(i, 2), nullptr, 16) - std::stoi(b.substr(i, 2), nullptr, 16)) > 1)
            return false;
    return true;
}

// The table with the first one's colours where these are near, at the same path.
inline Table WithColorsOf(Table const& first, Table const& table)
{
    Table named;
    for (auto const& [key, entry] : table)
    {
        std::string name = key;
        auto const [path, color] = ModelFacts::Parted(key);
        std::string const begin = ModelFacts::Joined(path, "#");
        if (first.count(name) == 0 && color.starts_with('#'))
            for (auto known = first.lower_bound(begin); known != first.end() && known->first.starts_with(begin);
                 ++known)
                if (AreNear(ModelFacts::Parted(known->first).second, color))
                    name = known->first;
        named[name].Add(entry);
    }
    return named;
}

// A key as it is shown.
inline std::string Named(std::string const& key)
{
    auto const [owner, name] = ModelFacts::Parted(key);
    return owner.empty() ? name : owner + ": " + name;
}

inline std::vector<double> List(FactPoint const& a)
{
    return {a.begin(), a.end()};
}

inline std::vector<double> BoxOf(Bulk const& bulk)
{
    if (!bulk.HasBox())
        return std::vector<double>(6, 0.0);
    return {bulk.low[0], bulk.low[1], bulk.low[2], bulk.high[0], bulk.high[1], bulk.high[2]};
}

}  // namespace KVR::Certification::CertificateNumbers

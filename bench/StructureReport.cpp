#include "bench/StructureReport.h"

#include <fmt/format.h>
#include <algorithm>
#include <iterator>
#include <nlohmann/json.hpp>

#include "bench/Goals.h"

namespace KVR::Bench
{

namespace
{

constexpr unsigned kGrowthFrom = 10'000;
constexpr unsigned kGrowthTo = 1'000'000;

SizeFigures const* OfSize(std::vector<SizeFigures> const& sizes, unsigned instances)
{
    auto const found =
        std::find_if(sizes.begin(), sizes.end(), [&](SizeFigures const& size) { return size.instances == instances; });
    return found == sizes.end() ? nullptr : &*found;
}

double Largest(std::vector<SizeFigures> const& sizes, double SizeFigures::*figure)
{
    double largest = 0.0;
    for (SizeFigures const& size : sizes)
        largest = std::max(largest, size.*figure);
    return largest;
}

double BeginSecondsPerInstance(SizeFigures const& size)
{
    return size.beginSeconds / size.instances;
}

double ParseSecondsPerInstance(SizeFigures const& size)
{
    return size.parseSeconds / size.instances;
}

double BeginBytesPerInstance(SizeFigures const& size)
{
    return size.parseBytesPerInstance + size.extraBytesPerInstance;
}

// Goals that the sizes measured say nothing about are left out.
std::vector<Goal> Goals(std::vector<SizeFigures> const& sizes)
{
    std::vector<Goal> goals = {
        {"BeginProcess / bare parse, worst size", "", 1.10, Largest(sizes, &SizeFigures::beginRatio)},
    };
    SizeFigures const* const from = OfSize(sizes, kGrowthFrom);
    SizeFigures const* const to = OfSize(sizes, kGrowthTo);
    if (from && to)
    {
        goals.push_back({"growth of BeginProcess per instance, 1,000,000 / 10,000, over that of the bare parse", "",
                         1.05,
                         BeginSecondsPerInstance(*to) / BeginSecondsPerInstance(*from) /
                             (ParseSecondsPerInstance(*to) / ParseSecondsPerInstance(*from))});
        goals.push_back({"BeginProcess memory per instance, 1,000,000 / 10,000", "", 1.2,
                         BeginBytesPerInstance(*to) / BeginBytesPerInstance(*from)});
    }
    if (to)
    {
        goals.push_back(
            {"memory beyond the parse's peak per instance, 1,000,000", " B", 400.0, to->extraBytesPerInstance});
        goals.push_back({"memory kept per instance, 1,000,000", " B", 900.0, to->keptBytesPerInstance});
        goals.push_back({"Load at 1,000,000 instances", " ns", 60.0, to->loadNanoseconds});
        goals.push_back({"EndProcess per instance, 1,000,000", " ns", 200.0, to->endSeconds / to->instances * 1e9});
    }
    return goals;
}

}  // namespace

std::string TableText(std::vector<SizeFigures> const& sizes)
{
    std::string text;
    auto const out = std::back_inserter(text);
    fmt::format_to(out, "{:>10} {:>9} {:>12} {:>14} {:>7} {:>12} {:>8} {:>12} {:>12} {:>12}\n", "instances", "file",
                   "bare parse", "BeginProcess", "ratio", "EndProcess", "Load", "document", "beyond it", "kept");
    fmt::format_to(out, "{:>10} {:>9} {:>12} {:>14} {:>7} {:>12} {:>8} {:>12} {:>12} {:>12}\n", "", "MB", "ms", "ms",
                   "", "ms", "ns", "B/instance", "B/instance", "B/instance");
    for (SizeFigures const& size : sizes)
        fmt::format_to(
            out, "{:>10} {:>9.1f} {:>12.1f} {:>14.1f} {:>7.2f} {:>12.1f} {:>8.0f} {:>12.0f} {:>12.0f} {:>12.0f}\n",
            size.instances, size.fileBytes / 1e6, size.parseSeconds * 1e3, size.beginSeconds * 1e3, size.beginRatio,
            size.endSeconds * 1e3, size.loadNanoseconds, size.parseBytesPerInstance, size.extraBytesPerInstance,
            size.keptBytesPerInstance);
    text += GoalsText(Goals(sizes));
    return text;
}

std::string JsonText(std::vector<SizeFigures> const& sizes)
{
    nlohmann::ordered_json json;
    for (SizeFigures const& size : sizes)
        json["sizes"].push_back({{"instances", size.instances},
                                 {"fileBytes", size.fileBytes},
                                 {"parseSeconds", size.parseSeconds},
                                 {"beginSeconds", size.beginSeconds},
                                 {"beginRatio", size.beginRatio},
                                 {"endSeconds", size.endSeconds},
                                 {"loadNanoseconds", size.loadNanoseconds},
                                 {"parseBytesPerInstance", size.parseBytesPerInstance},
                                 {"extraBytesPerInstance", size.extraBytesPerInstance},
                                 {"keptBytesPerInstance", size.keptBytesPerInstance}});
    for (Goal const& goal : Goals(sizes))
        json["goals"].push_back({{"name", goal.name},
                                 {"atMost", goal.limit},
                                 {"measured", goal.reached},
                                 {"met", goal.reached <= goal.limit}});
    return json.dump(2) + "\n";
}

}  // namespace KVR::Bench

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

double BeginBytesPerInstance(SizeFigures const& size)
{
    return size.parseBytesPerInstance + size.extraBytesPerInstance;
}

// Goals that the sizes measured say nothing about are left out.
std::vector<Goal> Goals(std::vector<SizeFigures> const& sizes)
{
    std::vector<Goal> goals = {
        {"BeginProcess / bare parse, worst size", "", 1.25, Largest(sizes, &SizeFigures::beginRatio)},
        {"memory above the document per instance, worst size", " B", 1500.0,
         Largest(sizes, &SizeFigures::extraBytesPerInstance)},
    };
    SizeFigures const* const from = OfSize(sizes, kGrowthFrom);
    SizeFigures const* const to = OfSize(sizes, kGrowthTo);
    if (from && to)
    {
        goals.push_back({"BeginProcess time per instance, 1,000,000 / 10,000", "", 1.2,
                         BeginSecondsPerInstance(*to) / BeginSecondsPerInstance(*from)});
        goals.push_back({"BeginProcess memory per instance, 1,000,000 / 10,000", "", 1.2,
                         BeginBytesPerInstance(*to) / BeginBytesPerInstance(*from)});
    }
    if (to)
        goals.push_back({"Load at 1,000,000 instances", " ns", 200.0, to->loadNanoseconds});
    return goals;
}

}  // namespace

std::string TableText(std::vector<SizeFigures> const& sizes)
{
    std::string text;
    auto const out = std::back_inserter(text);
    fmt::format_to(out, "{:>10} {:>9} {:>12} {:>14} {:>7} {:>12} {:>8} {:>12} {:>12}\n", "instances", "file",
                   "bare parse", "BeginProcess", "ratio", "EndProcess", "Load", "document", "beyond it");
    fmt::format_to(out, "{:>10} {:>9} {:>12} {:>14} {:>7} {:>12} {:>8} {:>12} {:>12}\n", "", "MB", "ms", "ms", "", "ms",
                   "ns", "B/instance", "B/instance");
    for (SizeFigures const& size : sizes)
        fmt::format_to(out, "{:>10} {:>9.1f} {:>12.1f} {:>14.1f} {:>7.2f} {:>12.1f} {:>8.0f} {:>12.0f} {:>12.0f}\n",
                       size.instances, size.fileBytes / 1e6, size.parseSeconds * 1e3, size.beginSeconds * 1e3,
                       size.beginRatio, size.endSeconds * 1e3, size.loadNanoseconds, size.parseBytesPerInstance,
                       size.extraBytesPerInstance);
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
                                 {"extraBytesPerInstance", size.extraBytesPerInstance}});
    for (Goal const& goal : Goals(sizes))
        json["goals"].push_back({{"name", goal.name},
                                 {"atMost", goal.limit},
                                 {"measured", goal.reached},
                                 {"met", goal.reached <= goal.limit}});
    return json.dump(2) + "\n";
}

}  // namespace KVR::Bench

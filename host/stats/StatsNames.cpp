#include "host/stats/StatsNames.h"

#include <fmt/format.h>

#include "framework/api/IObject.h"
#include "framework/api/UTF8String.h"
#include "scene/SceneComponent.h"

namespace KVR
{

std::string_view NameOf(SceneComponent const& component)
{
    return component.label.empty() ? component.id : component.label;
}

std::string IdOf(GeometryTwins::Member const& member)
{
    return std::string(member.object->Id().View());
}

unsigned long long AllTrianglesOf(SceneStatistics::Component const& component)
{
    SceneStatistics::Amount all;
    all.Add(component.own, static_cast<double>(component.occurrences));
    return all.triangles;
}

std::string TimeOf(double seconds)
{
    constexpr double kMilli = 1e3;
    return seconds < 1.0 ? fmt::format("{:.3g} ms", seconds * kMilli) : fmt::format("{:.3g} s", seconds);
}

}  // namespace KVR

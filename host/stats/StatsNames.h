#pragma once

#include <string>
#include <string_view>

#include "inspect/statistics/SceneStatistics.h"

namespace KVR
{

struct SceneComponent;

/// The label of a component, or its id where that is empty.
std::string_view NameOf(SceneComponent const& component);
/// The id of an object.
std::string IdOf(GeometryTwins::Member const& member);
/// The triangles of a component as often as it occurs, as far as a number holds them.
unsigned long long AllTrianglesOf(SceneStatistics::Component const& component);
/// A time for readers: "12.3 ms".
std::string TimeOf(double seconds);

}  // namespace KVR

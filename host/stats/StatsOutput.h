#pragma once

#include <cstddef>
#include <string>

namespace KVR
{

class OccurrenceStatistics;
class Output;
class Scene;
struct SceneStatistics;

/// What is shown of statistics. All that is pointed at must outlive it.
struct ShownStatistics
{
    Scene const& scene;
    SceneStatistics const& statistics;
    OccurrenceStatistics const& occurrences;
    /// The name of the scene's file.
    std::string const& path;
    /// So many components, occurrences and sets of duplicates are listed; all are counted.
    std::size_t most;
};

/// So many occurrences stand in the map of a page, where there are as many.
constexpr std::size_t kMostOnMap = 400;

/// Tables of components and occurrences, duplicates and totals.
void WriteStatsAsText(ShownStatistics const& shown, Output& out);
/// All components and duplicates, whatever `most` says, which holds for occurrences alone.
void WriteStatsAsJson(ShownStatistics const& shown, Output& out);
/// A page that needs nothing from outside itself: treemaps and the tables.
void WriteStatsAsHtml(ShownStatistics const& shown, Output& out);

}  // namespace KVR

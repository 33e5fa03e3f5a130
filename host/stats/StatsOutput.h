#pragma once

#include <cstddef>
#include <string>

namespace KVR
{

class Output;
class Scene;
struct SceneStatistics;

/// What is shown of statistics. All that is pointed at must outlive it.
struct ShownStatistics
{
    Scene const& scene;
    SceneStatistics const& statistics;
    /// The name of the scene's file.
    std::string const& path;
    /// So many components and sets of duplicates are listed; all are counted.
    std::size_t most;
};

/// A table of components, duplicates and totals.
void WriteStatsAsText(ShownStatistics const& shown, Output& out);
/// Everything, whatever `most` says.
void WriteStatsAsJson(ShownStatistics const& shown, Output& out);
/// A page that needs nothing from outside itself: treemaps and the tables.
void WriteStatsAsHtml(ShownStatistics const& shown, Output& out);

}  // namespace KVR

#pragma once

#include <string>
#include <utility>
#include <vector>

#include "exchange/ExportScene.h"
#include "exchange/export/GeometryWatch.h"
#include "exchange/export/SampleBudget.h"
#include "exchange/run/StageProgress.h"
#include "scene/Scene.h"

namespace KVR
{

/// Counts what a format has no place for, by kind; a kind is in the plural.
class NotCarriedCounts
{
public:
    void Add(std::string const& kind, unsigned long long count = 1);
    /// One sentence without its full stop; empty when everything was carried.
    std::string Sentence() const;

private:
    std::vector<std::pair<std::string, unsigned long long>> m_counts;
};

/// What a format's writer gets: the scene, the path to write to, and where to count.
struct ExportTask
{
    ExportTask(IProducer& producer, Scene const& scene, ExportOptions const& options, std::string path,
               std::string folder, TellStage tell, GeometryWatch watch)
        : producer(producer),
          scene(scene),
          options(options),
          path(std::move(path)),
          folder(std::move(folder)),
          tell(std::move(tell)),
          watch(std::move(watch))
    {
    }

    IProducer& producer;
    Scene const& scene;
    ExportOptions const& options;
    /// The file to write. It has the target's name and stands in a folder of its own, from which it and all files that
    /// the writer puts beside it go to their places together.
    std::string path;
    /// That of the scene, from which it names files; empty for the current one.
    std::string folder;
    /// The name of the file that the scene is of, without a folder; empty where there is none.
    std::string source = {};
    NotCarriedCounts notCarried;
    /// What else is to be said, each a sentence without its full stop.
    std::vector<std::string> remarks = {};
    /// The triangles of bodies and the lines of curves, as many as there may be.
    SampleBudget samples{options.quality, remarks};
    /// Told how far the writing is.
    TellStage tell;
    /// Of the geometry that Open CASCADE works on.
    GeometryWatch watch;

    /// For a writer that goes through all occurrences: tells that it has come to another one.
    void NextOccurrence();

private:
    unsigned long long m_occurrences = 0;
    unsigned long long m_allOccurrences = 0;
};

/// Throws std::runtime_error for a scene with more occurrences than that, counted without walking them: a few
/// components in one another may stand for more than any memory holds.
void RefuseMoreOccurrences(Scene const& scene, unsigned long long limit);

}  // namespace KVR

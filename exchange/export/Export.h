#pragma once

#include <string>
#include <utility>
#include <vector>

#include "exchange/ExportScene.h"
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
    ExportTask(IProducer& producer, Scene const& scene, ExportOptions const& options, std::string path, TellStage tell)
        : producer(producer), scene(scene), options(options), path(std::move(path)), tell(std::move(tell))
    {
    }

    IProducer& producer;
    Scene const& scene;
    ExportOptions const& options;
    /// The file to write. It has the target's name and stands in a folder of its own, from which it and all files that
    /// the writer puts beside it go to their places together.
    std::string path;
    NotCarriedCounts notCarried;
    /// Told how far the writing is.
    TellStage tell;

    /// For a writer that goes through all occurrences: tells that it has come to another one.
    void NextOccurrence();

private:
    unsigned long long m_occurrences = 0;
    unsigned long long m_allOccurrences = 0;
};

}  // namespace KVR

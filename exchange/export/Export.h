#pragma once

#include <string>
#include <vector>

#include "exchange/source/SceneOptions.h"
#include "scene/Scene.h"

namespace KVR
{

/// What the command "export" was given.
struct ExportOptions
{
    std::string path;
    SceneFilter filter;
    /// How far the triangles of a body without a mesh may be from it, as a fraction of the diagonal of its box.
    double deflection = 1e-3;
    /// Whether a mesh without a body is written to STEP and BREP as flat faces.
    bool meshFaces = false;
    bool isQuiet = false;
};

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
    IProducer& producer;
    Scene const& scene;
    ExportOptions const& options;
    /// The file to write. It has the target's name and stands in a folder of its own, from which it and all files that
    /// the writer puts beside it go to their places together.
    std::string path;
    NotCarriedCounts notCarried;
};

/// Whether there is a format with the extension of that path.
bool IsExportFormat(std::string const& path);
/// The extensions of all formats, for a message.
std::string ExportFormats();

/// How an export ended: a sentence without its full stop on failure, and remarks on success.
struct ExportResult
{
    bool isGood = false;
    bool isInterrupted = false;
    std::string sentence;
    std::vector<std::string> remarks;
};

/// Reads a scene and writes it in the format of the target's extension. The target appears whole or not at all.
ExportResult ExportScene(SceneOptions const& scene, ExportOptions const& options);

}  // namespace KVR

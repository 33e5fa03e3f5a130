#pragma once

#include <string>
#include <vector>

#include "exchange/import/SceneImport.h"

namespace KVR
{

/// What the command "import" was given.
struct ImportOptions
{
    std::string modelPath;
    std::string scenePath;
    SceneImportOptions scene;
    /// The unit of a model that states none.
    UnitTypeEnum unit = kUnitType_Millimeter;
    bool withAnnotations = true;
    bool isQuiet = false;
};

/// How an import ended.
struct ImportResult
{
    bool isGood = false;
    /// Whether the user ended it.
    bool isInterrupted = false;
    /// One sentence without its full stop: what was imported, or what stood in the way.
    std::string sentence;
    /// Sentences without their full stops, to be shown with a good result: what else there is to know of it, and what
    /// the scene does not hold.
    std::vector<std::string> remarks;
    /// Whether annotations and views were read.
    bool hasAnnotations = true;
    /// How far meshes may be from bodies.
    double deflectionInMillimetres = 0.0;
};

/// Reads a model, in a child process, and writes its scene. The scene's files appear whole, the scene itself last, or
/// not at all. Throws nothing of its own.
ImportResult ImportModel(ImportOptions const& options);

/// The text of a deflection: a length, or a percentage of the diagonal, such as "0.1%". Throws std::invalid_argument.
Deflection DeflectionOf(std::string const& text);

}  // namespace KVR

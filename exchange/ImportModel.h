#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "exchange/Export.h"
#include "exchange/Progress.h"
#include "framework/api/Enums.h"
#include "scene/MeshQuality.h"

namespace KVR
{

/// The axes of a model or scene.
enum class UpAxis
{
    kX,
    kY,
    kZ
};

struct ImportOptions
{
    /// A length is in the model's unit; the box is that of the whole model.
    MeshQuality quality;
    bool withMeshes = true;
    bool withBreps = true;
    /// Whether kernel stores are texts.
    bool asText = false;
    /// Whether annotations (dimensions, tolerances, datums) and views are read.
    bool withAnnotations = true;
    /// Whether files that are no side files of a scene at the target, and stand where this one's are to be, are
    /// replaced; otherwise they are a failure.
    bool force = false;
    /// The unit of length of a model that states none; another unit is a failure.
    UnitTypeEnum unit = kUnitType_Millimeter;
    /// Which of the model's axes points up, for STL, OBJ, PLY and glTF: the scene is turned so that it is z. Unless
    /// given y for glTF, and z for all others. For another format any but z is a failure.
    std::optional<UpAxis> up;
    /// The greatest angle in degrees, from 0 to 180, between triangles that share a normal, in files of meshes that
    /// have no normals; another is a failure.
    double creaseAngle = 30.0;
    /// Whether what is there is taken of a STEP file, or a file of meshes, that is cut short or damaged, which else is
    /// a failure; the remarks and losses tell how much it is. For IGES and BREP it is a failure.
    bool isLenient = false;
    /// Where what the model holds and the scene does not is listed, item by item, as a JSON object; empty for nowhere.
    /// What stands there is replaced, unless it is the model or the scene: that is a failure.
    std::string reportPath;
    /// The processor time that the child process may take, in seconds and at least 1, instead of the one in proportion
    /// to the file (20 s and 40 s for each million bytes).
    std::optional<unsigned> timeout;
};

/// What a scene holds.
struct ImportCounts
{
    std::size_t assemblies = 0;
    std::size_t parts = 0;
    std::size_t instances = 0;
    std::size_t bodies = 0;
    std::size_t triangles = 0;
};

/// A kind of thing that a model holds and its scene does not. All texts are UTF-8 as the model has them.
struct ImportLoss
{
    /// In the plural: "comments".
    std::string kind;
    unsigned long long count = 0;
    /// What tells each in the model, such as a name or an entity, or several of them: "3 of body1". Never empty.
    std::vector<std::string> items;
};

/// What came of an import. All texts are UTF-8.
struct ImportResult
{
    Outcome outcome = Outcome::kFailed;
    /// What stood in the way, in one sentence without its full stop that names the file: safe to be shown on a
    /// terminal. Empty unless the import failed.
    std::string failure;
    /// Sentences without their full stops: what else there is to know of a good result, and what the scene lacks.
    std::vector<std::string> remarks;
    /// What the model holds and the scene does not, in the order of the kinds; the remarks count it, too.
    std::vector<ImportLoss> losses;

    ImportCounts counts;
    /// The scene's unit of length, which is the model's.
    UnitTypeEnum unit = kUnitType_Millimeter;
    /// Whether the model states its unit.
    bool isUnitStated = false;
    /// Whether annotations and views were read: not when they were not wanted, or when the model could only be read
    /// without them.
    bool hasAnnotations = true;
    /// How far meshes may be from bodies, in the scene's unit; 0 when nothing was meshed.
    double deflection = 0.0;
};

/// Makes a scene of a model: STEP, IGES, BREP, glTF, STL, OBJ or PLY, told apart by content and name; "-" is standard
/// input, and what is gzipped is unpacked into the folder for temporary files, unless that gives more than 16 MiB and
/// 100 times the file's size. The name of the scene ends in ".xml". Its files appear whole, the scene itself last, or
/// not at all; a former scene of the name is replaced with the files that it notes as its own. A target that is the
/// model, by whatever name or link, is a failure, and so is a file of others where a side file is to be (see
/// ImportOptions::force). Paths are UTF-8. The model is read in a child process, so that one that crashes its reader is
/// a failure like another, and so is one that takes more processor time than it may or more memory than 2 GiB and 256
/// times its size; that process reaches no network. Whoever has further threads sees to it that none of them holds a
/// lock of Open CASCADE's when this is called. Progress tells the stages "reading" (with a fraction for STEP and files
/// of meshes), "transferring" (of STEP and IGES), "meshing" (of bodies) and "writing". Throws std::bad_alloc and what
/// the callback throws; all else is a failure in the result.
KVR_EXCHANGE_API ImportResult ImportModel(std::string const& modelPath, std::string const& scenePath,
                                          ImportOptions const& options = {}, Progress const& progress = {});

}  // namespace KVR

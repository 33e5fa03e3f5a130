#pragma once

#include <optional>
#include <string>
#include <vector>

#include "exchange/Export.h"
#include "exchange/Progress.h"
#include "exchange/source/SceneOptions.h"
#include "framework/api/Enums.h"
#include "scene/MeshQuality.h"
#include "scene/SceneFilter.h"

namespace KVR
{

class IProducer;
class UTF8String;

struct ExportOptions
{
    SceneFilter filter;
    /// Of bodies without a mesh; lines of a curve are as far from each piece of it. A length is in the unit of the body
    /// or curve; the box is that of the body or piece.
    MeshQuality quality;
    /// The unit of length of STL, OBJ and PLY, which state none; the scene's unless given.
    std::optional<UnitTypeEnum> unit;
    /// Whether what is hidden is in glTF all the same, marked as hidden.
    bool hiddenNodes = false;
    /// Whether the numbers of glTF are compressed; a failure where CanCompress says no.
    bool compress = false;
    /// Whether STEP has the curves of edges in the parameters of plain surfaces, too, which readers find by themselves.
    bool parameterCurves = false;
    /// Whether a mesh without a body is written to STEP as tessellated geometry, and to BREP as flat faces.
    bool meshFaces = false;
    /// Whether files beside the target that no earlier export to it has written, and stand where this one's are to be,
    /// are replaced; otherwise they are a failure.
    bool force = false;
    /// The processor time that the child process may take, in seconds and at least 1, instead of the one in proportion
    /// to the scene with its side files (20 s and 40 s for each million bytes).
    std::optional<unsigned> timeout;
    /// A file of the viewer draws no more triangles than these, if its meshes can be made so coarse; all unless given.
    std::optional<unsigned long long> mostTriangles;
    /// What a file of the viewer calls its source; the name of the scene's file unless given.
    std::string sourceName = {};
};

/// What came of an export. All texts are UTF-8, and safe to be shown on a terminal.
struct ExportResult
{
    Outcome outcome = Outcome::kFailed;
    /// What stood in the way, in one sentence without its full stop that names the file. Empty unless the export
    /// failed.
    std::string failure;
    /// Sentences without their full stops: what of the scene the format has no place for.
    std::vector<std::string> remarks;
};

/// Whether there is a format with the extension of that path, in whatever case.
KVR_EXCHANGE_API bool IsExportFormat(std::string const& path);
/// The extensions of all formats, for a message: ".glb .gltf ...".
KVR_EXCHANGE_API std::string ExportFormats();
/// Whether this build has an encoder for ExportOptions::compress.
KVR_EXCHANGE_API bool CanCompress();
/// Whether this build has the viewer: without it a file of the extension ".html" is a failure.
KVR_EXCHANGE_API bool CanView();

/// Reads a scene file and writes it in the format of the extension of `path`; ".html" is one file that shows the scene
/// in a browser, see docs/viewer.md for what is in it. The file and those beside it (".bin", ".mtl", images) appear
/// whole, itself last, or not at all; what an earlier export left there is replaced: the target, and the files that it
/// names. Others in the way are a failure (see ExportOptions::force). A file that is the scene or one of the side files
/// that it notes, by whatever name or link, is a failure. Remarks also tell of side files that are missing, short or
/// another scene's; SceneOptions::strict makes them the failure. So is a name of the filter that the scene has nothing
/// for: with the nearest names that it has. Works in a child process, so that a crash is a failure like another; see
/// ImportModel on its limits and on threads. A piece of geometry that ends the process is left out, with a remark, and
/// the rest exported; the fourth is a failure. Progress tells the stages "reading", "transferring" (to STEP) and
/// "writing". Throws std::bad_alloc and what the callback throws; all else is a failure in the result.
KVR_EXCHANGE_API ExportResult ExportScene(SceneOptions const& scene, std::string const& path,
                                          ExportOptions const& options = {}, Progress const& progress = {});

/// The same of a scene that a producer serves: after its BeginProcess, from the object `rootId` down. Works in this
/// process, where nothing holds a crash back, and asks whether to go on when it tells how far it is.
KVR_EXCHANGE_API ExportResult ExportScene(IProducer& producer, UTF8String const& rootId, std::string const& path,
                                          ExportOptions const& options = {}, Progress const& progress = {});

}  // namespace KVR

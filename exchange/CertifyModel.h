#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "exchange/Export.h"
#include "exchange/Progress.h"

namespace KVR
{

/// Something that is asked of a model and of what was made of it.
struct CertificateRow
{
    std::string name;
    /// One for each stage; empty where the stage has no place for it. Lengths are in millimetres.
    std::vector<std::string> values;
    /// How far the stages are apart: for numbers relative, for lengths relative to the diagonal of the box; 1 where
    /// names differ.
    double difference = 0.0;
    bool isGood = true;
    /// What is not the same, each with its stage and name: "scene: 'bolt' is missing". Safe for a terminal only when
    /// escaped: names are the model's.
    std::vector<std::string> differences;
};

/// What came of a comparison. All texts are UTF-8.
struct CertifyResult
{
    Outcome outcome = Outcome::kFailed;
    /// What stood in the way, in one sentence without its full stop: safe to be shown on a terminal. Empty unless the
    /// comparison could not be made.
    std::string failure;
    /// "source", "scene", "STEP" when there are bodies, "GLB".
    std::vector<std::string> stages;
    std::vector<CertificateRow> rows;
    /// What a format has no place for: "not in GLB: 192 hidden".
    std::vector<std::string> absences;
    /// Sentences without their full stops, of the import and the exports.
    std::vector<std::string> remarks;
    /// Whether all rows are good.
    bool isEqual = false;
    /// When they are asked for, PNG files of the first and the last stage by their names; empty where no program is
    /// there that draws them.
    std::vector<std::pair<std::string, std::string>> pictures;
};

struct CertifyOptions
{
    /// Whether pictures are made, by the program f3d, within xvfb-run where there is no display.
    bool withPictures = false;
    /// The processor time that each child process may take, in seconds and at least 1, instead of one in proportion to
    /// what it reads.
    std::optional<unsigned> timeout;
};

/// Makes a scene of a model, which may be gzipped or, as "-", stand on standard input, exports it to STEP and GLB,
/// reads all of them back and compares what they hold. Source and exports are read by readers that import and export
/// know nothing of. What it writes stands in a folder for temporary files and goes again. See ImportModel on child
/// processes and threads. Progress tells the stages of the import and of the exports, and "comparing". Throws
/// std::bad_alloc and what the callback throws; all else is a failure in the result.
KVR_EXCHANGE_API CertifyResult CertifyModel(std::string const& modelPath, CertifyOptions const& options = {},
                                            Progress const& progress = {});

/// Compares a model with one other file, whatever made that: STEP, IGES, BREP, glTF, STL, OBJ, PLY, or a scene (.xml).
/// One of them may be "-". Numbers without a unit are millimetres. The stages are "source" and "other". All else is as
/// above.
KVR_EXCHANGE_API CertifyResult CertifyAgainst(std::string const& modelPath, std::string const& otherPath,
                                              CertifyOptions const& options = {}, Progress const& progress = {});

}  // namespace KVR

#pragma once

#include <string>
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
    /// Sentences without their full stops, of the import and the exports.
    std::vector<std::string> remarks;
    /// Whether all rows are good.
    bool isEqual = false;
};

/// Makes a scene of a model, exports it to STEP and GLB, reads all of them back and compares what they hold. What it
/// writes stands in a folder for temporary files and goes again. See ImportModel on child processes and threads.
/// Progress tells the stages of the import and of the exports, and "comparing". Throws std::bad_alloc and what the
/// callback throws; all else is a failure in the result.
KVR_EXCHANGE_API CertifyResult CertifyModel(std::string const& modelPath, Progress const& progress = {});

}  // namespace KVR

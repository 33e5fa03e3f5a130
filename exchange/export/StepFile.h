#pragma once

#include "exchange/run/StageProgress.h"

namespace KVR
{

class Output;
struct ShapeDocument;

/// Writes a document as a STEP file of AP242, in the document's unit. Counts in the document what STEP cannot carry.
/// Tells the stages "transferring" and "writing". Throws std::runtime_error when Open CASCADE refuses, OutputError when
/// the output does, and Standard_Failure.
void WriteStepFile(ShapeDocument document, Output& out, TellStage const& tell);

}  // namespace KVR

#pragma once

#include <unordered_set>

#include "exchange/model/Losses.h"
#include "exchange/model/Part21File.h"

namespace KVR
{

struct StepContent;

/// Counts each entity of a STEP file that a scene does not have. A scene has what a few types of entities stand for
/// (products and their usages, annotations, views), what those refer to, and what refers to those in a known way; all
/// as far as the types are known to be read, and the entity is not among the missing. All else is listed by its number
/// and type, types that nobody has thought of among it. `annotations` are the dimensions and tolerances that the scene
/// has.
void CountStepLosses(StepContent const& step, std::unordered_set<Part21File::Number> const& annotations,
                     Losses& losses);

}  // namespace KVR

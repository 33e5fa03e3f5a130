#pragma once

#include <set>
#include <string>
#include <unordered_map>

#include "exchange/certify/ModelFacts.h"
#include "exchange/certify/step/FactProducts.h"

namespace KVR::Certification
{

/// What dimensions, tolerances and datums are called with their values, by their entities.
using StepNoteNames = std::unordered_map<Part21Model::Id, std::string>;
/// The datums that tolerances refer to.
using StepDatums = std::unordered_map<Part21Model::Id, std::set<std::string>>;

/// Adds the saved views of a STEP file, the planes that cut them and what they show. Views are turned to the middle of
/// the bodies, which the facts have to hold.
void AddStepViews(Part21Model const& model, FactProducts const& products, StepNoteNames const& notes,
                  StepDatums const& datums, ModelFacts& facts);

}  // namespace KVR::Certification

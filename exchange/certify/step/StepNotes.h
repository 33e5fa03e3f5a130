#pragma once

#include "exchange/certify/ModelFacts.h"
#include "exchange/certify/part21/Part21Model.h"
#include "exchange/certify/step/FactProducts.h"

namespace KVR::Certification
{

/// Adds what a STEP file says beside its shapes: saved views, dimensions, tolerances, datums and properties.
/// Views are turned to the middle of the bodies, which the facts have to hold.
void AddStepNotes(Part21Model const& model, FactProducts const& products, ModelFacts& facts);

}  // namespace KVR::Certification

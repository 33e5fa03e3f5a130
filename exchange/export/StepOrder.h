#pragma once

#include <StepData_StepModel.hxx>

namespace KVR
{

/// Puts the presentations of a model, with the styles in them, behind its other entities and in the order of their
/// contexts. The writer takes them out of a table that is sorted by addresses, so that the same document would give
/// another file each time.
void SortPresentations(opencascade::handle<StepData_StepModel> const& model);

}  // namespace KVR

#pragma once

#include <StepData_StepModel.hxx>
#include <unordered_set>

namespace KVR
{

/// Takes the curves of edges in the parameters of planes, cylinders, cones, spheres and tori out of a model: any reader
/// finds them by itself, while they take more than half of a file. Those of edges at a free surface, and of the edges
/// to be kept, stay, since what a reader finds for them may differ; null keeps all. Those that stay share their
/// context.
void SimplifyParameterCurves(opencascade::handle<StepData_StepModel> const& model,
                             std::unordered_set<Standard_Transient const*> const* kept);

}  // namespace KVR

#pragma once

#include <StepData_StepModel.hxx>

namespace KVR
{

/// Takes the curves of edges in the parameters of planes, cylinders, cones, spheres and tori out of a model: any reader
/// finds them by itself, while they take more than half of a file. Those of free surfaces stay, since what a reader
/// finds for them differs.
void DropParameterCurves(opencascade::handle<StepData_StepModel> const& model);

}  // namespace KVR

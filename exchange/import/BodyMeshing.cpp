#include "exchange/import/BodyMeshing.h"

#include <fmt/format.h>

#include <Message_ProgressScope.hxx>
#include <Precision.hxx>
#include <algorithm>
#include <cmath>

#include "exchange/import/ModelBox.h"
#include "exchange/model/ModelError.h"
#include "framework/kernel/tessellation/ShapeMesher.h"

namespace KVR
{

namespace
{

// Of the diagonal: what is finer takes more memory than there is.
constexpr double kFinest = 1e-6;

}  // namespace

double MeshBodies(ProductPlan const& plan, MeshQuality const& quality, TellStage const& tell)
{
    double const diagonal = DiagonalOfModel(plan);
    double const deflection = quality.deflection.value * (quality.deflection.isFraction ? diagonal : 1.0);
    // Of numbers that are too large to be squared nothing can be meshed.
    if (!(diagonal > 0.0) || !std::isfinite(diagonal) || !(deflection > 0.0))
        return 0.0;
    double const finest = kFinest * diagonal;
    if (!quality.deflection.isFraction && deflection < finest)
        throw ModelError(fmt::format("its diagonal is {:.3g}, so that bodies can be meshed to {:.3g} at the finest",
                                     diagonal, finest));
    IMeshTools_Parameters parameters;
    parameters.Relative = quality.isRelative && quality.deflection.isFraction;
    // Open CASCADE refuses what is finer than its own tolerance.
    parameters.Deflection =
        parameters.Relative ? quality.deflection.value : std::max(deflection, Precision::Confusion());
    parameters.Angle = quality.angle;
    parameters.InParallel = true;
    Handle(StageProgress) const indicator = new StageProgress("meshing", tell);
    Message_ProgressScope scope(indicator->Start(), nullptr, static_cast<double>(plan.components.size()));
    for (ComponentPlan const& component : plan.components)
    {
        Message_ProgressRange const range = scope.Next();
        if (!component.shape.IsNull())
            MeshShape(component.shape, parameters, range);
    }
    return deflection;
}

}  // namespace KVR

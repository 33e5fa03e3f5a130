#include "exchange/export/StepParameterCurves.h"

#include <StepGeom_Curve.hxx>
#include <StepGeom_ElementarySurface.hxx>
#include <StepGeom_Pcurve.hxx>
#include <StepGeom_PcurveOrSurface.hxx>
#include <StepGeom_Surface.hxx>
#include <StepGeom_SurfaceCurve.hxx>
#include <StepRepr_DefinitionalRepresentation.hxx>
#include <StepRepr_RepresentationContext.hxx>
#include <StepShape_EdgeCurve.hxx>
#include <vector>

#include "exchange/export/StepModelEntities.h"
#include "exchange/export/StepReferences.h"

namespace KVR
{

namespace
{

using opencascade::handle;

bool IsFound(StepGeom_PcurveOrSurface const& curve)
{
    handle<StepGeom_Pcurve> const pcurve = curve.Pcurve();
    return !pcurve.IsNull() && pcurve->BasisSurface()->IsKind(STANDARD_TYPE(StepGeom_ElementarySurface));
}

// Whether there was anything to do.
bool Simplify(StepShape_EdgeCurve& edge)
{
    auto const curve = handle<StepGeom_SurfaceCurve>::DownCast(edge.EdgeGeometry());
    if (curve.IsNull())
        return false;
    for (int i = 1; i <= curve->NbAssociatedGeometry(); ++i)
        if (!IsFound(curve->AssociatedGeometryValue(i)))
            return false;
    edge.SetEdgeGeometry(curve->Curve3d());
    return true;
}

// Curves in parameters have a context each, and all of these say the same.
void ShareContext(handle<StepData_StepModel> const& model, StepReferences& references)
{
    handle<StepRepr_RepresentationContext> shared;
    for (handle<StepGeom_Pcurve> const& pcurve : StepEntitiesOf<StepGeom_Pcurve>(model))
    {
        handle<StepRepr_DefinitionalRepresentation> const curve = pcurve->ReferenceToCurve();
        if (shared.IsNull())
            shared = curve->ContextOfItems();
        curve->SetContextOfItems(shared);
        references.SetChanged(curve);
    }
}

}  // namespace

void SimplifyParameterCurves(handle<StepData_StepModel> const& model,
                             std::unordered_set<Standard_Transient const*> const* kept)
{
    StepReferences references(model);
    for (handle<StepShape_EdgeCurve> const& edge : StepEntitiesOf<StepShape_EdgeCurve>(model))
        if (kept && kept->count(edge.get()) == 0 && Simplify(*edge))
            references.SetChanged(edge);
    ShareContext(model, references);
    std::vector<bool> const isNamed = references.NamedFromRoots();
    std::vector<handle<Standard_Transient>> order;
    for (int i = 1; i <= model->NbEntities(); ++i)
        if (isNamed[static_cast<std::size_t>(i)])
            order.push_back(model->Value(i));
    model->ClearEntities();
    for (handle<Standard_Transient> const& entity : order)
        model->AddEntity(entity);
}

}  // namespace KVR

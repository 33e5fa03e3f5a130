#include "exchange/export/StepParameterCurves.h"

#include <Interface_EntityIterator.hxx>
#include <Interface_Graph.hxx>
#include <Interface_ShareFlags.hxx>
#include <StepGeom_Curve.hxx>
#include <StepGeom_ElementarySurface.hxx>
#include <StepGeom_Pcurve.hxx>
#include <StepGeom_PcurveOrSurface.hxx>
#include <StepGeom_Surface.hxx>
#include <StepGeom_SurfaceCurve.hxx>
#include <StepRepr_DefinitionalRepresentation.hxx>
#include <StepRepr_RepresentationContext.hxx>
#include <StepShape_EdgeCurve.hxx>
#include <unordered_set>
#include <vector>

#include "exchange/export/StepModelEntities.h"

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

void Simplify(StepShape_EdgeCurve& edge)
{
    auto const curve = handle<StepGeom_SurfaceCurve>::DownCast(edge.EdgeGeometry());
    if (curve.IsNull())
        return;
    for (int i = 1; i <= curve->NbAssociatedGeometry(); ++i)
        if (!IsFound(curve->AssociatedGeometryValue(i)))
            return;
    edge.SetEdgeGeometry(curve->Curve3d());
}

// Curves in parameters have a context each, and all of these say the same.
void ShareContext(handle<StepData_StepModel> const& model)
{
    handle<StepRepr_RepresentationContext> shared;
    for (handle<StepGeom_Pcurve> const& pcurve : StepEntitiesOf<StepGeom_Pcurve>(model))
    {
        handle<StepRepr_DefinitionalRepresentation> const curve = pcurve->ReferenceToCurve();
        if (shared.IsNull())
            shared = curve->ContextOfItems();
        curve->SetContextOfItems(shared);
    }
}

// What is named from the roots on.
std::unordered_set<Standard_Transient const*> NamedFrom(std::vector<handle<Standard_Transient>> waiting,
                                                        handle<StepData_StepModel> const& model)
{
    Interface_Graph const graph(model);
    std::unordered_set<Standard_Transient const*> named;
    while (!waiting.empty())
    {
        handle<Standard_Transient> const entity = waiting.back();
        waiting.pop_back();
        if (!named.insert(entity.get()).second)
            continue;
        for (Interface_EntityIterator shared = graph.Shareds(entity); shared.More(); shared.Next())
            waiting.push_back(shared.Value());
    }
    return named;
}

}  // namespace

void SimplifyParameterCurves(handle<StepData_StepModel> const& model,
                             std::unordered_set<Standard_Transient const*> const* kept)
{
    std::vector<handle<Standard_Transient>> roots;
    Interface_ShareFlags const flags{Interface_Graph(model)};
    for (int i = 1; i <= flags.NbRoots(); ++i)
        roots.push_back(flags.Root(i));
    for (handle<StepShape_EdgeCurve> const& edge : StepEntitiesOf<StepShape_EdgeCurve>(model))
        if (kept && kept->count(edge.get()) == 0)
            Simplify(*edge);
    ShareContext(model);
    std::unordered_set<Standard_Transient const*> const named = NamedFrom(std::move(roots), model);
    std::vector<handle<Standard_Transient>> order;
    for (int i = 1; i <= model->NbEntities(); ++i)
        if (named.count(model->Value(i).get()) > 0)
            order.push_back(model->Value(i));
    model->ClearEntities();
    for (handle<Standard_Transient> const& entity : order)
        model->AddEntity(entity);
}

}  // namespace KVR

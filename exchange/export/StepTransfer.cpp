#include "exchange/export/StepTransfer.h"

#include <BRep_Tool.hxx>
#include <Interface_Static.hxx>
#include <STEPCAFControl_Controller.hxx>
#include <STEPConstruct.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Edge.hxx>
#include <TransferBRep.hxx>
#include <TransferBRep_ShapeMapper.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <XSControl_TransferWriter.hxx>
#include <stdexcept>
#include <utility>

#include "exchange/export/StepOrder.h"
#include "exchange/export/StepParameterCurves.h"
#include "exchange/export/StepUnit.h"
#include "framework/kernel/KernelMessages.h"

namespace KVR
{

namespace
{

using opencascade::handle;

// The number that Open CASCADE gives the schema AP242.
constexpr int kAp242 = 5;

// How far the curve of an edge lies from its surfaces, in metres, before a reader may find another one.
constexpr double kLoose = 1e-7;

// Open CASCADE keeps them for the whole process, and a writer reads them when it is made.
void SetParameters(UnitTypeEnum unit)
{
    SilenceKernel();
    STEPCAFControl_Controller::Init();
    Interface_Static::SetIVal("write.step.schema", kAp242);
    Interface_Static::SetIVal("write.step.assembly", 2);
    Interface_Static::SetIVal("write.step.vertex.mode", 0);
    Interface_Static::SetIVal("write.surfacecurve.mode", 1);
    Interface_Static::SetIVal("write.stepcaf.subshapes.name", 0);
    // The uncertainty that the file states is the greatest tolerance: a reader repairs what is wider than it.
    Interface_Static::SetIVal("write.precision.mode", 1);
    // The document states its unit; the file has the same, so that no number changes.
    Interface_Static::SetCVal("write.step.unit", StepUnitOf(unit));
    Interface_Static::SetCVal("xstep.cascade.unit", StepUnitOf(unit));
}

ShapeDocument Prepared(ShapeDocument document)
{
    SetParameters(document.unit);
    return document;
}

}  // namespace

StepTransfer::StepTransfer(ShapeDocument content, TellStage const& tell) : document(Prepared(std::move(content)))
{
    writer.SetColorMode(Standard_True);
    writer.SetNameMode(Standard_True);
    writer.SetLayerMode(Standard_True);
    writer.SetPropsMode(Standard_True);
    writer.SetSHUOMode(Standard_True);
    writer.SetDimTolMode(Standard_True);
    writer.SetMaterialMode(Standard_True);
    Handle(StageProgress) const indicator = new StageProgress("transferring", tell);
    if (!writer.Transfer(document.document, STEPControl_AsIs, nullptr, indicator->Start()))
        throw std::runtime_error("Open CASCADE finds nothing in the scene that it can write as STEP");
    model = handle<StepData_StepModel>::DownCast(Session()->Model());
    if (document.parameterCurves)
        SimplifyParameterCurves(model, nullptr);
    else
    {
        std::unordered_set<Standard_Transient const*> const loose = LooseEdges();
        SimplifyParameterCurves(model, &loose);
    }
    SortPresentations(model);
}

std::unordered_set<Standard_Transient const*> StepTransfer::LooseEdges()
{
    std::unordered_set<Standard_Transient const*> loose;
    double const limit = kLoose / document.metresPerUnit;
    for (ShapeDocument::Body const& body : document.bodies)
        for (TopExp_Explorer edges(body.shape, TopAbs_EDGE); edges.More(); edges.Next())
            if (BRep_Tool::Tolerance(TopoDS::Edge(edges.Current())) > limit)
                loose.insert(ItemOf(edges.Current()).get());
    return loose;
}

handle<Transfer_FinderProcess> StepTransfer::Process()
{
    return Session()->TransferWriter()->FinderProcess();
}

StepTransfer::Item StepTransfer::ItemOf(std::size_t body)
{
    auto const point = points.find(body);
    return point != points.end() ? point->second : ItemOf(document.bodies[body].shape);
}

StepTransfer::Item StepTransfer::ItemOf(TopoDS_Shape const& shape)
{
    return STEPConstruct::FindEntity(Process(), shape);
}

handle<StepShape_ShapeDefinitionRepresentation> StepTransfer::DefinitionOf(TDF_Label const& label)
{
    handle<StepShape_ShapeDefinitionRepresentation> definition;
    Process()->FindTypedTransient(TransferBRep::ShapeMapper(Process(), XCAFDoc_ShapeTool::GetShape(label)),
                                  STANDARD_TYPE(StepShape_ShapeDefinitionRepresentation), definition);
    return definition;
}

}  // namespace KVR

#include "exchange/export/StepPhases.h"

#include <APIHeaderSection_MakeHeader.hxx>
#include <Interface_HArray1OfHAsciiString.hxx>
#include <StepGeom_Axis2Placement.hxx>
#include <StepGeom_Axis2Placement3d.hxx>
#include <StepGeom_CartesianPoint.hxx>
#include <StepGeom_Plane.hxx>
#include <StepRepr_HArray1OfRepresentationItem.hxx>
#include <StepRepr_MappedItem.hxx>
#include <StepRepr_RepresentationContext.hxx>
#include <StepRepr_RepresentationMap.hxx>
#include <StepShape_ShapeDefinitionRepresentation.hxx>
#include <StepShape_ShapeRepresentation.hxx>
#include <StepVisual_CameraModelD3MultiClipping.hxx>
#include <StepVisual_CameraModelD3MultiClippingInterectionSelect.hxx>
#include <StepVisual_DraughtingModel.hxx>
#include <StepVisual_HArray1OfCameraModelD3MultiClippingInterectionSelect.hxx>
#include <StepVisual_PlanarBox.hxx>
#include <StepVisual_ViewVolume.hxx>
#include <TCollection_HAsciiString.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <gp.hxx>
#include <unordered_set>

#include "exchange/export/StepEntities.h"
#include "exchange/export/StepProperties.h"
#include "exchange/export/StepSolidMeasures.h"

namespace KVR
{

namespace
{

using opencascade::handle;
using Items = std::vector<handle<StepRepr_RepresentationItem>>;

handle<StepVisual_ViewVolume> VolumeOf(ShapeDocument::View const& view)
{
    gp_Ax2 const corner(gp_Pnt(-0.5 * view.width, -0.5 * view.height, 0.0), gp::DZ(), gp::DX());
    StepGeom_Axis2Placement placement;
    placement.SetValue(StepAxes(corner));
    handle<StepVisual_PlanarBox> const window = new StepVisual_PlanarBox;
    window->Init(StepString(""), view.width, view.height, placement);
    handle<StepVisual_ViewVolume> volume = new StepVisual_ViewVolume;
    volume->Init(view.isPerspective ? StepVisual_copCentral : StepVisual_copParallel, StepPoint(gp::Origin()),
                 view.distance, view.nearDistance.value_or(0.0), view.nearDistance.has_value(),
                 view.farDistance.value_or(0.0), view.farDistance.has_value(), Standard_False, window);
    return volume;
}

handle<StepVisual_CameraModelD3> CameraOf(ShapeDocument::View const& view)
{
    if (view.cuts.empty())
    {
        handle<StepVisual_CameraModelD3> camera = new StepVisual_CameraModelD3;
        camera->Init(StepString(view.name), StepAxes(view.eye), VolumeOf(view));
        return camera;
    }
    handle<StepVisual_HArray1OfCameraModelD3MultiClippingInterectionSelect> const planes =
        new StepVisual_HArray1OfCameraModelD3MultiClippingInterectionSelect(1, static_cast<int>(view.cuts.size()));
    for (std::size_t i = 0; i < view.cuts.size(); ++i)
    {
        StepVisual_CameraModelD3MultiClippingInterectionSelect select;
        select.SetValue(StepPlane(view.cuts[i]));
        planes->SetValue(static_cast<int>(i) + 1, select);
    }
    handle<StepVisual_CameraModelD3MultiClipping> camera = new StepVisual_CameraModelD3MultiClipping;
    camera->Init(StepString(view.name), StepAxes(view.eye), VolumeOf(view), planes);
    return camera.get();
}

// All of a product, for a view.
handle<StepRepr_RepresentationItem> ShownItem(handle<StepRepr_Representation> const& product)
{
    handle<StepRepr_RepresentationMap> const map = new StepRepr_RepresentationMap;
    map->Init(StepAxes(gp::XOY()), product);
    handle<StepRepr_MappedItem> shown = new StepRepr_MappedItem;
    shown->Init(StepString(""), map, StepAxes(gp::XOY()));
    return shown.get();
}

void AddMembers(StepTransfer& step, Items& items, ShapeDocument::View const& view)
{
    std::unordered_set<Standard_Transient const*> known;
    for (ShapeDocument::View::Member const& member : view.members)
    {
        Items shown;
        if (auto const drawn = step.drawnById.find(member.callout); drawn != step.drawnById.end())
            shown = drawn->second;
        handle<StepShape_ShapeDefinitionRepresentation> const definition =
            member.product.IsNull() ? handle<StepShape_ShapeDefinitionRepresentation>()
                                    : step.DefinitionOf(member.product);
        if (!definition.IsNull())
            shown.push_back(ShownItem(definition->UsedRepresentation()));
        if (shown.empty())
            step.document.notCarried.Add("members of views");
        for (handle<StepRepr_RepresentationItem> const& item : shown)
            if (known.insert(item.get()).second)
                items.push_back(item);
    }
}

void WriteViews(StepTransfer& step)
{
    if (step.document.views.empty())
        return;
    TDF_LabelSequence roots;
    XCAFDoc_DocumentTool::ShapeTool(step.document.document->Main())->GetFreeShapes(roots);
    handle<StepShape_ShapeDefinitionRepresentation> const definition =
        roots.IsEmpty() ? handle<StepShape_ShapeDefinitionRepresentation>() : step.DefinitionOf(roots.First());
    if (definition.IsNull())
        return step.document.notCarried.Add("views", step.document.views.size());
    handle<StepRepr_Representation> const product = definition->UsedRepresentation();
    for (ShapeDocument::View const& view : step.document.views)
    {
        Items items{CameraOf(view)};
        if (view.showsAll)
            items.push_back(ShownItem(product));
        AddMembers(step, items, view);
        handle<StepVisual_DraughtingModel> const model = new StepVisual_DraughtingModel;
        model->Init(StepString(view.name), StepArray(items), product->ContextOfItems());
        step.model->AddWithRefs(model);
    }
}

handle<Interface_HArray1OfHAsciiString> OneText(std::string const& text)
{
    return new Interface_HArray1OfHAsciiString(1, 1, StepString(text));
}

void WriteHeader(ShapeDocument const& document, handle<StepData_StepModel> const& model)
{
    APIHeaderSection_MakeHeader header(model);
    header.SetName(StepString(document.title));
    // Not that of the writing: the same scene gives the same file.
    constexpr char kNoTime[] = "1970-01-01T00:00:00";
    header.SetTimeStamp(StepString(document.creationTime.empty() ? kNoTime : document.creationTime));
    header.SetAuthor(OneText(document.author));
    header.SetOrganization(OneText(document.organization));
    header.SetOriginatingSystem(StepString("kvr_xml_producer"));
    header.SetAuthorisation(StepString(document.authorisation));
    header.SetDescription(OneText(document.title));
    header.Apply(model);
}

}  // namespace

FinishedModel::FinishedModel(AnnotatedModel&& model) : StepPhase(model)
{
    WriteViews(*m_step);
    WriteStepProperties(*m_step);
    WriteSolidMeasures(*m_step);
    WriteHeader(m_step->document, m_step->model);
}

}  // namespace KVR

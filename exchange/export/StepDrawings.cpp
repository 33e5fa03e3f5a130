#include "exchange/export/StepDrawings.h"

#include <Quantity_Color.hxx>
#include <STEPConstruct_Styles.hxx>
#include <StepAP242_DraughtingModelItemAssociation.hxx>
#include <StepAP242_ItemIdentifiedRepresentationUsageDefinition.hxx>
#include <StepData_StepModel.hxx>
#include <StepGeom_Axis2Placement.hxx>
#include <StepGeom_Axis2Placement3d.hxx>
#include <StepGeom_CartesianPoint.hxx>
#include <StepGeom_Plane.hxx>
#include <StepRepr_HArray1OfRepresentationItem.hxx>
#include <StepRepr_MappedItem.hxx>
#include <StepRepr_ProductDefinitionShape.hxx>
#include <StepRepr_RepresentationContext.hxx>
#include <StepRepr_RepresentationMap.hxx>
#include <StepRepr_RepresentedDefinition.hxx>
#include <StepShape_GeometricCurveSet.hxx>
#include <StepShape_ShapeDefinitionRepresentation.hxx>
#include <StepShape_ShapeRepresentation.hxx>
#include <StepVisual_AnnotationCurveOccurrence.hxx>
#include <StepVisual_AnnotationPlane.hxx>
#include <StepVisual_AnnotationPlaneElement.hxx>
#include <StepVisual_AnnotationTextOccurrence.hxx>
#include <StepVisual_CameraModelD3MultiClipping.hxx>
#include <StepVisual_CameraModelD3MultiClippingInterectionSelect.hxx>
#include <StepVisual_DraughtingCallout.hxx>
#include <StepVisual_DraughtingCalloutElement.hxx>
#include <StepVisual_DraughtingModel.hxx>
#include <StepVisual_FontSelect.hxx>
#include <StepVisual_HArray1OfAnnotationPlaneElement.hxx>
#include <StepVisual_HArray1OfCameraModelD3MultiClippingInterectionSelect.hxx>
#include <StepVisual_HArray1OfDraughtingCalloutElement.hxx>
#include <StepVisual_HArray1OfPresentationStyleAssignment.hxx>
#include <StepVisual_PlanarBox.hxx>
#include <StepVisual_PreDefinedTextFont.hxx>
#include <StepVisual_PresentationStyleAssignment.hxx>
#include <StepVisual_TextLiteral.hxx>
#include <StepVisual_ViewVolume.hxx>
#include <TCollection_HAsciiString.hxx>
#include <TransferBRep.hxx>
#include <TransferBRep_ShapeMapper.hxx>
#include <Transfer_FinderProcess.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <XSControl_TransferWriter.hxx>
#include <XSControl_WorkSession.hxx>
#include <gp.hxx>
#include <unordered_map>
#include <unordered_set>

#include "exchange/export/StepEntities.h"

namespace KVR
{

namespace
{

using opencascade::handle;
// What a reader knows the drawing of a dimension, a tolerance or a datum by.
constexpr char kLink[] = "PMI representation to presentation link";

using Items = std::vector<handle<StepRepr_RepresentationItem>>;

handle<StepRepr_HArray1OfRepresentationItem> ArrayOf(Items const& items)
{
    handle<StepRepr_HArray1OfRepresentationItem> array =
        new StepRepr_HArray1OfRepresentationItem(1, static_cast<int>(items.size()));
    for (std::size_t i = 0; i < items.size(); ++i)
        array->SetValue(static_cast<int>(i) + 1, items[i]);
    return array;
}

handle<StepVisual_HArray1OfPresentationStyleAssignment> LineStyles(STEPCAFControl_Writer& writer)
{
    STEPConstruct_Styles const styles(writer.ChangeWriter().WS());
    handle<StepVisual_HArray1OfPresentationStyleAssignment> array =
        new StepVisual_HArray1OfPresentationStyleAssignment(1, 1);
    array->SetValue(1, styles.MakeColorPSA({}, {}, STEPConstruct_Styles::EncodeColor(Quantity_NOC_BLACK), {}, 0.0));
    return array;
}

handle<StepGeom_Plane> StepPlane(gp_Ax2 const& axes)
{
    handle<StepGeom_Plane> plane = new StepGeom_Plane;
    plane->Init(StepString(""), StepAxes(axes));
    return plane;
}

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

handle<StepVisual_AnnotationOccurrence> CurvesOf(std::string const& name,
                                                 handle<StepShape_GeometricCurveSet> const& curves,
                                                 handle<StepVisual_HArray1OfPresentationStyleAssignment> const& styles)
{
    handle<StepVisual_AnnotationCurveOccurrence> occurrence = new StepVisual_AnnotationCurveOccurrence;
    occurrence->Init(StepString(name), styles, curves);
    return occurrence.get();
}

// What stands in a plane and has no curves is its text.
handle<StepVisual_AnnotationOccurrence> TextOf(std::string const& text, gp_Ax2 const& axes,
                                               handle<StepVisual_HArray1OfPresentationStyleAssignment> const& styles)
{
    handle<StepVisual_PreDefinedTextFont> const font = new StepVisual_PreDefinedTextFont;
    font->Init(StepString("ISO 3098-1 font A"));
    StepVisual_FontSelect fonts;
    fonts.SetValue(font);
    StepGeom_Axis2Placement place;
    place.SetValue(StepAxes(axes));
    handle<StepVisual_TextLiteral> const literal = new StepVisual_TextLiteral;
    literal->Init(StepString(""), StepString(text), place, StepString("baseline left"), StepVisual_tpRight, fonts);
    handle<StepVisual_AnnotationTextOccurrence> occurrence = new StepVisual_AnnotationTextOccurrence;
    occurrence->Init(StepString(""), styles, literal);
    return occurrence.get();
}

handle<StepVisual_DraughtingCallout> CalloutOf(std::string const& name,
                                               handle<StepVisual_AnnotationOccurrence> const& content)
{
    StepVisual_DraughtingCalloutElement element;
    element.SetValue(content);
    handle<StepVisual_HArray1OfDraughtingCalloutElement> const elements =
        new StepVisual_HArray1OfDraughtingCalloutElement(1, 1);
    elements->SetValue(1, element);
    handle<StepVisual_DraughtingCallout> callout = new StepVisual_DraughtingCallout;
    callout->Init(StepString(name), elements);
    return callout;
}

std::string NameOf(ShapeDocument::Callout const& callout)
{
    if (callout.kind.empty())
        return callout.label.empty() ? callout.id : callout.label;
    return callout.drawingLabel.empty() && StepNotes::IsPicture(callout) ? callout.label : callout.drawingLabel;
}

// Those that stand for what views name.
std::unordered_set<ShapeDocument::Callout const*> InViews(ShapeDocument const& document, StepNotes const& notes)
{
    std::unordered_set<std::string> ids;
    for (ShapeDocument::View const& view : document.views)
        for (ShapeDocument::View::Member const& member : view.members)
            ids.insert(member.callout);
    std::unordered_set<ShapeDocument::Callout const*> found;
    for (ShapeDocument::Callout const& callout : document.callouts)
        if (ids.count(callout.id) > 0)
            found.insert(&notes.DrawnAs(callout));
    return found;
}

handle<StepVisual_AnnotationPlane> PlaneWith(gp_Ax2 const& axes, handle<StepVisual_DraughtingCallout> const& callout,
                                             handle<StepVisual_HArray1OfPresentationStyleAssignment> const& styles)
{
    StepVisual_AnnotationPlaneElement element;
    element.SetValue(callout);
    handle<StepVisual_HArray1OfAnnotationPlaneElement> const elements =
        new StepVisual_HArray1OfAnnotationPlaneElement(1, 1);
    elements->SetValue(1, element);
    handle<StepVisual_AnnotationPlane> plane = new StepVisual_AnnotationPlane;
    plane->Init(StepString(""), styles, StepPlane(axes), elements);
    return plane;
}

}  // namespace

StepDrawings::StepDrawings(STEPCAFControl_Writer& writer, ShapeDocument& document)
    : m_writer(writer),
      m_document(document),
      m_model(handle<StepData_StepModel>::DownCast(writer.ChangeWriter().WS()->Model()))
{
}

void StepDrawings::WriteViews()
{
    if (m_document.views.empty())
        return;
    TDF_LabelSequence roots;
    XCAFDoc_DocumentTool::ShapeTool(m_document.document->Main())->GetFreeShapes(roots);
    handle<StepShape_ShapeDefinitionRepresentation> const definition =
        roots.IsEmpty() ? handle<StepShape_ShapeDefinitionRepresentation>()
                        : StepDefinitionOf(m_writer, XCAFDoc_ShapeTool::GetShape(roots.First()));
    if (definition.IsNull())
        return m_document.notCarried.Add("views", m_document.views.size());
    handle<StepRepr_Representation> const product = definition->UsedRepresentation();
    for (ShapeDocument::View const& view : m_document.views)
    {
        Items items{CameraOf(view)};
        if (view.showsAll)
            items.push_back(ShownItem(product));
        AddMembers(items, view);
        handle<StepVisual_DraughtingModel> const model = new StepVisual_DraughtingModel;
        model->Init(StepString(view.name), ArrayOf(items), product->ContextOfItems());
        m_model->AddWithRefs(model);
    }
}

void StepDrawings::AddMembers(Items& items, ShapeDocument::View const& view)
{
    std::unordered_set<Standard_Transient const*> known;
    for (ShapeDocument::View::Member const& member : view.members)
    {
        Items shown;
        if (auto const drawn = m_drawnById.find(member.callout); drawn != m_drawnById.end())
            shown = drawn->second;
        handle<StepShape_ShapeDefinitionRepresentation> const definition =
            member.product.IsNull() ? handle<StepShape_ShapeDefinitionRepresentation>()
                                    : StepDefinitionOf(m_writer, XCAFDoc_ShapeTool::GetShape(member.product));
        if (!definition.IsNull())
            shown.push_back(ShownItem(definition->UsedRepresentation()));
        if (shown.empty())
            m_document.notCarried.Add("members of views");
        for (handle<StepRepr_RepresentationItem> const& item : shown)
            if (known.insert(item.get()).second)
                items.push_back(item);
    }
}

void StepDrawings::WriteCallouts()
{
    if (m_document.callouts.empty())
        return;
    m_styles = LineStyles(m_writer);
    StepNotes notes(m_writer, m_document);
    // Pictures keep their places among the dimensions; the others are known by what they draw.
    for (ShapeDocument::Callout const* const callout : notes.InOrder())
    {
        notes.Add(*callout);
        if (StepNotes::IsPicture(*callout))
            Draw(*callout, false);
    }
    std::unordered_set<ShapeDocument::Callout const*> const inViews = InViews(m_document, notes);
    for (ShapeDocument::Callout const* const callout : notes.InOrder())
    {
        bool const isKnown = !notes.EntityOf(*callout).IsNull();
        if (!StepNotes::IsPicture(*callout) && &notes.DrawnAs(*callout) == callout)
            Draw(*callout, isKnown && inViews.count(callout) > 0);
        if (!isKnown && m_drawn.count(callout) == 0)
            m_document.notCarried.Add("annotation callouts that are not drawn and speak of nothing in the file");
    }
    Associate(notes);
    for (ShapeDocument::Callout const* const callout : notes.InOrder())
        if (auto const drawn = m_drawn.find(&notes.DrawnAs(*callout)); drawn != m_drawn.end())
            m_drawnById[callout->id].push_back(drawn->second.callout);
}

void StepDrawings::Draw(ShapeDocument::Callout const& callout, bool isInView)
{
    handle<Transfer_FinderProcess> const& process = m_writer.ChangeWriter().WS()->TransferWriter()->FinderProcess();
    std::string const name = NameOf(callout);
    handle<StepShape_GeometricCurveSet> const curves = StepCurves(name, callout.curves, process);
    handle<StepVisual_AnnotationOccurrence> content;
    if (!curves.IsNull())
        content = CurvesOf(name, curves, m_styles);
    else if (!StepNotes::IsPicture(callout) && (callout.plane || isInView))
        content = TextOf(callout.text, callout.plane.value_or(gp::XOY()), m_styles);
    if (content.IsNull())
        return;
    Drawing& drawn = m_drawn[&callout];
    drawn.callout = CalloutOf(name, content);
    drawn.item = drawn.callout.get();
    if (callout.plane)
        drawn.item = PlaneWith(*callout.plane, drawn.callout, m_styles).get();
    m_model->AddWithRefs(drawn.item);
}

void StepDrawings::Associate(StepNotes const& notes)
{
    struct Part
    {
        handle<StepShape_ShapeDefinitionRepresentation> definition;
        std::vector<ShapeDocument::Callout const*> callouts;
    };
    std::vector<Part> parts;
    std::unordered_map<Standard_Transient const*, std::size_t> places;
    for (ShapeDocument::Callout const* const callout : notes.InOrder())
    {
        if (m_drawn.count(callout) == 0)
            continue;
        handle<StepShape_ShapeDefinitionRepresentation> const definition =
            StepDefinitionOf(m_writer, XCAFDoc_ShapeTool::GetShape(callout->part));
        if (definition.IsNull())
        {
            m_document.notCarried.Add("annotation callouts");
            continue;
        }
        auto const [place, isNew] = places.emplace(definition.get(), parts.size());
        if (isNew)
            parts.push_back({definition, {}});
        parts[place->second].callouts.push_back(callout);
    }
    for (auto const& [definition, callouts] : parts)
    {
        Items items;
        for (ShapeDocument::Callout const* const callout : callouts)
            items.push_back(m_drawn[callout].item);
        handle<StepVisual_DraughtingModel> const model = new StepVisual_DraughtingModel;
        model->Init(StepString(""), ArrayOf(items), definition->UsedRepresentation()->ContextOfItems());
        m_model->AddWithRefs(model);
        for (ShapeDocument::Callout const* const callout : callouts)
        {
            handle<Standard_Transient> const entity = notes.EntityOf(*callout);
            bool const isLink = !entity.IsNull() && !StepNotes::IsPicture(*callout);
            StepAP242_ItemIdentifiedRepresentationUsageDefinition of;
            if (entity.IsNull())
                of.SetValue(definition->Definition().PropertyDefinition());
            else
                of.SetValue(entity);
            handle<StepAP242_DraughtingModelItemAssociation> const association =
                new StepAP242_DraughtingModelItemAssociation;
            association->Init(StepString(isLink ? kLink : ""), StepString(callout->text), of, model,
                              ArrayOf({m_drawn[callout].callout.get()}));
            m_model->AddWithRefs(association);
        }
    }
}

}  // namespace KVR

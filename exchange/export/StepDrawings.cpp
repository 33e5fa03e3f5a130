#include "exchange/export/StepPhases.h"

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
#include <XCAFDoc_DocumentTool.hxx>
#include <gp.hxx>
#include <unordered_map>
#include <unordered_set>

#include "exchange/export/StepEntities.h"
#include "exchange/export/StepNotes.h"

namespace KVR
{

namespace
{

using opencascade::handle;
// What a reader knows the drawing of a dimension, a tolerance or a datum by.
constexpr char kLink[] = "PMI representation to presentation link";

using Items = std::vector<handle<StepRepr_RepresentationItem>>;

handle<StepVisual_HArray1OfPresentationStyleAssignment> LineStyles(StepTransfer& step)
{
    STEPConstruct_Styles const styles(step.Session());
    handle<StepVisual_HArray1OfPresentationStyleAssignment> array =
        new StepVisual_HArray1OfPresentationStyleAssignment(1, 1);
    array->SetValue(1, styles.MakeColorPSA({}, {}, STEPConstruct_Styles::EncodeColor(Quantity_NOC_BLACK), {}, 0.0));
    return array;
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

// The callouts of a document on their way into the model.
class CalloutWriter
{
public:
    explicit CalloutWriter(StepTransfer& step)
        : m_step(step), m_notes(step), m_styles(LineStyles(step)), m_curves(step.Process())
    {
    }

    void Write();

private:
    struct Drawing
    {
        handle<StepVisual_DraughtingCallout> callout;
        // The callout, or the plane that it stands in.
        handle<StepRepr_RepresentationItem> item;
    };
    // The callouts of a part that are drawn.
    struct Part
    {
        handle<StepShape_ShapeDefinitionRepresentation> definition;
        std::vector<ShapeDocument::Callout const*> callouts;
    };

    void Draw(ShapeDocument::Callout const& callout, bool isInView);
    std::vector<Part> Parts();
    void Associate(Part const& part);

    StepTransfer& m_step;
    StepNotes m_notes;
    handle<StepVisual_HArray1OfPresentationStyleAssignment> m_styles;
    StepCurveSets m_curves;
    std::unordered_map<ShapeDocument::Callout const*, Drawing> m_drawn;
};

void CalloutWriter::Write()
{
    // Pictures keep their places among the dimensions; the others are known by what they draw.
    for (ShapeDocument::Callout const* const callout : m_notes.InOrder())
    {
        m_notes.Add(*callout);
        if (StepNotes::IsPicture(*callout))
            Draw(*callout, false);
    }
    std::unordered_set<ShapeDocument::Callout const*> const inViews = InViews(m_step.document, m_notes);
    for (ShapeDocument::Callout const* const callout : m_notes.InOrder())
    {
        bool const isKnown = !m_notes.EntityOf(*callout).IsNull();
        if (!StepNotes::IsPicture(*callout) && &m_notes.DrawnAs(*callout) == callout)
            Draw(*callout, isKnown && inViews.count(callout) > 0);
        if (!isKnown && m_drawn.count(callout) == 0)
            m_step.document.notCarried.Add("annotation callouts that are not drawn and speak of nothing in the file");
    }
    for (Part const& part : Parts())
        Associate(part);
    for (ShapeDocument::Callout const* const callout : m_notes.InOrder())
        if (auto const drawn = m_drawn.find(&m_notes.DrawnAs(*callout)); drawn != m_drawn.end())
            m_step.drawnById[callout->id].push_back(drawn->second.callout);
}

void CalloutWriter::Draw(ShapeDocument::Callout const& callout, bool isInView)
{
    std::string const name = NameOf(callout);
    handle<StepShape_GeometricCurveSet> const curves = m_curves.Set(name, callout.curves);
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
    m_step.model->AddWithRefs(drawn.item);
}

std::vector<CalloutWriter::Part> CalloutWriter::Parts()
{
    std::vector<Part> parts;
    std::unordered_map<Standard_Transient const*, std::size_t> places;
    for (ShapeDocument::Callout const* const callout : m_notes.InOrder())
    {
        if (m_drawn.count(callout) == 0)
            continue;
        handle<StepShape_ShapeDefinitionRepresentation> const definition = m_step.DefinitionOf(callout->part);
        if (definition.IsNull())
        {
            m_step.document.notCarried.Add("annotation callouts");
            continue;
        }
        auto const [place, isNew] = places.emplace(definition.get(), parts.size());
        if (isNew)
            parts.push_back({definition, {}});
        parts[place->second].callouts.push_back(callout);
    }
    return parts;
}

void CalloutWriter::Associate(Part const& part)
{
    auto const& [definition, callouts] = part;
    Items items;
    for (ShapeDocument::Callout const* const callout : callouts)
        items.push_back(m_drawn[callout].item);
    handle<StepVisual_DraughtingModel> const model = new StepVisual_DraughtingModel;
    model->Init(StepString(""), StepArray(items), definition->UsedRepresentation()->ContextOfItems());
    m_step.model->AddWithRefs(model);
    for (ShapeDocument::Callout const* const callout : callouts)
    {
        handle<Standard_Transient> const entity = m_notes.EntityOf(*callout);
        bool const isLink = !entity.IsNull() && !StepNotes::IsPicture(*callout);
        StepAP242_ItemIdentifiedRepresentationUsageDefinition of;
        if (entity.IsNull())
            of.SetValue(definition->Definition().PropertyDefinition());
        else
            of.SetValue(entity);
        handle<StepAP242_DraughtingModelItemAssociation> const association =
            new StepAP242_DraughtingModelItemAssociation;
        association->Init(StepString(isLink ? kLink : ""), StepString(callout->text), of, model,
                          StepArray({m_drawn[callout].callout.get()}));
        m_step.model->AddWithRefs(association);
    }
}

}  // namespace

AnnotatedModel::AnnotatedModel(DressedModel&& model) : StepPhase(model)
{
    if (!m_step->document.callouts.empty())
        CalloutWriter(*m_step).Write();
}

}  // namespace KVR

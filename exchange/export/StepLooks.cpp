#include "exchange/export/StepPhases.h"

#include <STEPConstruct_Styles.hxx>
#include <StepBasic_Product.hxx>
#include <StepBasic_ProductDefinitionRelationship.hxx>
#include <StepData_StepModel.hxx>
#include <StepGeom_Point.hxx>
#include <StepRepr_CharacterizedDefinition.hxx>
#include <StepRepr_HArray1OfRepresentationItem.hxx>
#include <StepRepr_NextAssemblyUsageOccurrence.hxx>
#include <StepRepr_ProductDefinitionShape.hxx>
#include <StepRepr_RepresentationContext.hxx>
#include <StepRepr_RepresentationItem.hxx>
#include <StepRepr_RepresentedDefinition.hxx>
#include <StepRepr_SpecifiedHigherUsageOccurrence.hxx>
#include <StepShape_ContextDependentShapeRepresentation.hxx>
#include <StepShape_GeometricCurveSet.hxx>
#include <StepShape_GeometricSetSelect.hxx>
#include <StepShape_HArray1OfGeometricSetSelect.hxx>
#include <StepShape_ShapeDefinitionRepresentation.hxx>
#include <StepShape_ShapeRepresentation.hxx>
#include <StepVisual_Colour.hxx>
#include <StepVisual_FillAreaStyle.hxx>
#include <StepVisual_FillAreaStyleColour.hxx>
#include <StepVisual_FillStyleSelect.hxx>
#include <StepVisual_HArray1OfInvisibleItem.hxx>
#include <StepVisual_HArray1OfLayeredItem.hxx>
#include <StepVisual_HArray1OfPresentationStyleAssignment.hxx>
#include <StepVisual_HArray1OfPresentationStyleSelect.hxx>
#include <StepVisual_HArray1OfRenderingPropertiesSelect.hxx>
#include <StepVisual_HArray1OfSurfaceStyleElementSelect.hxx>
#include <StepVisual_Invisibility.hxx>
#include <StepVisual_InvisibleItem.hxx>
#include <StepVisual_LayeredItem.hxx>
#include <StepVisual_MechanicalDesignGeometricPresentationRepresentation.hxx>
#include <StepVisual_NullStyleMember.hxx>
#include <StepVisual_PresentationLayerAssignment.hxx>
#include <StepVisual_PresentationStyleAssignment.hxx>
#include <StepVisual_PresentationStyleByContext.hxx>
#include <StepVisual_PresentationStyleSelect.hxx>
#include <StepVisual_RenderingPropertiesSelect.hxx>
#include <StepVisual_StyleContextSelect.hxx>
#include <StepVisual_StyledItem.hxx>
#include <StepVisual_SurfaceSideStyle.hxx>
#include <StepVisual_SurfaceStyleElementSelect.hxx>
#include <StepVisual_SurfaceStyleFillArea.hxx>
#include <StepVisual_SurfaceStyleRenderingWithProperties.hxx>
#include <StepVisual_SurfaceStyleTransparent.hxx>
#include <StepVisual_SurfaceStyleUsage.hxx>
#include <TCollection_HAsciiString.hxx>
#include <TDF_LabelMap.hxx>
#include <TopoDS_Shape.hxx>
#include <TransferBRep.hxx>
#include <TransferBRep_ShapeMapper.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <algorithm>
#include <map>
#include <unordered_map>
#include <unordered_set>

#include "exchange/export/StepEntities.h"
#include "exchange/export/StepModelEntities.h"

namespace KVR
{

namespace
{

using opencascade::handle;
using Styles = std::vector<handle<StepVisual_StyledItem>>;

// Styles that say nothing of the look.
handle<StepVisual_HArray1OfPresentationStyleSelect> NoStyles()
{
    handle<StepVisual_NullStyleMember> const none = new StepVisual_NullStyleMember;
    none->SetEnumText(0, ".NULL.");
    StepVisual_PresentationStyleSelect select;
    select.SetValue(none);
    handle<StepVisual_HArray1OfPresentationStyleSelect> selects = new StepVisual_HArray1OfPresentationStyleSelect(1, 1);
    selects->SetValue(1, select);
    return selects;
}

// A style for what is to be named in a list of invisible items.
handle<StepVisual_StyledItem> PlainStyle(handle<StepRepr_RepresentationItem> const& item,
                                         handle<StepData_StepModel> const& model)
{
    handle<StepVisual_PresentationStyleAssignment> const assignment = new StepVisual_PresentationStyleAssignment;
    assignment->Init(NoStyles());
    handle<StepVisual_HArray1OfPresentationStyleAssignment> const assignments =
        new StepVisual_HArray1OfPresentationStyleAssignment(1, 1);
    assignments->SetValue(1, assignment);
    handle<StepVisual_StyledItem> style = new StepVisual_StyledItem;
    style->Init(StepString(""), assignments, item);
    // The member of the selection is no entity, which is why the entities are not added with all they refer to.
    model->AddEntity(assignment);
    model->AddEntity(style);
    return style;
}

// Adds a rendering with transparency beside the fill colour.
void MakeTransparent(handle<StepVisual_SurfaceSideStyle> const& side, double transparency,
                     handle<StepData_StepModel> const& model)
{
    handle<StepVisual_Colour> colour;
    for (int i = 1; i <= side->NbStyles() && colour.IsNull(); ++i)
    {
        handle<StepVisual_SurfaceStyleFillArea> const fill = side->StylesValue(i).SurfaceStyleFillArea();
        if (!side->StylesValue(i).SurfaceStyleRendering().IsNull())
            return;
        for (int j = 1; !fill.IsNull() && j <= fill->FillArea()->NbFillStyles() && colour.IsNull(); ++j)
        {
            handle<StepVisual_FillAreaStyleColour> const area =
                fill->FillArea()->FillStylesValue(j).FillAreaStyleColour();
            if (!area.IsNull())
                colour = area->FillColour();
        }
    }
    if (colour.IsNull())
        return;
    handle<StepVisual_SurfaceStyleTransparent> const transparent = new StepVisual_SurfaceStyleTransparent;
    transparent->Init(transparency);
    StepVisual_RenderingPropertiesSelect property;
    property.SetValue(transparent);
    handle<StepVisual_HArray1OfRenderingPropertiesSelect> const properties =
        new StepVisual_HArray1OfRenderingPropertiesSelect(1, 1);
    properties->SetValue(1, property);
    handle<StepVisual_SurfaceStyleRenderingWithProperties> const rendering =
        new StepVisual_SurfaceStyleRenderingWithProperties;
    rendering->Init(StepVisual_ssmNormalShading, colour, properties);
    handle<StepVisual_HArray1OfSurfaceStyleElementSelect> const styles =
        new StepVisual_HArray1OfSurfaceStyleElementSelect(1, side->NbStyles() + 1);
    for (int i = 1; i <= side->NbStyles(); ++i)
        styles->SetValue(i, side->StylesValue(i));
    StepVisual_SurfaceStyleElementSelect element;
    element.SetValue(rendering);
    styles->SetValue(side->NbStyles() + 1, element);
    side->SetStyles(styles);
    model->AddEntity(transparent);
    model->AddEntity(rendering);
}

// The occurrences that a relationship of products names, from the top down.
std::vector<Standard_Transient const*> UsagePath(handle<StepBasic_ProductDefinitionRelationship> const& usage)
{
    std::vector<Standard_Transient const*> path;
    handle<StepBasic_ProductDefinitionRelationship> upper = usage;
    while (auto const* const higher = dynamic_cast<StepRepr_SpecifiedHigherUsageOccurrence const*>(upper.get()))
    {
        path.push_back(higher->NextUsage().get());
        upper = higher->UpperUsage();
    }
    path.push_back(upper.get());
    std::reverse(path.begin(), path.end());
    return path;
}

void WriteNames(StepTransfer& step)
{
    for (std::size_t i = 0; i < step.document.bodies.size(); ++i)
    {
        std::string const& name = step.document.bodies[i].name;
        handle<StepRepr_RepresentationItem> const item =
            name.empty() ? handle<StepRepr_RepresentationItem>() : step.ItemOf(i);
        if (!item.IsNull())
            item->SetName(StepString(name));
    }
    // The writer makes up names and numbers for what has none, and a reader would take them for names.
    constexpr std::string_view kMadeUp = "Open CASCADE STEP translator";
    for (auto const& product : StepEntitiesOf<StepBasic_Product>(step.model))
        if (std::string_view(product->Name()->ToCString()).starts_with(kMadeUp))
        {
            product->SetName(StepString(""));
            product->SetId(StepString(""));
        }
    for (auto const& usage : StepEntitiesOf<StepRepr_NextAssemblyUsageOccurrence>(step.model))
        if (usage->Name().IsNull() || usage->Name()->IsEmpty())
            usage->SetId(StepString(""));
}

void WriteHiddenBodies(StepTransfer& step)
{
    bool const hasHidden = std::any_of(step.document.bodies.begin(), step.document.bodies.end(),
                                       [](ShapeDocument::Body const& body) { return body.isHidden; });
    if (!hasHidden)
        return;
    std::unordered_map<Standard_Transient const*, handle<StepVisual_StyledItem>> known;
    for (handle<StepVisual_StyledItem> const& style : StepEntitiesOf<StepVisual_StyledItem>(step.model))
    {
        // An item's styles in the context of an occurrence do not hide the item itself.
        if (!style->Item().IsNull() && style->IsInstance(STANDARD_TYPE(StepVisual_StyledItem)))
            known.emplace(style->Item().get(), style);
    }
    STEPConstruct_Styles const contexts(step.Session());
    std::vector<std::pair<handle<StepRepr_RepresentationContext>, Styles>> plain;
    std::unordered_map<Standard_Transient const*, std::size_t> places;
    for (std::size_t i = 0; i < step.document.bodies.size(); ++i)
    {
        ShapeDocument::Body const& body = step.document.bodies[i];
        handle<StepRepr_RepresentationItem> const item =
            body.isHidden ? step.ItemOf(i) : handle<StepRepr_RepresentationItem>();
        if (item.IsNull())
            continue;
        auto const found = known.find(item.get());
        handle<StepVisual_StyledItem> style = found != known.end() ? found->second : PlainStyle(item, step.model);
        AddInvisibility({style}, step.model);
        handle<StepRepr_RepresentationContext> const context =
            contexts.FindContext(XCAFDoc_ShapeTool::GetShape(body.part));
        if (found != known.end() || context.IsNull())
            continue;
        auto const [place, isNew] = places.emplace(context.get(), plain.size());
        if (isNew)
            plain.emplace_back(context, Styles());
        plain[place->second].second.push_back(style);
    }
    for (auto const& [context, styles] : plain)
    {
        handle<StepRepr_HArray1OfRepresentationItem> const items =
            new StepRepr_HArray1OfRepresentationItem(1, static_cast<int>(styles.size()));
        for (std::size_t i = 0; i < styles.size(); ++i)
            items->SetValue(static_cast<int>(i) + 1, styles[i]);
        handle<StepVisual_MechanicalDesignGeometricPresentationRepresentation> const presentation =
            new StepVisual_MechanicalDesignGeometricPresentationRepresentation;
        presentation->Init(StepString(""), items, context);
        step.model->AddEntity(presentation);
    }
}

void TakeColorsOfParts(StepTransfer& step)
{
    if (step.document.colorlessParts.empty())
        return;
    TDF_LabelMap parts;
    for (TDF_Label const& part : step.document.colorlessParts)
        parts.Add(part);
    std::unordered_set<Standard_Transient const*> items;
    for (std::size_t i = 0; i < step.document.bodies.size(); ++i)
    {
        if (parts.Contains(step.document.bodies[i].part))
            items.insert(step.ItemOf(i).get());
    }
    for (auto const& style : StepEntitiesOf<StepVisual_StyledItem>(step.model))
    {
        if (!style->IsInstance(STANDARD_TYPE(StepVisual_StyledItem)) || items.count(style->Item().get()) == 0)
            continue;
        for (int i = 1; i <= style->NbStyles(); ++i)
            style->StylesValue(i)->SetStyles(NoStyles());
    }
}

void WriteLooks(StepTransfer& step)
{
    TakeColorsOfParts(step);
    if (step.document.looks.empty())
        return;
    handle<Transfer_FinderProcess> const& process = step.Process();
    // The usage of a component is found by its shape, whose location is no other component's.
    auto const usageOf = [&](TDF_Label const& component) -> Standard_Transient const*
    {
        handle<StepShape_ContextDependentShapeRepresentation> representation;
        handle<TransferBRep_ShapeMapper> const mapper =
            TransferBRep::ShapeMapper(process, XCAFDoc_ShapeTool::GetShape(component));
        if (!process->FindTypedTransient(mapper, STANDARD_TYPE(StepShape_ContextDependentShapeRepresentation),
                                         representation))
            return nullptr;
        return representation->RepresentedProductRelation()->Definition().ProductDefinitionRelationship().get();
    };
    std::map<std::vector<Standard_Transient const*>, ShapeDocument::Look const*> byPath;
    for (ShapeDocument::Look const& look : step.document.looks)
    {
        std::vector<Standard_Transient const*> path;
        for (TDF_Label const& component : look.path)
            path.push_back(usageOf(component));
        byPath[path] = &look;
    }
    // The writer makes a chain of usages for a path of its own, and gives the look to the first of them.
    std::unordered_map<Standard_Transient const*, handle<StepBasic_ProductDefinitionRelationship>> longer;
    for (auto const& usage : StepEntitiesOf<StepRepr_SpecifiedHigherUsageOccurrence>(step.model))
    {
        if (usage->UpperUsage()->IsKind(STANDARD_TYPE(StepRepr_SpecifiedHigherUsageOccurrence)))
            longer.emplace(usage->UpperUsage().get(), usage.get());
    }
    std::unordered_map<Standard_Transient const*, ShapeDocument::Look const*> byContext;
    for (auto const& definition : StepEntitiesOf<StepShape_ShapeDefinitionRepresentation>(step.model))
    {
        handle<StepRepr_ProductDefinitionShape> const shape =
            handle<StepRepr_ProductDefinitionShape>::DownCast(definition->Definition().PropertyDefinition());
        handle<StepBasic_ProductDefinitionRelationship> usage =
            shape.IsNull() ? handle<StepBasic_ProductDefinitionRelationship>()
                           : shape->Definition().ProductDefinitionRelationship();
        for (auto next = longer.find(usage.get()); next != longer.end(); next = longer.find(usage.get()))
            usage = next->second;
        auto const found = usage.IsNull() ? byPath.end() : byPath.find(UsagePath(usage));
        if (found != byPath.end())
            byContext[definition->UsedRepresentation().get()] = found->second;
    }
    for (auto const& style : StepEntitiesOf<StepVisual_PresentationStyleByContext>(step.model))
    {
        auto const found = byContext.find(style->StyleContext().Value().get());
        if (found == byContext.end())
            continue;
        if (found->second->isColorless)
        {
            style->SetStyles(NoStyles());
            continue;
        }
        for (int i = 1; i <= style->NbStyles(); ++i)
        {
            handle<StepVisual_SurfaceStyleUsage> const usage = style->StylesValue(i).SurfaceStyleUsage();
            if (!usage.IsNull() && !usage->Style().IsNull())
                MakeTransparent(usage->Style(), 1.0 - found->second->opacity, step.model);
        }
    }
}

}  // namespace

DressedModel::DressedModel(LayeredModel&& model) : StepPhase(model)
{
    WriteNames(*m_step);
    WriteHiddenBodies(*m_step);
    WriteLooks(*m_step);
}

}  // namespace KVR

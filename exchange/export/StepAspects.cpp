#include "exchange/export/StepAspects.h"

#include <StepAP242_GeometricItemSpecificUsage.hxx>
#include <StepAP242_ItemIdentifiedRepresentationUsageDefinition.hxx>
#include <StepData_StepModel.hxx>
#include <StepRepr_CompositeShapeAspect.hxx>
#include <StepRepr_HArray1OfRepresentationItem.hxx>
#include <StepRepr_RepresentationContext.hxx>
#include <StepRepr_RepresentedDefinition.hxx>
#include <StepRepr_ShapeAspectRelationship.hxx>
#include <StepShape_ShapeDefinitionRepresentation.hxx>
#include <StepShape_ShapeRepresentation.hxx>
#include <TCollection_HAsciiString.hxx>

#include "exchange/export/StepEntities.h"

namespace KVR
{

using opencascade::handle;

handle<StepRepr_ProductDefinitionShape> StepAspects::ShapeOf(TDF_Label const& part) const
{
    handle<StepShape_ShapeDefinitionRepresentation> const definition = m_step.DefinitionOf(part);
    return definition.IsNull()
               ? handle<StepRepr_ProductDefinitionShape>()
               : handle<StepRepr_ProductDefinitionShape>::DownCast(definition->Definition().PropertyDefinition());
}

handle<StepRepr_RepresentationContext> StepAspects::ContextOf(TDF_Label const& part) const
{
    handle<StepShape_ShapeDefinitionRepresentation> const definition = m_step.DefinitionOf(part);
    return definition.IsNull() ? handle<StepRepr_RepresentationContext>()
                               : definition->UsedRepresentation()->ContextOfItems();
}

handle<StepRepr_RepresentationItem> StepAspects::ItemOf(ShapeDocument::Target const& target) const
{
    return target.shape.IsNull() ? handle<StepRepr_RepresentationItem>() : m_step.ItemOf(target.shape);
}

handle<StepRepr_ShapeAspect> StepAspects::Empty(TDF_Label const& part)
{
    handle<StepRepr_ProductDefinitionShape> const shape = ShapeOf(part);
    if (shape.IsNull())
        return {};
    handle<StepRepr_ShapeAspect> aspect = new StepRepr_ShapeAspect;
    aspect->Init(StepString(""), StepString(""), shape, StepData_LTrue);
    m_step.model->AddWithRefs(aspect);
    return aspect;
}

void StepAspects::Apply(handle<StepRepr_ShapeAspect> const& aspect, Targets const& targets)
{
    for (ShapeDocument::Target const& target : targets)
    {
        handle<StepRepr_RepresentationItem> const item = ItemOf(target);
        if (item.IsNull())
            continue;
        handle<StepShape_ShapeDefinitionRepresentation> const definition = m_step.DefinitionOf(target.part);
        if (definition.IsNull())
            continue;
        StepAP242_ItemIdentifiedRepresentationUsageDefinition of;
        of.SetValue(aspect);
        handle<StepRepr_HArray1OfRepresentationItem> const items = new StepRepr_HArray1OfRepresentationItem(1, 1);
        items->SetValue(1, item);
        handle<StepAP242_GeometricItemSpecificUsage> const usage = new StepAP242_GeometricItemSpecificUsage;
        usage->Init(StepString(""), StepString(""), of, definition->UsedRepresentation(), items);
        m_step.model->AddWithRefs(usage);
    }
}

handle<StepRepr_ShapeAspect> StepAspects::Single(ShapeDocument::Target const& target, bool mayShare)
{
    handle<StepRepr_RepresentationItem> const item = ItemOf(target);
    if (item.IsNull())
        return {};
    if (auto const known = m_singles.find(item.get()); mayShare && known != m_singles.end())
        return known->second;
    handle<StepRepr_ShapeAspect> aspect = Empty(target.part);
    if (aspect.IsNull())
        return {};
    Apply(aspect, {target});
    if (mayShare)
        m_singles.emplace(item.get(), aspect);
    return aspect;
}

handle<StepRepr_ShapeAspect> StepAspects::Make(Targets const& targets, bool mayShare)
{
    std::vector<handle<StepRepr_ShapeAspect>> singles;
    std::vector<Standard_Transient const*> key;
    for (ShapeDocument::Target const& target : targets)
    {
        handle<StepRepr_ShapeAspect> const single = Single(target, mayShare);
        if (single.IsNull())
            continue;
        singles.push_back(single);
        key.push_back(single.get());
    }
    if (singles.size() < 2)
        return singles.empty() ? handle<StepRepr_ShapeAspect>() : singles.front();
    if (auto const known = m_composites.find(key); mayShare && known != m_composites.end())
        return known->second;
    handle<StepRepr_CompositeShapeAspect> const composite = new StepRepr_CompositeShapeAspect;
    composite->Init(StepString(""), StepString(""), singles.front()->OfShape(), StepData_LTrue);
    m_step.model->AddWithRefs(composite);
    for (handle<StepRepr_ShapeAspect> const& single : singles)
    {
        handle<StepRepr_ShapeAspectRelationship> const relationship = new StepRepr_ShapeAspectRelationship;
        relationship->Init(StepString(""), Standard_False, {}, composite, single);
        m_step.model->AddWithRefs(relationship);
    }
    if (mayShare)
        m_composites.emplace(key, composite.get());
    return composite.get();
}

}  // namespace KVR

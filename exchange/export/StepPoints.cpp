#include "exchange/export/StepPhases.h"

#include <StepData_StepModel.hxx>
#include <StepGeom_Point.hxx>
#include <StepRepr_HArray1OfRepresentationItem.hxx>
#include <StepRepr_RepresentationItem.hxx>
#include <StepShape_GeometricCurveSet.hxx>
#include <StepShape_GeometricSetSelect.hxx>
#include <StepShape_HArray1OfGeometricSetSelect.hxx>
#include <StepShape_ShapeDefinitionRepresentation.hxx>
#include <StepShape_ShapeRepresentation.hxx>
#include <StepVisual_HArray1OfInvisibleItem.hxx>
#include <StepVisual_HArray1OfLayeredItem.hxx>
#include <StepVisual_Invisibility.hxx>
#include <StepVisual_InvisibleItem.hxx>
#include <StepVisual_LayeredItem.hxx>
#include <StepVisual_PresentationLayerAssignment.hxx>
#include <TCollection_HAsciiString.hxx>
#include <algorithm>
#include <map>
#include <unordered_map>

#include "exchange/export/StepEntities.h"
#include "exchange/export/StepModelEntities.h"

namespace KVR
{

namespace
{

using opencascade::handle;

void SeparatePoints(StepTransfer& step, std::vector<std::size_t> const& points)
{
    handle<StepShape_ShapeDefinitionRepresentation> const definition =
        step.DefinitionOf(step.document.bodies[points.front()].part);
    if (definition.IsNull())
        return;
    handle<StepRepr_Representation> const part = definition->UsedRepresentation();
    std::vector<handle<StepRepr_RepresentationItem>> items;
    for (int i = 1; i <= part->NbItems(); ++i)
    {
        handle<StepShape_GeometricCurveSet> const set =
            handle<StepShape_GeometricCurveSet>::DownCast(part->ItemsValue(i));
        bool const isOfPoints = !set.IsNull() && set->NbElements() == static_cast<int>(points.size()) &&
                                !set->ElementsValue(1).Point().IsNull() && step.points.count(points.front()) == 0;
        if (!isOfPoints)
        {
            items.push_back(part->ItemsValue(i));
            continue;
        }
        handle<StepShape_HArray1OfGeometricSetSelect> first;
        for (std::size_t point = 0; point < points.size(); ++point)
        {
            handle<StepShape_HArray1OfGeometricSetSelect> const elements =
                new StepShape_HArray1OfGeometricSetSelect(1, 1);
            elements->SetValue(1, set->ElementsValue(static_cast<int>(point) + 1));
            handle<StepShape_GeometricCurveSet> single = set;
            // The set of all becomes that of the first; the others are taken from it before.
            if (point == 0)
            {
                first = elements;
            }
            else
            {
                single = new StepShape_GeometricCurveSet;
                single->Init(StepString(""), elements);
                step.model->AddEntity(single);
            }
            step.points[points[point]] = single;
            items.push_back(single);
        }
        set->SetElements(first);
    }
    if (items.size() == static_cast<std::size_t>(part->NbItems()))
        return;
    handle<StepRepr_HArray1OfRepresentationItem> const array =
        new StepRepr_HArray1OfRepresentationItem(1, static_cast<int>(items.size()));
    for (std::size_t i = 0; i < items.size(); ++i)
        array->SetValue(static_cast<int>(i) + 1, items[i]);
    part->SetItems(array);
}

void SeparatePoints(StepTransfer& step)
{
    // The bodies of a part stand together.
    std::vector<std::size_t> points;
    for (std::size_t i = 0; i < step.document.bodies.size(); ++i)
    {
        ShapeDocument::Body const& body = step.document.bodies[i];
        if (!points.empty() && step.document.bodies[points.front()].part != body.part)
        {
            SeparatePoints(step, points);
            points.clear();
        }
        if (body.shape.ShapeType() == TopAbs_VERTEX)
            points.push_back(i);
    }
    if (!points.empty())
        SeparatePoints(step, points);
}

void WriteLayersOfPoints(StepTransfer& step)
{
    if (step.document.layersOfPoints.empty())
        return;
    std::map<std::string, handle<StepVisual_PresentationLayerAssignment>> layers;
    for (auto const& layer : StepEntitiesOf<StepVisual_PresentationLayerAssignment>(step.model))
        layers.emplace(layer->Name()->ToCString(), layer);
    for (ShapeDocument::LayerOfPoint const& point : step.document.layersOfPoints)
    {
        handle<StepRepr_RepresentationItem> const item = step.ItemOf(point.body);
        if (item.IsNull())
            continue;
        handle<StepVisual_PresentationLayerAssignment>& layer = layers[point.layer];
        int const before = layer.IsNull() ? 0 : layer->NbAssignedItems();
        handle<StepVisual_HArray1OfLayeredItem> const items = new StepVisual_HArray1OfLayeredItem(1, before + 1);
        for (int i = 1; i <= before; ++i)
            items->SetValue(i, layer->AssignedItemsValue(i));
        StepVisual_LayeredItem member;
        member.SetValue(item);
        items->SetValue(before + 1, member);
        if (!layer.IsNull())
        {
            layer->SetAssignedItems(items);
            continue;
        }
        layer = new StepVisual_PresentationLayerAssignment;
        layer->Init(StepString(point.layer), StepString(point.isVisible ? "visible" : "invisible"), items);
        step.model->AddEntity(layer);
        if (!point.isVisible)
            AddInvisibility({layer}, step.model);
    }
}

// The entities keep their places, and change what they say.
void OrderLayers(StepTransfer& step)
{
    using Layer = handle<StepVisual_PresentationLayerAssignment>;
    std::unordered_map<std::string, std::size_t> ranks;
    for (std::string const& name : step.document.layers)
        ranks.emplace(name, ranks.size());
    struct Content
    {
        Layer entity;
        handle<TCollection_HAsciiString> name;
        handle<TCollection_HAsciiString> description;
        handle<StepVisual_HArray1OfLayeredItem> items;
        std::size_t rank = 0;
    };
    std::vector<Layer> const layers = StepEntitiesOf<StepVisual_PresentationLayerAssignment>(step.model);
    std::vector<Content> contents;
    for (Layer const& layer : layers)
    {
        auto const rank = ranks.find(layer->Name()->ToCString());
        contents.push_back({layer, layer->Name(), layer->Description(), layer->AssignedItems(),
                            rank == ranks.end() ? ranks.size() : rank->second});
    }
    std::stable_sort(contents.begin(), contents.end(),
                     [](Content const& a, Content const& b) { return a.rank < b.rank; });
    std::unordered_map<Standard_Transient const*, Layer> moved;
    for (std::size_t i = 0; i < layers.size(); ++i)
    {
        layers[i]->Init(contents[i].name, contents[i].description, contents[i].items);
        moved[contents[i].entity.get()] = layers[i];
    }
    for (auto const& invisibility : StepEntitiesOf<StepVisual_Invisibility>(step.model))
        for (int i = 1; i <= invisibility->NbInvisibleItems(); ++i)
        {
            auto const found = moved.find(invisibility->InvisibleItemsValue(i).Value().get());
            if (found == moved.end())
                continue;
            StepVisual_InvisibleItem select;
            select.SetValue(found->second);
            invisibility->InvisibleItems()->SetValue(i, select);
        }
}

}  // namespace

SeparatedModel::SeparatedModel(TransferredModel&& model) : StepPhase(model)
{
    SeparatePoints(*m_step);
}

LayeredModel::LayeredModel(SeparatedModel&& model) : StepPhase(model)
{
    WriteLayersOfPoints(*m_step);
    OrderLayers(*m_step);
}

}  // namespace KVR

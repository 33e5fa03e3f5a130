#include "exchange/export/StepNotes.h"

#include <STEPCAFControl_GDTProperty.hxx>
#include <StepData_StepModel.hxx>
#include <StepDimTol_Datum.hxx>
#include <StepDimTol_DatumFeature.hxx>
#include <StepDimTol_DatumOrCommonDatum.hxx>
#include <StepDimTol_DatumReferenceCompartment.hxx>
#include <StepDimTol_DatumReferenceElement.hxx>
#include <StepDimTol_DatumSystem.hxx>
#include <StepDimTol_DatumSystemOrReference.hxx>
#include <StepDimTol_GeoTolAndGeoTolWthDatRef.hxx>
#include <StepDimTol_GeoTolAndGeoTolWthDatRefAndGeoTolWthMod.hxx>
#include <StepDimTol_GeoTolAndGeoTolWthMod.hxx>
#include <StepDimTol_GeometricTolerance.hxx>
#include <StepDimTol_GeometricToleranceTarget.hxx>
#include <StepDimTol_GeometricToleranceWithDatumReference.hxx>
#include <StepDimTol_GeometricToleranceWithModifiers.hxx>
#include <StepDimTol_HArray1OfDatumReferenceCompartment.hxx>
#include <StepDimTol_HArray1OfDatumReferenceElement.hxx>
#include <StepDimTol_HArray1OfDatumSystemOrReference.hxx>
#include <StepDimTol_ToleranceZone.hxx>
#include <StepDimTol_ToleranceZoneForm.hxx>
#include <StepRepr_RepresentationContext.hxx>
#include <StepRepr_ShapeAspectRelationship.hxx>
#include <StepShape_AngularLocation.hxx>
#include <StepShape_AngularSize.hxx>
#include <StepShape_DimensionalLocation.hxx>
#include <StepShape_DimensionalSize.hxx>
#include <TCollection_HAsciiString.hxx>
#include <TDF_Tool.hxx>
#include <algorithm>
#include <limits>

#include "exchange/export/StepEntities.h"
#include "exchange/export/StepToleranceDetails.h"

namespace KVR
{

namespace
{

using opencascade::handle;
using Callout = ShapeDocument::Callout;

int DimensionType(AnnotationDetails const& details)
{
    int const type = DimensionTypeOf(details.type);
    return type == kDimensionType_AngularLocation && !details.second ? kDimensionType_AngularSize : type;
}

// A file tells the type of a dimension by its name, unless that is an angle.
std::string DimensionName(Callout const& callout, int type)
{
    auto const wanted = static_cast<XCAFDimTolObjects_DimensionType>(type);
    auto named = XCAFDimTolObjects_DimensionType_Location_None;
    bool const isTold = STEPCAFControl_GDTProperty::GetDimType(StepString(callout.label), named);
    if (type == kDimensionType_None || (isTold && named == wanted))
        return callout.label;
    handle<TCollection_HAsciiString> const name = STEPCAFControl_GDTProperty::GetDimTypeName(wanted);
    return name.IsNull() || name->IsEmpty() ? (isTold ? std::string() : callout.label) : name->ToCString();
}

std::vector<Callout const*> Sorted(std::vector<Callout> const& callouts)
{
    std::vector<Callout const*> sorted;
    for (Callout const& callout : callouts)
        sorted.push_back(&callout);
    auto const number = [](Callout const* callout)
    { return callout->details.number > 0 ? callout->details.number : std::numeric_limits<int>::max(); };
    std::stable_sort(sorted.begin(), sorted.end(),
                     [&](Callout const* a, Callout const* b) { return number(a) < number(b); });
    return sorted;
}

// What all tolerances are made of.
struct ToleranceParts
{
    handle<TCollection_HAsciiString> name;
    handle<StepBasic_MeasureWithUnit> magnitude;
    StepDimTol_GeometricToleranceTarget target;
    /// Null for none.
    handle<StepDimTol_GeometricToleranceWithDatumReference> datums;
};

// One of the types that has a place for its modifiers and, if there are any, its datums.
handle<StepDimTol_GeometricTolerance> ToleranceOf(ToleranceParts const& parts, AnnotationDetails const& details)
{
    auto const type = static_cast<XCAFDimTolObjects_GeomToleranceType>(ToleranceTypeOf(details.type));
    auto const named = STEPCAFControl_GDTProperty::GetGeomToleranceType(type);
    handle<StepDimTol_GeometricToleranceWithModifiers> const modified = new StepDimTol_GeometricToleranceWithModifiers;
    modified->SetModifiers(StepToleranceModifiers(details.modifiers));
    bool const hasModifiers = !modified->Modifiers().IsNull();
    handle<TCollection_HAsciiString> const nothing = StepString("");
    if (hasModifiers && !parts.datums.IsNull())
    {
        handle<StepDimTol_GeoTolAndGeoTolWthDatRefAndGeoTolWthMod> const made =
            new StepDimTol_GeoTolAndGeoTolWthDatRefAndGeoTolWthMod;
        made->Init(parts.name, nothing, parts.magnitude, parts.target, parts.datums, modified, named);
        return made.get();
    }
    if (hasModifiers)
    {
        handle<StepDimTol_GeoTolAndGeoTolWthMod> const made = new StepDimTol_GeoTolAndGeoTolWthMod;
        made->Init(parts.name, nothing, parts.magnitude, parts.target, modified, named);
        return made.get();
    }
    if (!parts.datums.IsNull())
    {
        handle<StepDimTol_GeoTolAndGeoTolWthDatRef> const made = new StepDimTol_GeoTolAndGeoTolWthDatRef;
        made->Init(parts.name, nothing, parts.magnitude, parts.target, parts.datums, named);
        return made.get();
    }
    handle<StepDimTol_GeometricTolerance> plain = STEPCAFControl_GDTProperty::GetGeomTolerance(type);
    if (type == XCAFDimTolObjects_GeomToleranceType_None)
        plain = new StepDimTol_GeometricTolerance;
    if (!plain.IsNull())
        plain->Init(parts.name, nothing, parts.magnitude, parts.target);
    return plain;
}

handle<StepDimTol_GeometricToleranceWithDatumReference> ReferenceTo(handle<StepDimTol_DatumSystem> const& datums)
{
    StepDimTol_DatumSystemOrReference system;
    system.SetValue(datums);
    handle<StepDimTol_HArray1OfDatumSystemOrReference> const systems =
        new StepDimTol_HArray1OfDatumSystemOrReference(1, 1);
    systems->SetValue(1, system);
    handle<StepDimTol_GeometricToleranceWithDatumReference> reference =
        new StepDimTol_GeometricToleranceWithDatumReference;
    reference->SetDatumSystem(systems);
    return reference;
}

std::string EntryOf(TDF_Label const& label)
{
    TCollection_AsciiString entry;
    TDF_Tool::Entry(label, entry);
    return entry.ToCString();
}

}  // namespace

StepNotes::StepNotes(StepTransfer& step)
    : m_inOrder(Sorted(step.document.callouts)), m_step(step), m_aspects(step), m_measures(step.model)
{
    for (Callout const* const callout : m_inOrder)
        if (callout->kind == "datum" && !callout->details.tolerance.empty())
            m_frames[{callout->variant, callout->details.tolerance}].push_back(callout);
}

bool StepNotes::IsPicture(Callout const& callout)
{
    int const type = DimensionTypeOf(callout.details.type);
    return callout.kind.empty() ||
           (callout.kind == "dimension" && (type == kDimensionType_Label || type == kDimensionType_Presentation));
}

void StepNotes::Add(Callout const& callout)
{
    handle<Standard_Transient> entity;
    if (IsPicture(callout))
        // An annotation that shares what it speaks of would be taken for the drawing of another.
        entity = callout.curves.empty() ? handle<StepRepr_ShapeAspect>() : m_aspects.OwnOf(callout.first);
    else if (callout.kind == "dimension")
        entity = Dimension(callout);
    else if (callout.kind == "tolerance")
    {
        // The datums of a copy may stand in what is no copy.
        auto frame = m_frames.find({callout.variant, callout.id});
        if (frame == m_frames.end())
            frame = m_frames.find({std::string(), callout.id});
        entity = Tolerance(callout, frame == m_frames.end() ? Frame() : frame->second);
    }
    if (callout.kind == "tolerance" || callout.kind == "datum")
        m_step.document.notCarried.Add("details of tolerances and targets of datums",
                                       PlacelessToleranceDetails(callout.details, callout.kind == "datum"));
    if (!entity.IsNull())
        m_entities[&callout] = entity;
}

handle<Standard_Transient> StepNotes::EntityOf(Callout const& callout) const
{
    auto const found = m_entities.find(&callout);
    return found == m_entities.end() ? handle<Standard_Transient>() : found->second;
}

Callout const& StepNotes::DrawnAs(Callout const& callout) const
{
    auto const found = m_firsts.find(&callout);
    return found == m_firsts.end() ? callout : *found->second;
}

handle<Standard_Transient> StepNotes::Dimension(Callout const& callout)
{
    handle<StepRepr_ShapeAspect> const first = m_aspects.Of(callout.first);
    if (first.IsNull())
        return {};
    int const type = DimensionType(callout.details);
    bool const isAngle = IsAngle(type);
    handle<TCollection_HAsciiString> const name = StepString(DimensionName(callout, type));
    TDF_Label const& part = callout.first.front().part;
    StepShape_DimensionalCharacteristic dimension;
    if (callout.details.second)
    {
        handle<StepRepr_ShapeAspect> second = m_aspects.Of(callout.second);
        if (second == first)
            second = m_aspects.OwnOf(callout.second);
        // A distance needs two ends, whatever the other one is.
        if (second.IsNull())
            second = m_aspects.Empty(part);
        handle<StepShape_DimensionalLocation> location;
        if (isAngle)
        {
            handle<StepShape_AngularLocation> const angle = new StepShape_AngularLocation;
            angle->Init(name, Standard_False, {}, first, second, StepShape_Equal);
            location = angle.get();
        }
        else
        {
            location = new StepShape_DimensionalLocation;
            location->Init(name, Standard_False, {}, first, second);
        }
        dimension.SetValue(location);
    }
    else if (isAngle)
    {
        handle<StepShape_AngularSize> const angle = new StepShape_AngularSize;
        angle->Init(first, name, StepShape_Equal);
        dimension.SetValue(angle);
    }
    else
    {
        handle<StepShape_DimensionalSize> const size = new StepShape_DimensionalSize;
        size->Init(first, name);
        dimension.SetValue(size);
    }
    m_step.model->AddWithRefs(dimension.Value());
    m_measures.Write(dimension, callout.details, isAngle, m_aspects.ContextOf(part));
    return dimension.Value();
}

handle<Standard_Transient> StepNotes::Tolerance(Callout const& callout, Frame const& frame)
{
    StepDimTol_GeometricToleranceTarget target;
    handle<StepRepr_ShapeAspect> const aspect = m_aspects.Of(callout.first);
    if (!aspect.IsNull())
        target.SetValue(aspect);
    // All of a part.
    else if (!callout.first.empty() && !m_aspects.ShapeOf(callout.first.front().part).IsNull())
        target.SetValue(m_aspects.ShapeOf(callout.first.front().part));
    else
        return {};
    TDF_Label const& part = callout.first.front().part;
    ToleranceParts parts{StepString(callout.label), {}, target, {}};
    if (callout.details.magnitude)
        parts.magnitude = StepMeasures::Length(*callout.details.magnitude, m_aspects.ContextOf(part));
    if (!frame.empty())
        parts.datums = ReferenceTo(SystemOf(callout, frame));
    handle<StepDimTol_GeometricTolerance> tolerance = ToleranceOf(parts, callout.details);
    if (tolerance.IsNull())
    {
        // Some types have datums, if none that are known.
        parts.datums = ReferenceTo(SystemOf(callout, frame));
        tolerance = ToleranceOf(parts, callout.details);
    }
    m_step.model->AddWithRefs(tolerance);
    if (!callout.details.zone.empty())
    {
        handle<StepDimTol_ToleranceZone> const zone =
            StepZoneOf(tolerance, callout.details.zone, m_aspects.ShapeOf(part));
        // Open CASCADE does not know that a zone refers to its form.
        m_step.model->AddWithRefs(zone->Form());
        m_step.model->AddWithRefs(zone);
    }
    return tolerance.get();
}

handle<StepDimTol_DatumSystem> StepNotes::SystemOf(Callout const& tolerance, Frame const& frame)
{
    TDF_Label const& part = tolerance.first.front().part;
    // Datums in one place are common to it.
    std::map<int, Frame> places;
    for (Callout const* const datum : frame)
        places[datum->details.position].push_back(datum);
    handle<StepDimTol_HArray1OfDatumReferenceCompartment> compartments;
    if (!places.empty())
        compartments = new StepDimTol_HArray1OfDatumReferenceCompartment(1, static_cast<int>(places.size()));
    int number = 0;
    for (auto const& [place, datums] : places)
        compartments->SetValue(++number, CompartmentOf(datums, part));
    handle<StepDimTol_DatumSystem> system = new StepDimTol_DatumSystem;
    system->Init(StepString(""), StepString(""), m_aspects.ShapeOf(part), StepData_LFalse, compartments);
    return system;
}

handle<StepDimTol_DatumReferenceCompartment> StepNotes::CompartmentOf(Frame const& datums, TDF_Label const& part)
{
    StepDimTol_DatumOrCommonDatum base;
    handle<StepDimTol_HArray1OfDatumReferenceModifier> modifiers;
    if (datums.size() == 1)
    {
        base.SetValue(DatumOf(*datums.front(), part).datum);
        modifiers = StepDatumModifiers(datums.front()->details.modifiers);
    }
    else
    {
        handle<StepDimTol_HArray1OfDatumReferenceElement> const elements =
            new StepDimTol_HArray1OfDatumReferenceElement(1, static_cast<int>(datums.size()));
        for (std::size_t i = 0; i < datums.size(); ++i)
        {
            StepDimTol_DatumOrCommonDatum of;
            of.SetValue(DatumOf(*datums[i], part).datum);
            handle<StepDimTol_DatumReferenceElement> const element = new StepDimTol_DatumReferenceElement;
            handle<StepDimTol_HArray1OfDatumReferenceModifier> const own =
                StepDatumModifiers(datums[i]->details.modifiers);
            element->Init(StepString(""), StepString(""), m_aspects.ShapeOf(part), StepData_LFalse, of, !own.IsNull(),
                          own);
            elements->SetValue(static_cast<int>(i) + 1, element);
        }
        base.SetValue(elements);
    }
    handle<StepDimTol_DatumReferenceCompartment> compartment = new StepDimTol_DatumReferenceCompartment;
    compartment->Init(StepString(""), StepString(""), m_aspects.ShapeOf(part), StepData_LFalse, base,
                      !modifiers.IsNull(), modifiers);
    return compartment;
}

StepNotes::Datum const& StepNotes::DatumOf(Callout const& callout, TDF_Label const& part)
{
    TDF_Label const& owner = callout.first.empty() ? part : callout.first.front().part;
    std::string key = EntryOf(owner) + '\n' + callout.details.letter + '\n' + callout.label + '\n' +
                      callout.drawingLabel + '\n' + std::to_string(callout.curves.size());
    for (std::string const& reference : callout.references)
        key += '\n' + reference;
    Datum& made = m_datums[key];
    if (!made.first)
        AddDatum(made, callout, owner);
    m_firsts[&callout] = made.first;
    m_entities[&callout] = made.feature;
    return made;
}

void StepNotes::AddDatum(Datum& made, Callout const& callout, TDF_Label const& part)
{
    handle<StepRepr_ProductDefinitionShape> const shape = m_aspects.ShapeOf(part);
    made.first = &callout;
    made.datum = new StepDimTol_Datum;
    made.datum->Init(StepString(""), StepString(""), shape, StepData_LFalse, StepString(callout.details.letter));
    handle<StepDimTol_DatumFeature> const feature = new StepDimTol_DatumFeature;
    feature->Init(StepString(callout.label), StepString(""), shape, StepData_LTrue);
    made.feature = feature;
    m_step.model->AddWithRefs(feature);
    m_aspects.Apply(feature, callout.first);
    m_step.model->AddWithRefs(made.datum);
    handle<StepRepr_ShapeAspectRelationship> const relationship = new StepRepr_ShapeAspectRelationship;
    relationship->Init(StepString(""), Standard_False, {}, feature, made.datum);
    m_step.model->AddWithRefs(relationship);
}

}  // namespace KVR

#include "exchange/export/StepSolidMeasures.h"

#include <StepBasic_DerivedUnit.hxx>
#include <StepBasic_DerivedUnitElement.hxx>
#include <StepBasic_HArray1OfDerivedUnitElement.hxx>
#include <StepBasic_MeasureValueMember.hxx>
#include <StepBasic_MeasureWithUnit.hxx>
#include <StepBasic_Unit.hxx>
#include <StepGeom_CartesianPoint.hxx>
#include <StepRepr_CharacterizedDefinition.hxx>
#include <StepRepr_MeasureRepresentationItem.hxx>
#include <StepRepr_PropertyDefinition.hxx>
#include <StepRepr_PropertyDefinitionRepresentation.hxx>
#include <StepRepr_Representation.hxx>
#include <StepRepr_RepresentedDefinition.hxx>
#include <TCollection_HAsciiString.hxx>
#include <map>

#include "exchange/export/StepAspects.h"
#include "exchange/export/StepEntities.h"
#include "exchange/export/StepMeasures.h"

namespace KVR
{

namespace
{

using opencascade::handle;

constexpr char kProperty[] = "geometric validation property";

class SolidWriter
{
public:
    explicit SolidWriter(StepTransfer& step) : m_step(step), m_aspects(step) {}

    void Write(ShapeDocument::Solid const& solid)
    {
        handle<StepRepr_RepresentationItem> const item = m_step.ItemOf(solid.shape);
        handle<StepRepr_ShapeAspect> const aspect =
            item.IsNull() ? handle<StepRepr_ShapeAspect>() : m_aspects.OwnOf({{solid.part, solid.shape}});
        if (aspect.IsNull())
            return;
        if (!item->Name().IsNull())
            aspect->SetName(item->Name());
        m_owner.SetValue(aspect);
        m_context = m_aspects.ContextOf(solid.part);
        Add("volume", MeasureOf("volume measure", "VOLUME_MEASURE", solid.volume, 3));
        Add("area", MeasureOf("surface area measure", "AREA_MEASURE", solid.area, 2));
        handle<StepGeom_CartesianPoint> const centre = StepPoint(gp_Pnt(solid.centroid));
        centre->SetName(StepString("centre point"));
        Add("centroid", centre);
    }

private:
    // A power of the unit of length of the context.
    StepBasic_Unit UnitOf(int power)
    {
        StepBasic_Unit& unit = m_units[{m_context.get(), power}];
        if (!unit.IsNull())
            return unit;
        handle<StepBasic_DerivedUnitElement> const element = new StepBasic_DerivedUnitElement;
        element->Init(StepMeasures::Length(1.0, m_context)->UnitComponent().NamedUnit(), power);
        handle<StepBasic_HArray1OfDerivedUnitElement> const elements = new StepBasic_HArray1OfDerivedUnitElement(1, 1);
        elements->SetValue(1, element);
        handle<StepBasic_DerivedUnit> const derived = new StepBasic_DerivedUnit;
        derived->Init(elements);
        unit.SetValue(derived);
        return unit;
    }

    handle<StepRepr_RepresentationItem> MeasureOf(char const* name, char const* type, double number, int power)
    {
        handle<StepBasic_MeasureValueMember> const value = new StepBasic_MeasureValueMember;
        value->SetName(type);
        value->SetReal(number);
        handle<StepRepr_MeasureRepresentationItem> const item = new StepRepr_MeasureRepresentationItem;
        item->Init(StepString(name), value, UnitOf(power));
        return item.get();
    }

    void Add(char const* description, handle<StepRepr_RepresentationItem> const& item)
    {
        handle<StepRepr_PropertyDefinition> const property = new StepRepr_PropertyDefinition;
        property->Init(StepString(kProperty), Standard_True, StepString(description), m_owner);
        handle<StepRepr_Representation> const representation = new StepRepr_Representation;
        representation->Init(StepString(description), StepArray({item}), m_context);
        handle<StepRepr_PropertyDefinitionRepresentation> const link = new StepRepr_PropertyDefinitionRepresentation;
        StepRepr_RepresentedDefinition represented;
        represented.SetValue(property);
        link->Init(represented, representation);
        m_step.model->AddWithRefs(link);
    }

    StepTransfer& m_step;
    StepAspects m_aspects;
    StepRepr_CharacterizedDefinition m_owner;
    handle<StepRepr_RepresentationContext> m_context;
    std::map<std::pair<Standard_Transient const*, int>, StepBasic_Unit> m_units;
};

}  // namespace

void WriteSolidMeasures(StepTransfer& step)
{
    SolidWriter writer(step);
    for (ShapeDocument::Solid const& solid : step.document.solids)
        writer.Write(solid);
}

}  // namespace KVR

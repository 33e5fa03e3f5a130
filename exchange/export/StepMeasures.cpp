#include "exchange/export/StepMeasures.h"

#include <StepBasic_ConversionBasedUnitAndLengthUnit.hxx>
#include <StepBasic_ConversionBasedUnitAndPlaneAngleUnit.hxx>
#include <StepBasic_DimensionalExponents.hxx>
#include <StepBasic_LengthMeasureWithUnit.hxx>
#include <StepBasic_MeasureValueMember.hxx>
#include <StepBasic_PlaneAngleMeasureWithUnit.hxx>
#include <StepBasic_SiUnitAndLengthUnit.hxx>
#include <StepBasic_SiUnitAndPlaneAngleUnit.hxx>
#include <StepData_StepModel.hxx>
#include <StepGeom_GeomRepContextAndGlobUnitAssCtxAndGlobUncertaintyAssCtx.hxx>
#include <StepRepr_CompoundRepresentationItem.hxx>
#include <StepRepr_DescriptiveRepresentationItem.hxx>
#include <StepRepr_HArray1OfRepresentationItem.hxx>
#include <StepRepr_ReprItemAndLengthMeasureWithUnit.hxx>
#include <StepRepr_ReprItemAndPlaneAngleMeasureWithUnit.hxx>
#include <StepShape_DimensionalCharacteristicRepresentation.hxx>
#include <StepShape_LimitsAndFits.hxx>
#include <StepShape_PlusMinusTolerance.hxx>
#include <StepShape_ShapeDimensionRepresentation.hxx>
#include <StepShape_ToleranceMethodDefinition.hxx>
#include <StepShape_ToleranceValue.hxx>
#include <TCollection_HAsciiString.hxx>
#include <algorithm>

#include "exchange/export/StepEntities.h"

namespace KVR
{

namespace
{

using opencascade::handle;
using Items = std::vector<handle<StepRepr_RepresentationItem>>;

constexpr double kRadiansPerDegree = 0.017453292519943295;

StepBasic_Unit LengthUnitOf(handle<StepRepr_RepresentationContext> const& context)
{
    StepBasic_Unit unit;
    auto const geometric = handle<StepGeom_GeomRepContextAndGlobUnitAssCtxAndGlobUncertaintyAssCtx>::DownCast(context);
    for (int i = 1; !geometric.IsNull() && i <= geometric->NbUnits(); ++i)
    {
        handle<StepBasic_NamedUnit> const named = geometric->UnitsValue(i);
        if (named->IsKind(STANDARD_TYPE(StepBasic_SiUnitAndLengthUnit)) ||
            named->IsKind(STANDARD_TYPE(StepBasic_ConversionBasedUnitAndLengthUnit)))
            unit.SetValue(named);
    }
    return unit;
}

// "LENGTH_MEASURE" and the like.
handle<StepBasic_MeasureValueMember> ValueOf(double value, char const* type)
{
    handle<StepBasic_MeasureValueMember> member = new StepBasic_MeasureValueMember;
    member->SetName(type);
    member->SetReal(value);
    return member;
}

handle<StepRepr_RepresentationItem> ItemOf(char const* name, double value, bool isAngle, StepBasic_Unit const& unit)
{
    handle<StepBasic_MeasureWithUnit> const measure = new StepBasic_MeasureWithUnit;
    measure->Init(ValueOf(value, isAngle ? "PLANE_ANGLE_MEASURE" : "LENGTH_MEASURE"), unit);
    handle<StepRepr_RepresentationItem> const base = new StepRepr_RepresentationItem;
    base->Init(StepString(name));
    handle<StepRepr_ReprItemAndMeasureWithUnit> item;
    if (isAngle)
        item = new StepRepr_ReprItemAndPlaneAngleMeasureWithUnit;
    else
        item = new StepRepr_ReprItemAndLengthMeasureWithUnit;
    item->Init(measure, base);
    return item.get();
}

handle<StepBasic_MeasureWithUnit> BoundOf(double value, bool isAngle, StepBasic_Unit const& unit)
{
    handle<StepBasic_MeasureWithUnit> measure;
    if (isAngle)
        measure = new StepBasic_PlaneAngleMeasureWithUnit;
    else
        measure = new StepBasic_LengthMeasureWithUnit;
    measure->Init(ValueOf(value, isAngle ? "PLANE_ANGLE_MEASURE" : "LENGTH_MEASURE"), unit);
    return measure.get();
}

handle<StepRepr_HArray1OfRepresentationItem> ArrayOf(Items const& items)
{
    handle<StepRepr_HArray1OfRepresentationItem> array =
        new StepRepr_HArray1OfRepresentationItem(1, static_cast<int>(items.size()));
    for (std::size_t i = 0; i < items.size(); ++i)
        array->SetValue(static_cast<int>(i) + 1, items[i]);
    return array;
}

handle<StepRepr_RepresentationItem> ModifiersOf(std::vector<std::string> const& modifiers)
{
    Items items;
    for (std::string const& modifier : modifiers)
    {
        handle<StepRepr_DescriptiveRepresentationItem> const item = new StepRepr_DescriptiveRepresentationItem;
        item->Init(StepString(""), StepString(modifier));
        items.push_back(item.get());
    }
    handle<StepRepr_CompoundRepresentationItem> compound = new StepRepr_CompoundRepresentationItem;
    compound->Init(StepString(""), ArrayOf(items));
    return compound.get();
}

// "H7" as a form and a grade.
handle<StepShape_LimitsAndFits> FitOf(AnnotationDetails const& details)
{
    std::size_t const grade = std::min(details.fit.find_first_of("0123456789"), details.fit.size());
    handle<StepShape_LimitsAndFits> fit = new StepShape_LimitsAndFits;
    fit->Init(StepString(details.fit.substr(0, grade)), StepString(details.fitOf),
              StepString(details.fit.substr(grade)), StepString(""));
    return fit;
}

}  // namespace

void StepMeasures::Write(StepShape_DimensionalCharacteristic const& dimension, AnnotationDetails const& details,
                         bool isAngle, handle<StepRepr_RepresentationContext> const& context)
{
    StepBasic_Unit const unit = isAngle ? Degrees() : LengthUnitOf(context);
    Items items;
    if (details.value)
        items.push_back(ItemOf("nominal value", *details.value, isAngle, unit));
    if (details.lower && details.upper)
        items.insert(items.end(), {ItemOf("lower limit", *details.lower, isAngle, unit),
                                   ItemOf("upper limit", *details.upper, isAngle, unit)});
    if (items.empty() || unit.IsNull())
        return;
    if (!details.modifiers.empty())
        items.push_back(ModifiersOf(details.modifiers));
    handle<StepShape_ShapeDimensionRepresentation> const representation = new StepShape_ShapeDimensionRepresentation;
    representation->Init(StepString(""), ArrayOf(items), context);
    handle<StepShape_DimensionalCharacteristicRepresentation> const characteristic =
        new StepShape_DimensionalCharacteristicRepresentation;
    characteristic->Init(dimension, representation);
    m_model->AddWithRefs(characteristic);
    StepShape_ToleranceMethodDefinition method;
    if (details.value && details.minus && details.plus)
    {
        handle<StepShape_ToleranceValue> const bounds = new StepShape_ToleranceValue;
        bounds->Init(BoundOf(-*details.minus, isAngle, unit), BoundOf(*details.plus, isAngle, unit));
        method.SetValue(bounds);
    }
    else if (!details.fit.empty())
        method.SetValue(FitOf(details));
    else
        return;
    handle<StepShape_PlusMinusTolerance> const tolerance = new StepShape_PlusMinusTolerance;
    tolerance->Init(method, dimension);
    m_model->AddWithRefs(tolerance);
}

handle<StepBasic_MeasureWithUnit> StepMeasures::Length(double value,
                                                       handle<StepRepr_RepresentationContext> const& context)
{
    StepBasic_Unit const unit = LengthUnitOf(context);
    return unit.IsNull() ? handle<StepBasic_MeasureWithUnit>() : BoundOf(value, false, unit);
}

StepBasic_Unit StepMeasures::Degrees()
{
    if (!m_degrees.IsNull())
        return m_degrees;
    handle<StepBasic_SiUnitAndPlaneAngleUnit> const radian = new StepBasic_SiUnitAndPlaneAngleUnit;
    radian->Init(Standard_False, StepBasic_spMilli, StepBasic_sunRadian);
    StepBasic_Unit base;
    base.SetValue(radian);
    handle<StepBasic_DimensionalExponents> const exponents = new StepBasic_DimensionalExponents;
    exponents->Init(0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0);
    handle<StepBasic_ConversionBasedUnitAndPlaneAngleUnit> const degree =
        new StepBasic_ConversionBasedUnitAndPlaneAngleUnit;
    degree->Init(exponents, StepString("DEGREE"), BoundOf(kRadiansPerDegree, true, base));
    m_degrees.SetValue(degree);
    // Open CASCADE does not count it among what an item refers to.
    m_model->AddWithRefs(degree);
    return m_degrees;
}

}  // namespace KVR

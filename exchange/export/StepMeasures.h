#pragma once

#include <StepBasic_MeasureWithUnit.hxx>
#include <StepBasic_Unit.hxx>
#include <StepRepr_RepresentationContext.hxx>
#include <StepShape_DimensionalCharacteristic.hxx>

#include "exchange/conventions/AnnotationDetails.h"

class StepData_StepModel;

namespace KVR
{

/// Adds to a model what a dimension measures. Lengths are in the unit of the context, angles in degrees.
class StepMeasures
{
public:
    explicit StepMeasures(opencascade::handle<StepData_StepModel> const& model) : m_model(model) {}

    /// Nothing for details without a value: no reader knows what to do with it.
    void Write(StepShape_DimensionalCharacteristic const& dimension, AnnotationDetails const& details, bool isAngle,
               opencascade::handle<StepRepr_RepresentationContext> const& context);

    /// A length in the unit of the context.
    static opencascade::handle<StepBasic_MeasureWithUnit> Length(
        double value, opencascade::handle<StepRepr_RepresentationContext> const& context);

private:
    StepBasic_Unit Degrees();

    opencascade::handle<StepData_StepModel> m_model;
    StepBasic_Unit m_degrees;
};

}  // namespace KVR

#pragma once

#include <StepDimTol_HArray1OfDatumReferenceModifier.hxx>
#include <StepDimTol_HArray1OfGeometricToleranceModifier.hxx>
#include <string>
#include <vector>

#include "exchange/conventions/AnnotationDetails.h"

class StepDimTol_GeometricTolerance;
class StepDimTol_ToleranceZone;
class StepRepr_ProductDefinitionShape;

namespace KVR
{

/// The modifiers of a tolerance, or of a datum in its place in a frame, that a STEP file has a word for; null for none.
opencascade::handle<StepDimTol_HArray1OfGeometricToleranceModifier> StepToleranceModifiers(
    std::vector<std::string> const& modifiers);
opencascade::handle<StepDimTol_HArray1OfDatumReferenceModifier> StepDatumModifiers(
    std::vector<std::string> const& modifiers);

/// The zone of a tolerance, by the name of its form.
opencascade::handle<StepDimTol_ToleranceZone> StepZoneOf(
    opencascade::handle<StepDimTol_GeometricTolerance> const& tolerance, std::string const& form,
    opencascade::handle<StepRepr_ProductDefinitionShape> const& shape);

/// How many of the details of a tolerance or datum have no place in a file.
unsigned long long PlacelessToleranceDetails(AnnotationDetails const& details, bool isDatum);

}  // namespace KVR

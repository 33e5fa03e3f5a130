#pragma once

#include <string>

#include "exchange/model/ModelDocument.h"

class STEPCAFControl_Reader;
class StepData_StepModel;

namespace KVR
{

/// Makes the entities of a file those of the reader's model, and tells of "reading" how much is done. False when Open
/// CASCADE refuses.
bool ReadStepEntities(STEPCAFControl_Reader& reader, std::string const& path, TellStage const& tell);

/// The same with what can be taken of a damaged file, which becomes what the model says by itself; remarks and losses
/// tell how much it is. Throws ModelError for nothing, and for whoever is not lenient.
void ReadRepairedStep(ModelDocument& model, STEPCAFControl_Reader& reader, StepContent const& damaged,
                      std::string const& path, bool isLenient);

/// Open CASCADE takes a value with a qualifier as it stands, whatever its unit is: its numbers become those of the
/// model's unit, and degrees.
void ScaleQualifiedValues(ModelDocument const& model, opencascade::handle<StepData_StepModel> const& step);

}  // namespace KVR

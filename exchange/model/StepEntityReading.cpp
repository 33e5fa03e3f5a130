#include "exchange/model/StepEntityReading.h"

#include <STEPCAFControl_Reader.hxx>
#include <STEPConstruct_UnitContext.hxx>
#include <StepBasic_MeasureWithUnit.hxx>
#include <StepBasic_NamedUnit.hxx>
#include <StepBasic_Unit.hxx>
#include <StepData_GlobalFactors.hxx>
#include <StepData_StepModel.hxx>
#include <StepRepr_ReprItemAndLengthMeasureWithUnitAndQRI.hxx>
#include <StepRepr_ReprItemAndPlaneAngleMeasureWithUnitAndQRI.hxx>
#include <cmath>
#include <sstream>

#include "exchange/model/ModelError.h"
#include "exchange/model/Part21Repair.h"
#include "exchange/model/ToldFile.h"
#include "framework/api/LengthUnits.h"

namespace KVR
{

namespace
{

// How much of the reading is done when all bytes are taken: then the entities are made.
constexpr double kBytesOfReading = 0.7;

// Open CASCADE tells the factor of a unit in millimetres.
constexpr double kMetresPerMillimetre = 1e-3;

}  // namespace

bool ReadStepEntities(STEPCAFControl_Reader& reader, std::string const& path, TellStage const& tell)
{
    ToldFile file(path,
                  [&](double fraction)
                  {
                      if (tell)
                          tell("reading", kBytesOfReading * fraction);
                  });
    std::istream stream(&file);
    return reader.ChangeReader().ReadStream(path.c_str(), stream) == IFSelect_RetDone;
}

void ReadRepairedStep(ModelDocument& model, STEPCAFControl_Reader& reader, StepContent const& damaged,
                      std::string const& path, bool isLenient)
{
    Part21Repair repair = isLenient ? Part21Repair::Of(damaged.file) : Part21Repair();
    std::istringstream stream(repair.text);
    if (repair.text.empty() || reader.ChangeReader().ReadStream(path.c_str(), stream) != IFSelect_RetDone)
        throw ModelError("it is no complete STEP file");
    // It may be read twice.
    if (model.step)
        return;
    model.remarks.push_back("it is damaged; taken: " + std::to_string(repair.taken) + " of the " +
                            std::to_string(damaged.file.Entities().size()) + " entities that begin in it");
    for (std::string& entity : repair.dropped)
        model.losses.AddItem("entities that are damaged or name what is not there", std::move(entity));
    for (std::string& entity : repair.shortened)
        model.losses.AddItem("lists of entities without what is not there", std::move(entity));
    model.step = std::make_shared<StepContent>(Part21File::Bytes{std::move(repair.text)});
}

void ScaleQualifiedValues(ModelDocument const& model, Handle(StepData_StepModel) const& step)
{
    double const unit = MetresOf(model.unit) / kMetresPerMillimetre;
    for (int number = 1; number <= step->NbEntities(); ++number)
    {
        auto const item = Handle(StepRepr_ReprItemAndMeasureWithUnitAndQRI)::DownCast(step->Value(number));
        if (item.IsNull() || item->GetMeasureWithUnit().IsNull())
            continue;
        Handle(StepBasic_MeasureWithUnit) const measure = item->GetMeasureWithUnit();
        STEPConstruct_UnitContext units;
        units.ComputeFactors(measure->UnitComponent().NamedUnit());
        double factor = 1.0;
        if (item->IsKind(STANDARD_TYPE(StepRepr_ReprItemAndLengthMeasureWithUnitAndQRI)) && units.LengthDone())
            factor = units.LengthFactor() * StepData_GlobalFactors::Intance().CascadeUnit() / unit;
        else if (item->IsKind(STANDARD_TYPE(StepRepr_ReprItemAndPlaneAngleMeasureWithUnitAndQRI)) &&
                 units.PlaneAngleDone())
            factor = units.PlaneAngleFactor() * 180.0 / M_PI;
        // Numbers that need no change keep their digits.
        if (std::abs(factor - 1.0) > 1e-9)
            measure->SetValueComponent(measure->ValueComponent() * factor);
    }
}

}  // namespace KVR

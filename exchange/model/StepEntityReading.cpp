#include "exchange/model/StepEntityReading.h"

#include <STEPCAFControl_Reader.hxx>
#include <sstream>

#include "exchange/model/ModelError.h"
#include "exchange/model/Part21Repair.h"
#include "exchange/model/ToldFile.h"

namespace KVR
{

namespace
{

// How much of the reading is done when all bytes are taken: then the entities are made.
constexpr double kBytesOfReading = 0.7;

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
    model.remarks.push_back("it is damaged; taken: " + std::to_string(repair.taken) + " of the " +
                            std::to_string(damaged.file.Entities().size()) + " entities that begin in it");
    for (std::string& entity : repair.dropped)
        model.losses.AddItem("entities that are damaged or name what is not there", std::move(entity));
    for (std::string& entity : repair.shortened)
        model.losses.AddItem("lists of entities without what is not there", std::move(entity));
    model.step = std::make_shared<StepContent>(Part21File::Bytes{std::move(repair.text)});
}

}  // namespace KVR

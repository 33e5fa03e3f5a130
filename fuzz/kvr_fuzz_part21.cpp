// A STEP file of any content through both readers of its entities, the one that imports and the one that certifies, and
// all that is made of the entities by themselves.

#include <cstdlib>
#include <stdexcept>
#include <string>

#include "exchange/certify/part21/Part21Model.h"
#include "exchange/model/StepContent.h"

namespace
{

using namespace KVR;

void Import(std::string bytes)
{
    StepContent const step(Part21File::Bytes{std::move(bytes)});
    std::size_t const references = step.file.References().size();
    for (Part21File::Entity const& entity : step.file.Entities())
    {
        if (entity.type >= step.file.Types().size() || entity.firstReference > references ||
            entity.referenceCount > references - entity.firstReference || !step.file.Find(entity.number))
            std::abort();
        step.file.ParametersOf(entity, step.file.TypeOf(entity));
    }
    StepTolerances::Of(step.file, 1e-3);
}

void Certify(std::string bytes)
{
    try
    {
        Certification::Part21Model const model(std::move(bytes));
        for (char const* const type : {"PRODUCT", "CARTESIAN_POINT", "GEOMETRIC_TOLERANCE"})
            for (Certification::Part21Model::Id const id : model.Of(type))
            {
                if (!model.Has(id) || !model.Is(id, type))
                    std::abort();
                for (Certification::Part21Parameter const& parameter : model.Parameters(id, type))
                    for (Certification::Part21Model::Id const other : parameter.References())
                        model.Parameters(other);
            }
    }
    catch (std::runtime_error const&)
    {
        // No exchange structure.
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    std::string const bytes(reinterpret_cast<char const*>(data), size);
    Import(bytes);
    Certify(bytes);
    return 0;
}

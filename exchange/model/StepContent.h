#pragma once

#include <unordered_set>

#include "exchange/model/Part21File.h"
#include "exchange/model/StepProducts.h"
#include "exchange/model/StepTolerances.h"

namespace KVR
{

/// What a STEP file says by itself, beside the document that Open CASCADE makes of it.
struct StepContent
{
    explicit StepContent(std::string const& path) : file(path), products(StepProducts::Of(file)) {}

    Part21File file;
    StepProducts products;
    StepTolerances tolerances;
    bool hasAnnotations = false;
    /// The entities that would be in the document, but are not: products, usages, bodies and faces.
    std::unordered_set<Part21File::Number> missing;
};

}  // namespace KVR

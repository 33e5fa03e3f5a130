#pragma once

#include <unordered_set>
#include <utility>

#include "exchange/model/Part21File.h"
#include "exchange/model/StepProductTable.h"
#include "exchange/model/StepTolerances.h"

namespace KVR
{

/// What a STEP file says by itself, beside the document that Open CASCADE makes of it.
struct StepContent
{
    /// Of a path, or of bytes.
    template <class Source>
    explicit StepContent(Source source) : file(std::move(source)), products(StepProductTable::Of(file))
    {
    }

    Part21File file;
    StepProductTable products;
    StepTolerances tolerances;
    bool hasAnnotations = false;
    /// The entities that would be in the document, but are not: products, usages, bodies and faces.
    std::unordered_set<Part21File::Number> missing;
};

}  // namespace KVR

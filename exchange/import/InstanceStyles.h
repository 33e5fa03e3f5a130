#pragma once

#include <utility>
#include <vector>

#include "authoring/SceneRecords.h"
#include "exchange/import/ProductPlan.h"
#include "exchange/model/Losses.h"

namespace KVR
{

class StyleTable;

/// The styles that an assembly gives its occurrences: those of its placements, and those that it gives to occurrences
/// further down.
std::vector<std::pair<Authoring::OccurrencePath, std::vector<UTF8String>>> InstanceStyles(ProductPlan const& plan,
                                                                                          ComponentPlan const& assembly,
                                                                                          StyleTable& styles,
                                                                                          Losses& losses);

}  // namespace KVR

#pragma once

#include <TDF_Label.hxx>
#include <optional>
#include <vector>

#include "authoring/SceneRecords.h"
#include "exchange/model/Losses.h"
#include "exchange/model/ModelDocument.h"

namespace KVR
{

/// What a model says of a component beside its shape: number, revision and description of the product, its categories,
/// validation properties, material, and attributes of users; nothing when it says none of it.
std::optional<Authoring::FilePropertiesRecord> PropertiesOfComponent(ModelDocument const& model, TDF_Label const& label,
                                                                     Losses& losses);

/// What a model says of a component in its place: the ids of the usage, and properties as above.
std::vector<Authoring::PropertyValue> PropertiesOfUsage(ModelDocument const& model, TDF_Label const& label,
                                                        Losses& losses);

}  // namespace KVR

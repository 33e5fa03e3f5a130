#pragma once

#include <TDF_Label.hxx>
#include <vector>

#include "authoring/SceneRecords.h"
#include "exchange/model/Losses.h"

namespace KVR
{

/// What a document says of a component beside its shape: validation properties, material, and attributes of users.
std::vector<Authoring::PropertyValue> PropertiesOfLabel(TDF_Label const& label, Losses& losses);

}  // namespace KVR

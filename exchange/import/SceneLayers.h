#pragma once

#include <TDF_Label.hxx>
#include <TDocStd_Document.hxx>
#include <functional>
#include <vector>

#include "authoring/SceneRecords.h"
#include "exchange/model/Losses.h"

namespace KVR
{

/// The layers of a document with what is in them; `idsOf` answers the ids of what a label became.
std::vector<Authoring::LayerRecord> LayersOf(Handle(TDocStd_Document) const& document,
                                             std::function<std::vector<UTF8String>(TDF_Label const&)> const& idsOf,
                                             Losses& losses);

}  // namespace KVR

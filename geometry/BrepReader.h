#pragma once

#include "framework/api/IBrep.h"
#include "framework/xml_util/XStr.h"

namespace KVR
{

/// The geometry type that a text names; false, with the output left alone, for any other text.
[[nodiscard]] bool ProducerGeometryTypeFromText(XMLCh const* text, IBrep::ProducerGeometryTypeEnum& type);

}  // namespace KVR

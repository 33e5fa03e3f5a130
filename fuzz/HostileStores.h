#pragma once

#include <fuzzer/FuzzedDataProvider.h>
#include <TopoDS_Shape.hxx>
#include <string>

namespace KVR::Fuzz
{

/// Most are of a size that makes sense.
double HostileNumber(FuzzedDataProvider& input);

/// Null where Open CASCADE makes nothing of the numbers.
TopoDS_Shape HostileShape(FuzzedDataProvider& input);

/// Changes bytes of the stores beside a scene; the digests of kernel stores, in one form or the other, fit still.
void ChangeStores(std::string const& path, bool isText, FuzzedDataProvider& input);

}  // namespace KVR::Fuzz

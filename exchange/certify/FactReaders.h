#pragma once

#include <string>

#include "exchange/certify/ModelFacts.h"

namespace KVR
{

class IProducer;
class UTF8String;
struct ModelDocument;

/// What a document of Open CASCADE's holds, by Open CASCADE itself. It is meshed at the deflection, a length in its
/// unit, or not at all at 0; lengths in the answer are in millimetres.
ModelFacts FactsOfDocument(ModelDocument const& model, double deflection);

/// What a scene serves, through its producer, in millimetres.
ModelFacts FactsOfScene(IProducer& producer, UTF8String const& rootId);

/// What a GLB file holds, in millimetres and with z up. Throws std::runtime_error for one that cannot be read.
ModelFacts FactsOfGlb(std::string const& path);

}  // namespace KVR

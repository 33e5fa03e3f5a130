#pragma once

#include <functional>
#include <string>

#include "exchange/certify/ModelFacts.h"

namespace KVR
{

class IProducer;
class UTF8String;

}  // namespace KVR

namespace KVR::Certification
{

// Readers of facts, each of which shares no code with import and export. All throw std::exception for what they cannot
// read, and may end the process where Open CASCADE does.

/// Is told how much is done, from 0 to 1.
using TellFraction = std::function<void(double)>;

/// What a STEP file holds: the entities of the file, and the shapes that Open CASCADE makes of them.
ModelFacts FactsOfStep(std::string const& path, TellFraction const& tell = {});

/// What a BREP or an IGES file holds: its shapes alone. The unit, in millimetres, is that of a BREP file's numbers.
ModelFacts FactsOfBrep(std::string const& path, double millimetres);
ModelFacts FactsOfIges(std::string const& path);

/// What a scene serves, through its producer.
ModelFacts FactsOfScene(IProducer& producer, UTF8String const& rootId);

/// What a GLB or glTF file holds, with z up. What this project's export says of nodes tells which of them are
/// components. In a model to import each node that has others below it is an assembly of its own, and layers are none
/// of the format's.
ModelFacts FactsOfGltf(std::string const& path, bool isModel = false);

/// What an STL, OBJ or PLY file holds. The unit, in millimetres, is that of its numbers.
ModelFacts FactsOfTriangles(std::string const& path, double millimetres);

}  // namespace KVR::Certification

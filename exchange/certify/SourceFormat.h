#pragma once

#include <string>

#include "exchange/certify/FactReaders.h"

namespace KVR::Certification
{

/// The facts of a scene file. Throws std::exception for one without a root.
ModelFacts FactsOfSceneFile(std::string const& path);

/// The facts of a model, or of a scene, by whichever reader is for its kind, told by its first bytes or else by its
/// extension. The unit, in millimetres, is that of files that state none. See FactsOfGltf on models to import. Throws
/// std::exception for one that cannot be read; may end the process.
ModelFacts FactsOfFile(std::string const& path, double millimetres, bool isModel, TellFraction const& tell = {});

}  // namespace KVR::Certification

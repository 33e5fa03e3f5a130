#pragma once

#include <TDocStd_Document.hxx>
#include <string>

namespace KVR::Bench
{

// What Open CASCADE does with a model by itself.

/// A STEP file as its own reader has it, with all that it can read. Throws std::runtime_error when it cannot be read.
Handle(TDocStd_Document) ReadStep(std::string const& path);

/// Meshes the bodies as it does when asked for nothing else: in one thread, as finely as an import does.
void MeshBodies(Handle(TDocStd_Document) const& document);

}  // namespace KVR::Bench

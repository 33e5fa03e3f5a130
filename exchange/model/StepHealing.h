#pragma once

#include <Message_ProgressRange.hxx>

class STEPControl_Reader;

namespace KVR
{

/// Transfers all roots of the model that `reader` has read, with the outcome of its own TransferRoots(), but mends the
/// bodies (the most of that work) on all processors, where the reader does one after the other. Bodies that share
/// faces, edges or vertices are mended in their order on one thread. What the reader transfers afterwards finds its
/// bodies done.
///
/// False where the same outcome is not certain, as with shapes that were transformed before they were mended: a new
/// reader has to begin again. Throws what Open CASCADE throws.
bool TransferInParallel(STEPControl_Reader& reader, Message_ProgressRange const& progress);

}  // namespace KVR

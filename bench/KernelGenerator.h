#pragma once

#include <string>

namespace KVR::Bench
{

/// A kernel store, and the same shapes as Open CASCADE's own file, which is not written when its path is empty.
struct KernelStoreFiles
{
    std::string store;
    std::string shapes;
    /// Both as text, too.
    bool isText = false;
};

/// Writes so many blocks with rounded edges, "body0" and so on, as a store, each with data ids at six faces. The
/// same count gives the same bytes. Throws std::runtime_error when a file cannot be written.
void WriteKernelStore(KernelStoreFiles const& files, unsigned bodies);

}  // namespace KVR::Bench

// A mesh store of any content, in the layout that "MeshInfo" names.

#include "fuzz/StoreRun.h"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    return KVR::Fuzz::RunMeshStore(data, size, false);
}

// A segment store of any content, beside a mesh store with three small meshes.

#include "fuzz/StoreRun.h"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    return KVR::Fuzz::RunSegmentStore(data, size);
}

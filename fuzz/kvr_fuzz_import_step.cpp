// The import of a file of any content in STEP as a whole: a scene, or one sentence.

#include "fuzz/ImportRun.h"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    return KVR::Fuzz::RunImport(data, size, KVR::ModelFormat::kStep, "model.stp");
}

// A file of material assets of any content.

#include <cstdlib>
#include <map>

#include "framework/api/VitreolSerializedAsset.h"
#include "framework/xml_util/VitreolBlobExternalFileReader.h"
#include "fuzz/InputFile.h"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    static KVR::Fuzz::InputFile const file("scene.assets");
    file.Write(data, size);
    std::map<KVR::UTF8String, KVR::VitreolSerializedAsset*> assets;
    KVR::VitreolBlobExternalFileReader reader(file.Path());
    static_cast<void>(reader.LoadVitreolFromExternalFile(assets));
    unsigned long long held = 0;
    for (auto const& [id, asset] : assets)
    {
        held += asset->Size();
        delete asset;
    }
    // Assets cannot hold more than the file does.
    if (held > size)
        std::abort();
    return 0;
}

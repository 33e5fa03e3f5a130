// A file of sub-object persistent ids of any content.

#include <map>

#include "framework/xml_util/SubObjectPersistentIdReader.h"
#include "fuzz/InputFile.h"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    static KVR::Fuzz::InputFile const file("scene.ids");
    file.Write(data, size);
    std::map<KVR::UTF8String, KVR::EditableDataIdToPersistentIdMap*> maps;
    KVR::SubObjectPersistentIdReader reader;
    static_cast<void>(reader.LoadSubObjectPersistentIds(file.Path(), maps));
    for (auto const& [id, map] : maps)
        delete map;
    return 0;
}

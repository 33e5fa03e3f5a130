// A property file of any content.

#include "framework/api/IProperty.h"
#include "framework/xml_util/PropertyReader.h"
#include "fuzz/InputFile.h"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    static KVR::Fuzz::InputFile const file("scene.kvrproperty");
    file.Write(data, size);
    KVR::PropertyReader const reader(file.Path());
    for (unsigned long long i = 0; i <= reader.PropertyCount(); ++i)
    {
        KVR::IProperty* property = nullptr;
        KVR::UTF8String objectId;
        if (reader.PropertyAndObjectIdAt(i, property, objectId))
            static_cast<void>(property->Name());
    }
    return 0;
}

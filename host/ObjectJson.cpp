#include "host/ObjectJson.h"

#include "output/JsonWriter.h"

namespace KVR
{

void WriteIdentity(JsonWriter& json, std::string_view kind, std::string_view label, std::string_view id)
{
    json.Key("Kind");
    json.String(kind);
    json.Key("Label");
    json.String(label);
    json.Key("Id");
    json.String(id);
}

}  // namespace KVR

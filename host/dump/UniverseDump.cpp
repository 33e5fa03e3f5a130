#include "host/dump/UniverseDump.h"

#include "framework/api/Color.h"
#include "framework/api/IUniverse.h"
#include "framework/api/UTF8String.h"
#include "framework/api/Variant.h"
#include "framework/api/ViewingData.h"
#include "host/dump/Members.h"

namespace KVR
{

namespace
{

void DumpCustomData(JsonWriter& json, IUniverse const& universe, unsigned long long index)
{
    UTF8String key;
    Variant value;
    auto const answer = Ask([&] { return universe.CustomDataAt(index, key, value); });
    if (!answer)
        return json.Null();
    json.BeginObject();
    json.Key("Key");
    WriteValue(json, key);
    json.Key("Value");
    if (*answer == kIsValueSpecified_Yes)
        WriteValue(json, value);
    else
        json.Null();
    json.EndObject();
}

}  // namespace

void DumpUniverse(JsonWriter& json, IUniverse const& universe)
{
    json.BeginObject();
    json.Key("Class");
    json.String("IUniverse");
    Members(json, universe)
        .Optional("DefaultCurveColor", &IUniverse::DefaultCurveColor)
        .Optional("DefaultSurfaceColor", &IUniverse::DefaultSurfaceColor)
        .Optional("ViewingDataOf", &IUniverse::ViewingDataOf)
        .List("CustomData", &IUniverse::CustomDataCount,
              [&](unsigned long long i) { DumpCustomData(json, universe, i); });
    json.EndObject();
}

}  // namespace KVR

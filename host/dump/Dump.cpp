#include "host/dump/Dump.h"

#include <vector>

#include "describe/Dump.h"
#include "describe/JsonAnswers.h"
#include "exchange/source/SceneReading.h"
#include "host/dump/DumpOptions.h"
#include "output/JsonWriter.h"

namespace KVR
{

namespace
{

void WriteFailure(JsonWriter& json, Failure const& failure)
{
    json.BeginObject();
    json.Key("Type");
    json.String(failure.type);
    auto const text = [&](std::string_view name, std::optional<std::string> const& value)
    {
        if (value)
        {
            json.Key(name);
            json.String(*value);
        }
    };
    auto const number = [&](std::string_view name, std::optional<int> const& value)
    {
        if (value)
        {
            json.Key(name);
            json.Integer(*value);
        }
    };
    text("Message", failure.message);
    text("FileName", failure.fileName);
    number("ErrorCode", failure.errorCode);
    number("Reporter", failure.reporter);
    json.EndObject();
}

}  // namespace

void WriteDump(IProducer& producer, SceneReading const& reading, DumpOptions const& options, Output& out)
{
    JsonWriter json(out);
    json.BeginObject();
    json.Key("QueryFile");
    WriteQueryDump(json, reading.query);
    json.Key("RootObjectId");
    WriteValue(json, reading.rootId);
    json.Key("Error");
    if (reading.failure)
        WriteFailure(json, *reading.failure);
    else if (reading.rootFailure)
        WriteFailure(json, *reading.rootFailure);
    else
        json.Null();
    json.Key("Events");
    json.BeginList();
    for (Failure const& event : reading.events)
        WriteFailure(json, event);
    json.EndList();
    std::vector<UTF8String> ids;
    if (reading.rootId)
        ids.push_back(*reading.rootId);
    for (std::string const& id : options.ids)
        ids.emplace_back(id.c_str());
    WriteSceneDump(json, producer, ids, {options.extensionTypeIds, options.summary, options.mass});
    json.EndObject();
    json.EndDocument();
}

}  // namespace KVR

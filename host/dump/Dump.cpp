#include "host/dump/Dump.h"

#include <deque>
#include <unordered_set>
#include <vector>

#include "exchange/source/SceneReading.h"
#include "framework/api/FileProperties.h"
#include "framework/api/IObject.h"
#include "framework/api/IProducer.h"
#include "framework/api/IUniverse.h"
#include "host/dump/DumpContext.h"
#include "host/dump/DumpOptions.h"
#include "host/dump/Members.h"
#include "host/dump/ObjectDump.h"
#include "host/dump/References.h"
#include "host/dump/UniverseDump.h"
#include "output/JsonWriter.h"

namespace KVR
{

namespace
{

void WriteQuery(JsonWriter& json, FileQueryResult const* query)
{
    if (!query)
        return json.Null();
    json.BeginObject();
    Members(json, *query)
        .Optional("SupportsFile", &FileQueryResult::SupportsFile)
        .Optional("HasAssemblyStructure", &FileQueryResult::HasAssemblyStructure);
    json.EndObject();
}

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

// The walk over the objects: each id once, in the order in which it was reached.
class Walk
{
public:
    Walk(IProducer& producer, DumpContext const& context) : m_producer(producer), m_context(context) {}

    void From(UTF8String const& id)
    {
        Reach(id);
        std::vector<UTF8String> references;
        for (; !m_queue.empty(); m_queue.pop_front())
        {
            UTF8String const current = m_queue.front();
            IObject* const object = m_producer.Load(current);
            m_context.json.Key(current.View());
            if (!object)
            {
                m_context.json.Null();
                continue;
            }
            DumpAnyObject(m_context, *object);
            references.clear();
            CollectReferences(*object, references);
            for (UTF8String const& reference : references)
                Reach(reference);
        }
    }

private:
    void Reach(UTF8String const& id)
    {
        if (m_reached.insert(id).second)
            m_queue.push_back(id);
    }

    IProducer& m_producer;
    DumpContext const& m_context;
    std::unordered_set<UTF8String> m_reached;
    std::deque<UTF8String> m_queue;
};

}  // namespace

void WriteDump(IProducer& producer, SceneReading const& reading, DumpOptions const& options, Output& out)
{
    JsonWriter json(out);
    IUniverse const* const universe = Ask([&] { return producer.LoadUniverse(); }).value_or(nullptr);
    DumpContext const context{json, options, universe ? universe->PropertyDatabaseOf() : nullptr};
    json.BeginObject();
    json.Key("QueryFile");
    WriteQuery(json, reading.query);
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
    json.Key("Universe");
    if (universe)
        DumpUniverse(json, *universe);
    else
        json.Null();
    json.Key("Objects");
    json.BeginObject();
    Walk walk(producer, context);
    if (reading.rootId)
        walk.From(*reading.rootId);
    for (std::string const& id : options.ids)
        walk.From(UTF8String(id.c_str()));
    json.EndObject();
    json.EndObject();
    json.EndDocument();
}

}  // namespace KVR

#include "describe/Dump.h"

#include "describe/Ask.h"
#include "describe/JsonAnswers.h"
#include "describe/ReferenceWalk.h"
#include "framework/api/FileProperties.h"
#include "framework/api/IProducer.h"
#include "framework/api/IUniverse.h"

namespace KVR
{

void WriteQueryDump(JsonWriter& json, FileQueryResult const* query)
{
    WriteValue(json, query);
}

void WriteSceneDump(JsonWriter& json, IProducer& producer, std::span<UTF8String const> ids,
                    SceneDumpOptions const& options)
{
    using Extent = JsonAnswers::Extent;
    Extent const summary = options.mass ? Extent::kSummaryWithMass : Extent::kSummary;
    JsonAnswers answers(json, options.summary ? summary : Extent::kAll);
    IUniverse const* const universe = Ask([&] { return producer.LoadUniverse(); }).value_or(nullptr);
    Telling const telling{.to = answers,
                          .properties = universe ? universe->PropertyDatabaseOf() : nullptr,
                          .extensionTypeIds = options.extensionTypeIds};
    json.Key("Universe");
    Tell(telling, universe);
    json.Key("Objects");
    json.BeginObject();
    ReferenceWalk walk(producer);
    for (UTF8String const& id : ids)
    {
        walk.Reach(id);
        while (walk.Next())
        {
            json.Key(walk.Id().View());
            DescribedObject const described = walk.Object() ? DescribedObject::Of(*walk.Object()) : DescribedObject{};
            if (described.interface)
                TellObject(*described.interface, described.object, telling);
            else
                json.Null();
        }
    }
    json.EndObject();
}

}  // namespace KVR

#include "host/stats/StatsNames.h"
#include "host/stats/StatsOutput.h"
#include "inspect/statistics/OccurrenceStatistics.h"
#include "output/JsonWriter.h"
#include "output/Output.h"
#include "scene/Scene.h"

namespace KVR
{

namespace
{

using Layout = JsonWriter::Layout;

// The members of an object.
void PutAmount(JsonWriter& json, SceneStatistics::Amount const& amount)
{
    auto const count = [&](char const* key, unsigned long long value)
    {
        json.Key(key);
        json.Unsigned(value);
    };
    auto const number = [&](char const* key, double value)
    {
        json.Key(key);
        json.Number(value);
    };
    count("Bodies", amount.bodies);
    count("Meshes", amount.meshes);
    count("Faces", amount.faces);
    count("Triangles", amount.triangles);
    count("Vertices", amount.vertices);
    number("Bytes", amount.bytes);
    number("Seconds", amount.seconds);
    number("MemoryBytes", amount.memory);
}

void PutAmount(JsonWriter& json, char const* key, SceneStatistics::Amount const& amount)
{
    json.Key(key);
    json.BeginObject(Layout::Row);
    PutAmount(json, amount);
    json.EndObject();
}

void PutComponents(JsonWriter& json, ShownStatistics const& shown)
{
    json.Key("Components");
    json.BeginList();
    for (SceneStatistics::Component const& component : shown.statistics.components)
    {
        json.BeginObject(Layout::Row);
        json.Key("Name");
        json.String(NameOf(shown.scene.Components()[component.index]));
        json.Key("Id");
        json.String(shown.scene.Components()[component.index].id);
        json.Key("Occurrences");
        json.Unsigned(component.occurrences);
        PutAmount(json, component.own);
        json.EndObject();
    }
    json.EndList();
}

void PutOccurrences(JsonWriter& json, ShownStatistics const& shown)
{
    OccurrenceStatistics const& occurrences = shown.occurrences;
    json.Key("LargestOccurrences");
    json.BeginList();
    for (OccurrenceStatistics::Occurrence const& occurrence : occurrences.Largest())
    {
        json.BeginObject(Layout::Row);
        json.Key("Path");
        json.String(occurrences.PathOf(occurrence));
        json.Key("Component");
        json.String(shown.scene.Components()[occurrence.component].id);
        json.Key("Occurrences");
        json.Unsigned(occurrences.CountOf(occurrence));
        PutAmount(json, occurrences.AmountOf(occurrence));
        json.EndObject();
    }
    json.EndList();
    json.Key("OccurrencesWithGeometry");
    json.Unsigned(occurrences.Count());
}

void PutDuplicates(JsonWriter& json, ShownStatistics const& shown)
{
    json.Key("Duplicates");
    json.BeginList();
    for (SceneStatistics::Duplicates const& entry : shown.statistics.duplicates)
    {
        json.BeginObject();
        json.Key("Kind");
        json.String(entry.saved.meshes > 0 ? "mesh" : "body");
        json.Key("AreMoved");
        json.Bool(entry.twins.areMoved);
        json.Key("Members");
        json.BeginList();
        for (GeometryTwins::Member const& member : entry.twins.members)
        {
            json.BeginObject(Layout::Row);
            json.Key("Id");
            json.String(IdOf(member));
            json.Key("Component");
            json.String(shown.scene.Components()[member.component].id);
            json.EndObject();
        }
        json.EndList();
        PutAmount(json, "Saved", entry.saved);
        json.EndObject();
    }
    json.EndList();
}

}  // namespace

void WriteStatsAsJson(ShownStatistics const& shown, Output& out)
{
    JsonWriter json(out);
    json.BeginObject();
    PutComponents(json, shown);
    PutOccurrences(json, shown);
    PutDuplicates(json, shown);
    PutAmount(json, "All", shown.statistics.all);
    PutAmount(json, "Occurring", shown.statistics.occurring);
    PutAmount(json, "Saved", shown.statistics.saved);
    json.Key("Occurrences");
    json.Unsigned(shown.statistics.occurrences);
    json.Key("Seconds");
    json.Number(shown.statistics.seconds);
    json.EndObject();
    json.EndDocument();
}

}  // namespace KVR

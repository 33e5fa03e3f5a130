#include "host/diff/ComparisonOutput.h"
#include "inspect/Compare.h"
#include "output/JsonWriter.h"

namespace KVR
{

namespace
{

void PutText(JsonWriter& json, char const* key, std::string_view text)
{
    json.Key(key);
    json.String(text);
}

void PutNumber(JsonWriter& json, char const* key, std::optional<double> const& number)
{
    json.Key(key);
    if (number)
        json.Number(*number);
    else
        json.Null();
}

void PutPlace(JsonWriter& json, char const* key, std::vector<std::string> const& ids)
{
    json.Key(key);
    json.BeginList(JsonWriter::Layout::Row);
    for (std::string const& id : ids)
        json.String(id);
    json.EndList();
}

void PutChange(JsonWriter& json, SceneChange const& change)
{
    json.BeginObject();
    PutText(json, "Kind", TextOf(change.kind));
    PutText(json, "Path", change.path);
    PutText(json, "Class", change.className);
    PutText(json, "FirstId", change.firstId);
    PutText(json, "SecondId", change.secondId);
    PutPlace(json, "FirstPlace", change.firstPlace);
    PutPlace(json, "SecondPlace", change.secondPlace);
    json.Key("Occurrences");
    json.Unsigned(change.occurrences);
    PutText(json, "What", change.what);
    PutText(json, "First", change.first);
    PutText(json, "Second", change.second);
    PutNumber(json, "DistanceInMetres", change.distance);
    PutNumber(json, "AngleInRadians", change.angle);
    json.EndObject();
}

}  // namespace

void WriteComparisonAsJson(SceneComparison const& comparison, std::string const& first, std::string const& second,
                           Output& out)
{
    JsonWriter json(out);
    json.BeginObject();
    PutText(json, "First", first);
    PutText(json, "Second", second);
    json.Key("Same");
    json.Bool(comparison.changes.empty());
    json.Key("FirstOccurrences");
    json.Unsigned(comparison.firstOccurrences);
    json.Key("SecondOccurrences");
    json.Unsigned(comparison.secondOccurrences);
    json.Key("Matched");
    json.BeginObject();
    for (MatchKind const kind : {MatchKind::kId, MatchKind::kPersistentId, MatchKind::kName, MatchKind::kGeometry})
    {
        json.Key(TextOf(kind));
        json.Unsigned(comparison.matched[static_cast<std::size_t>(kind)]);
    }
    json.EndObject();
    json.Key("Changes");
    json.BeginList();
    for (SceneChange const& change : comparison.changes)
        PutChange(json, change);
    json.EndList();
    json.EndObject();
    json.EndDocument();
}

}  // namespace KVR

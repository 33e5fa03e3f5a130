#include <fmt/format.h>

#include <filesystem>
#include <string>

#include "host/check/CheckedScene.h"
#include "host/check/JsonFindings.h"
#include "output/JsonWriter.h"

namespace KVR
{

namespace
{

using Layout = JsonWriter::Layout;

// Behind a path as a URI: relative where the path is.
std::string UriOf(std::string const& path)
{
    std::string uri = std::filesystem::path(path).is_absolute() ? "file://" : "";
    for (char const c : path)
    {
        bool const isPlain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
                             std::string_view("-._~/").find(c) != std::string_view::npos;
        if (isPlain)
            uri += c;
        else
            uri += fmt::format("%{:02X}", static_cast<unsigned>(static_cast<unsigned char>(c)));
    }
    return uri;
}

void WriteMessage(JsonWriter& json, std::string_view key, std::string const& text)
{
    json.Key(key);
    json.BeginObject(Layout::Row);
    json.Key("text");
    json.String(text);
    json.EndObject();
}

void WriteFile(JsonWriter& json, std::string const& path)
{
    json.Key("artifactLocation");
    json.BeginObject(Layout::Row);
    json.Key("uri");
    json.String(UriOf(path));
    json.EndObject();
}

void WriteBytes(JsonWriter& json, std::uint64_t begin, std::uint64_t end)
{
    json.Key("byteOffset");
    json.Unsigned(begin);
    json.Key("byteLength");
    json.Unsigned(end - begin);
}

void WriteLocation(JsonWriter& json, Finding const& finding)
{
    json.BeginObject();
    json.Key("physicalLocation");
    json.BeginObject();
    WriteFile(json, finding.file);
    if (finding.line > 0 || finding.end > finding.begin)
    {
        json.Key("region");
        json.BeginObject(Layout::Row);
        if (finding.line > 0)
        {
            json.Key("startLine");
            json.Unsigned(finding.line);
            json.Key("startColumn");
            json.Unsigned(finding.column > 0 ? finding.column : 1);
        }
        else
            WriteBytes(json, finding.begin, finding.end);
        json.EndObject();
    }
    json.EndObject();
    if (!finding.path.empty() || !finding.objectId.empty())
    {
        json.Key("logicalLocations");
        json.BeginList(Layout::Row);
        json.BeginObject();
        json.Key("name");
        json.String(finding.objectId);
        json.Key("fullyQualifiedName");
        json.String(finding.path);
        json.EndObject();
        json.EndList();
    }
    json.EndObject();
}

void WriteFix(JsonWriter& json, Finding const& finding)
{
    json.Key("fixes");
    json.BeginList();
    json.BeginObject();
    json.Key("artifactChanges");
    json.BeginList();
    json.BeginObject();
    WriteFile(json, finding.file);
    json.Key("replacements");
    json.BeginList();
    for (Edit const& edit : finding.fix)
    {
        json.BeginObject(Layout::Row);
        json.Key("deletedRegion");
        json.BeginObject();
        WriteBytes(json, edit.begin, edit.end);
        json.EndObject();
        WriteMessage(json, "insertedContent", edit.text);
        json.EndObject();
    }
    json.EndList();
    json.EndObject();
    json.EndList();
    json.EndObject();
    json.EndList();
}

void WriteRules(JsonWriter& json)
{
    json.Key("rules");
    json.BeginList();
    for (Rule const& rule : AllRules())
    {
        json.BeginObject();
        json.Key("id");
        json.String(rule.id);
        json.Key("name");
        json.String(rule.name);
        WriteMessage(json, "shortDescription", std::string(rule.sentence) + '.');
        json.Key("defaultConfiguration");
        json.BeginObject(Layout::Row);
        json.Key("level");
        json.String(TextOf(rule.severity));
        json.EndObject();
        json.EndObject();
    }
    json.EndList();
}

void WriteResult(JsonWriter& json, Finding const& finding)
{
    json.BeginObject();
    json.Key("ruleId");
    json.String(finding.rule->id);
    json.Key("ruleIndex");
    json.Integer(FindRule(finding.rule->id) - AllRules().data());
    json.Key("level");
    json.String(TextOf(finding.rule->severity));
    WriteMessage(json, "message", MessageOf(finding));
    json.Key("locations");
    json.BeginList();
    WriteLocation(json, finding);
    json.EndList();
    json.Key("partialFingerprints");
    json.BeginObject(Layout::Row);
    json.Key("kvr/v1");
    json.String(FingerprintOf(finding));
    json.EndObject();
    if (!finding.fix.empty())
        WriteFix(json, finding);
    json.EndObject();
}

}  // namespace

void WriteFindingsAsSarif(std::span<CheckedScene const> scenes, Output& out)
{
    JsonWriter json(out);
    json.BeginObject();
    json.Key("$schema");
    json.String("https://json.schemastore.org/sarif-2.1.0.json");
    json.Key("version");
    json.String("2.1.0");
    json.Key("runs");
    json.BeginList();
    json.BeginObject();
    json.Key("tool");
    json.BeginObject();
    json.Key("driver");
    json.BeginObject();
    json.Key("name");
    json.String("kvr check");
    json.Key("version");
    json.String(KVR_VERSION);
    WriteRules(json);
    json.EndObject();
    json.EndObject();
    json.Key("columnKind");
    json.String("unicodeCodePoints");
    json.Key("results");
    json.BeginList();
    for (CheckedScene const& scene : scenes)
        for (Finding const& finding : scene.result.findings)
            WriteResult(json, finding);
    json.EndList();
    json.EndObject();
    json.EndList();
    json.EndObject();
    json.EndDocument();
}

}  // namespace KVR

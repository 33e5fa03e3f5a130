#include "host/check/JsonFindings.h"

#include "host/check/CheckedScene.h"
#include "output/JsonWriter.h"

namespace KVR
{

namespace
{

void WriteText(JsonWriter& json, std::string_view key, std::string_view text)
{
    json.Key(key);
    if (text.empty())
        json.Null();
    else
        json.String(text);
}

// 0 stands for none.
void WritePlace(JsonWriter& json, std::string_view key, std::uint64_t place, bool isKnown)
{
    json.Key(key);
    if (isKnown)
        json.Unsigned(place);
    else
        json.Null();
}

void WriteFix(JsonWriter& json, std::vector<Edit> const& edits)
{
    json.BeginList(JsonWriter::Layout::Row);
    for (Edit const& edit : edits)
    {
        json.BeginObject();
        json.Key("Begin");
        json.Unsigned(edit.begin);
        json.Key("End");
        json.Unsigned(edit.end);
        json.Key("Text");
        json.String(edit.text);
        json.EndObject();
    }
    json.EndList();
}

void WriteFinding(JsonWriter& json, Finding const& finding)
{
    json.BeginObject();
    json.Key("Rule");
    json.String(finding.rule->id);
    json.Key("Severity");
    json.String(TextOf(finding.rule->severity));
    json.Key("File");
    json.String(finding.file);
    WritePlace(json, "Line", finding.line, finding.line > 0);
    WritePlace(json, "Column", finding.column, finding.line > 0);
    WritePlace(json, "Begin", finding.begin, finding.end > 0);
    WritePlace(json, "End", finding.end, finding.end > 0);
    WriteText(json, "ObjectId", finding.objectId);
    WriteText(json, "Path", finding.path);
    WriteText(json, "Found", finding.found);
    WriteText(json, "ReadAs", finding.readAs);
    WriteText(json, "Meant", finding.meant);
    json.Key("Reasons");
    json.BeginList(JsonWriter::Layout::Row);
    for (std::string const& reason : finding.reasons)
        json.String(reason);
    json.EndList();
    json.Key("Fix");
    WriteFix(json, finding.fix);
    json.Key("Fingerprint");
    json.String(FingerprintOf(finding));
    json.EndObject();
}

void WriteAccount(JsonWriter& json, Account const& account)
{
    json.BeginObject();
    json.Key("File");
    json.String(account.file);
    json.Key("What");
    json.String(account.what);
    json.Key("Seen");
    json.Unsigned(account.seen);
    json.Key("Served");
    json.Unsigned(account.served);
    json.Key("Defaulted");
    json.Unsigned(account.defaulted);
    json.Key("Dropped");
    json.BeginObject(JsonWriter::Layout::Row);
    for (auto const& [rule, count] : account.dropped)
    {
        json.Key(rule->id);
        json.Unsigned(count);
    }
    json.EndObject();
    json.Key("Unread");
    json.Unsigned(account.unread);
    json.Key("Agrees");
    json.Bool(account.Agrees());
    json.EndObject();
}

void WriteScene(JsonWriter& json, CheckedScene const& scene)
{
    std::array<std::size_t, 3> const counts = scene.Counts();
    json.BeginObject();
    json.Key("File");
    json.String(scene.path);
    json.Key("Errors");
    json.Unsigned(counts.at(static_cast<std::size_t>(Severity::kError)));
    json.Key("Warnings");
    json.Unsigned(counts.at(static_cast<std::size_t>(Severity::kWarning)));
    json.Key("Notes");
    json.Unsigned(counts.at(static_cast<std::size_t>(Severity::kNote)));
    json.Key("Known");
    json.Unsigned(scene.known);
    json.Key("Findings");
    json.BeginList();
    for (Finding const& finding : scene.result.findings)
        WriteFinding(json, finding);
    json.EndList();
    json.Key("Accounts");
    json.BeginList();
    for (Account const& account : scene.result.accounts)
        WriteAccount(json, account);
    json.EndList();
    json.EndObject();
}

}  // namespace

void WriteFindingsAsJson(std::span<CheckedScene const> scenes, Output& out)
{
    JsonWriter json(out);
    json.BeginObject();
    json.Key("Scenes");
    json.BeginList();
    for (CheckedScene const& scene : scenes)
        WriteScene(json, scene);
    json.EndList();
    json.EndObject();
    json.EndDocument();
}

}  // namespace KVR

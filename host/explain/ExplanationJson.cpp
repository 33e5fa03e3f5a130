#include <string_view>

#include "host/explain/ExplanationOutput.h"
#include "inspect/Explain.h"
#include "output/JsonWriter.h"

namespace KVR
{

namespace
{

// Members of an object, one by one.
class Members
{
public:
    explicit Members(JsonWriter& json) : m_json(json) { m_json.BeginObject(); }
    ~Members() = default;
    Members(Members const&) = delete;
    Members& operator=(Members const&) = delete;

    void Text(std::string_view name, std::string_view text)
    {
        m_json.Key(name);
        m_json.String(text);
    }
    void Number(std::string_view name, std::uint64_t number)
    {
        m_json.Key(name);
        m_json.Unsigned(number);
    }
    void Bool(std::string_view name, bool value)
    {
        m_json.Key(name);
        m_json.Bool(value);
    }
    template <class List, class PutItem>
    void Items(std::string_view name, List const& list, PutItem const& putItem)
    {
        m_json.Key(name);
        m_json.BeginList();
        for (auto const& item : list)
            putItem(item);
        m_json.EndList();
    }
    void End() { m_json.EndObject(); }

private:
    JsonWriter& m_json;
};

void PutRange(Members& members, FileRange const& range)
{
    members.Text("file", range.file);
    members.Number("firstLine", range.firstLine);
    members.Number("lastLine", range.lastLine);
    members.Number("begin", range.begin);
    members.Number("end", range.end);
}

void PutAnswer(JsonWriter& json, ExplainedAnswer const& answer)
{
    Members members(json);
    members.Text("operation", answer.operation);
    members.Text("value", answer.value);
    members.Text("source", TextOf(answer.source));
    if (!answer.from.empty())
    {
        members.Text("from", answer.from);
        members.Text("text", answer.text);
        members.Text("understood", answer.understood);
    }
    members.End();
}

void PutOccurrence(JsonWriter& json, ExplainedOccurrence const& occurrence)
{
    Members members(json);
    members.Text("path", occurrence.path);
    members.Bool("visible", occurrence.isVisible);
    members.Text("visibilityReason", occurrence.visibilityReason);
    members.Text("style", occurrence.style);
    members.Text("styleLabel", occurrence.styleLabel);
    members.Text("styleReason", occurrence.styleReason);
    members.Text("placeReason", occurrence.placeReason);
    members.End();
}

}  // namespace

void WriteExplanationAsJson(Explanation const& explanation, Output& out)
{
    JsonWriter json(out);
    Members members(json);
    members.Text("id", explanation.id);
    members.Text("class", explanation.className);
    members.Text("label", explanation.label);
    json.Key("element");
    Members element(json);
    PutRange(element, explanation.element);
    element.Text("path", explanation.elementPath);
    element.End();
    members.Items("records", explanation.records,
                  [&](ExplainedRecord const& record)
                  {
                      Members item(json);
                      item.Text("kind", record.kind);
                      PutRange(item, record.place);
                      item.End();
                  });
    members.Items("answers", explanation.answers, [&](ExplainedAnswer const& answer) { PutAnswer(json, answer); });
    members.Number("referenceCount", explanation.referenceCount);
    members.Items("references", explanation.references,
                  [&](ExplainedReference const& reference)
                  {
                      Members item(json);
                      item.Text("id", reference.id);
                      item.Text("class", reference.className);
                      item.Items("operations", reference.operations,
                                 [&](std::string const& operation) { json.String(operation); });
                      item.End();
                  });
    members.Number("occurrenceCount", explanation.occurrenceCount);
    members.Items("occurrences", explanation.occurrences,
                  [&](ExplainedOccurrence const& occurrence) { PutOccurrence(json, occurrence); });
    members.End();
    json.EndDocument();
}

}  // namespace KVR

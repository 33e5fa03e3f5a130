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
    members.Text("File", range.file);
    members.Number("FirstLine", range.firstLine);
    members.Number("LastLine", range.lastLine);
    members.Number("Begin", range.begin);
    members.Number("End", range.end);
}

void PutAnswer(JsonWriter& json, ExplainedAnswer const& answer)
{
    Members members(json);
    members.Text("Operation", answer.operation);
    members.Text("Value", answer.value);
    members.Text("Source", TextOf(answer.source));
    if (!answer.from.empty())
    {
        members.Text("From", answer.from);
        members.Text("Text", answer.text);
        members.Text("Understood", answer.understood);
    }
    members.End();
}

void PutOccurrence(JsonWriter& json, ExplainedOccurrence const& occurrence)
{
    Members members(json);
    members.Text("Path", occurrence.path);
    members.Bool("Visible", occurrence.isVisible);
    members.Text("VisibilityReason", occurrence.visibilityReason);
    members.Text("Style", occurrence.style);
    members.Text("StyleLabel", occurrence.styleLabel);
    members.Text("StyleReason", occurrence.styleReason);
    members.Text("PlaceReason", occurrence.placeReason);
    members.End();
}

}  // namespace

void WriteExplanationAsJson(Explanation const& explanation, Output& out)
{
    JsonWriter json(out);
    Members members(json);
    members.Text("Id", explanation.id);
    members.Text("Class", explanation.className);
    members.Text("Label", explanation.label);
    json.Key("Element");
    Members element(json);
    PutRange(element, explanation.element);
    element.Text("Path", explanation.elementPath);
    element.End();
    members.Items("Records", explanation.records,
                  [&](ExplainedRecord const& record)
                  {
                      Members item(json);
                      item.Text("Kind", record.kind);
                      PutRange(item, record.place);
                      item.End();
                  });
    members.Items("Answers", explanation.answers, [&](ExplainedAnswer const& answer) { PutAnswer(json, answer); });
    members.Number("ReferenceCount", explanation.referenceCount);
    members.Items("References", explanation.references,
                  [&](ExplainedReference const& reference)
                  {
                      Members item(json);
                      item.Text("Id", reference.id);
                      item.Text("Class", reference.className);
                      item.Items("Operations", reference.operations,
                                 [&](std::string const& operation) { json.String(operation); });
                      item.End();
                  });
    members.Number("OccurrenceCount", explanation.occurrenceCount);
    members.Items("Occurrences", explanation.occurrences,
                  [&](ExplainedOccurrence const& occurrence) { PutOccurrence(json, occurrence); });
    members.End();
    json.EndDocument();
}

}  // namespace KVR

#include "host/query/QueryOutput.h"

#include <fmt/format.h>

#include <string>
#include <string_view>
#include <utility>
#include <variant>

#include "inspect/query/OccurrenceValues.h"
#include "output/JsonWriter.h"
#include "output/Output.h"
#include "output/SafeText.h"

namespace KVR
{

namespace
{

// The first property of that name; null when there is none.
SceneProperty const* PropertyOf(OccurrenceValues& values, std::string const& name)
{
    for (SceneProperty const& property : values.Properties())
        if (property.name == name)
            return &property;
    return nullptr;
}

// The value of a column as text; empty where there is none.
std::string TextOf(OccurrenceValues& values, QueryColumn const& column)
{
    switch (RowOf(column.field).type)
    {
        case QueryFieldType::kText:
        {
            std::string joined;
            for (std::string_view const text : values.Shown(column.field))
                joined += (joined.empty() ? "" : "; ") + std::string(text);
            return joined;
        }
        case QueryFieldType::kProperty:
        {
            SceneProperty const* const property = PropertyOf(values, column.property);
            return property ? TextOf(*property) : std::string();
        }
        case QueryFieldType::kFlag:
            return values.Flag(column.field) ? "true" : "false";
        default:
        {
            std::optional<double> const number = values.Number(column.field);
            return number ? fmt::format("{:.10g}", *number) : std::string();
        }
    }
}

class TextOutput final : public QueryOutput
{
public:
    TextOutput(std::vector<QueryColumn> columns, Output& out) : m_columns(std::move(columns)), m_out(out) {}

    void Add(OccurrenceValues& values) override
    {
        for (std::size_t i = 0; i < m_columns.size(); ++i)
        {
            if (i > 0)
                m_out.Put('\t');
            PutEscaped(m_out, TextOf(values, m_columns[i]));
        }
        m_out.Put('\n');
    }
    void Finish() override {}

private:
    std::vector<QueryColumn> m_columns;
    Output& m_out;
};

class CsvOutput final : public QueryOutput
{
public:
    CsvOutput(std::vector<QueryColumn> columns, Output& out) : m_columns(std::move(columns)), m_out(out)
    {
        PutLine([](QueryColumn const& column) { return NameOf(column); });
    }

    void Add(OccurrenceValues& values) override
    {
        PutLine([&](QueryColumn const& column) { return TextOf(values, column); });
    }
    void Finish() override {}

private:
    template <class TextOfColumn>
    void PutLine(TextOfColumn const& textOf)
    {
        for (std::size_t i = 0; i < m_columns.size(); ++i)
        {
            if (i > 0)
                m_out.Put(',');
            PutCsv(m_out, textOf(m_columns[i]));
        }
        m_out.Put('\n');
    }

    std::vector<QueryColumn> m_columns;
    Output& m_out;
};

class JsonOutput final : public QueryOutput
{
public:
    JsonOutput(std::vector<QueryColumn> columns, Output& out) : m_columns(std::move(columns)), m_json(out)
    {
        m_json.BeginObject();
        m_json.Key("Occurrences");
        m_json.BeginList();
    }

    void Add(OccurrenceValues& values) override
    {
        m_json.BeginObject(JsonWriter::Layout::Row);
        for (QueryColumn const& column : m_columns)
        {
            m_json.Key(NameOf(column));
            Put(values, column);
        }
        m_json.EndObject();
        ++m_count;
    }

    void Finish() override
    {
        m_json.EndList();
        m_json.Key("Count");
        m_json.Unsigned(m_count);
        m_json.EndObject();
        m_json.EndDocument();
    }

private:
    void Put(OccurrenceValues& values, QueryColumn const& column)
    {
        switch (RowOf(column.field).type)
        {
            case QueryFieldType::kText:
                PutTexts(values.Shown(column.field),
                         column.field == QueryField::kLayer || column.field == QueryField::kColor);
                break;
            case QueryFieldType::kProperty:
                PutProperty(PropertyOf(values, column.property));
                break;
            case QueryFieldType::kFlag:
                m_json.Bool(values.Flag(column.field));
                break;
            default:
                if (std::optional<double> const number = values.Number(column.field))
                    m_json.Number(*number);
                else
                    m_json.Null();
        }
    }

    void PutTexts(std::vector<std::string_view> const& texts, bool isList)
    {
        if (!isList)
        {
            if (texts.empty())
                m_json.Null();
            else
                m_json.String(texts.front());
            return;
        }
        m_json.BeginList(JsonWriter::Layout::Row);
        for (std::string_view const text : texts)
            m_json.String(text);
        m_json.EndList();
    }

    void PutProperty(SceneProperty const* property)
    {
        if (!property || std::holds_alternative<std::monostate>(property->value))
            m_json.Null();
        else if (bool const* const truth = std::get_if<bool>(&property->value))
            m_json.Bool(*truth);
        else if (std::optional<double> const number = NumberOf(*property))
            m_json.Number(*number);
        else
            m_json.String(TextOf(*property));
    }

    std::vector<QueryColumn> m_columns;
    JsonWriter m_json;
    unsigned long long m_count = 0;
};

}  // namespace

std::unique_ptr<QueryOutput> QueryOutput::Of(QueryForm form, std::vector<QueryColumn> columns, Output& out)
{
    if (form == QueryForm::kCsv)
        return std::make_unique<CsvOutput>(std::move(columns), out);
    if (form == QueryForm::kJson)
        return std::make_unique<JsonOutput>(std::move(columns), out);
    return std::make_unique<TextOutput>(std::move(columns), out);
}

std::string NameOf(QueryColumn const& column)
{
    std::string name(RowOf(column.field).name);
    if (column.field != QueryField::kProperty)
        return name;
    std::string text;
    for (char const c : column.property)
        text += c == '"' || c == '\\' ? std::string("\\") + c : std::string(1, c);
    return name + "[\"" + text + "\"]";
}

void PutCsv(Output& out, std::string_view text)
{
    bool const needsMarks = text.find_first_of(",\"\r\n\t; ") != std::string_view::npos;
    if (needsMarks)
        out.Put('"');
    // A quotation mark and a backslash do no harm, and stay readable to programs.
    while (!text.empty())
    {
        std::size_t const end = std::min(text.find_first_of("\"\\"), text.size());
        PutEscaped(out, text.substr(0, end));
        if (end == text.size())
            break;
        out.Put(text[end] == '"' ? std::string_view("\"\"") : std::string_view("\\"));
        text.remove_prefix(end + 1);
    }
    if (needsMarks)
        out.Put('"');
}

}  // namespace KVR

#include "host/query/BillOfMaterials.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <string>
#include <unordered_map>

#include "host/TextValues.h"
#include "inspect/query/QueryRun.h"
#include "output/JsonWriter.h"
#include "output/Output.h"
#include "output/SafeText.h"

namespace KVR
{

namespace
{

std::string MassText(std::optional<double> const& mass, char const* none)
{
    return mass ? fmt::format("{:.10g}", *mass) : std::string(none);
}

std::string Components(unsigned long long count)
{
    return Counted(count, "component", "components");
}

}  // namespace

BillOfMaterials::BillOfMaterials(QueryRun& run)
{
    std::unordered_map<std::size_t, std::size_t> rowOf;
    while (run.Next())
    {
        OccurrenceValues& values = run.Values();
        std::size_t const index = values.Walk().ComponentIndex();
        auto const [place, isNew] = rowOf.emplace(index, m_rows.size());
        if (isNew)
        {
            SceneComponent const& component = values.Walk().Component();
            m_rows.push_back({component.label.empty() ? component.id : component.label, component.id});
            m_rows.back().massOfOne = values.Sizes().MeasuresOf(index).mass;
        }
        Row& row = m_rows[place->second];
        ++row.count;
        ++m_count;
        std::optional<double> const mass = values.Number(QueryField::kMass);
        if (mass)
            row.mass = row.mass.value_or(0.0) + *mass;
    }
    for (Row const& row : m_rows)
    {
        m_mass += row.mass.value_or(0.0);
        m_rowsWithoutMass += row.mass ? 0 : 1;
    }
}

void BillOfMaterials::Write(QueryForm form, Output& out) const
{
    if (form == QueryForm::kJson)
        WriteJson(out);
    else if (form == QueryForm::kCsv)
        WriteCsv(out);
    else
        WriteText(out);
}

void BillOfMaterials::WriteText(Output& out) const
{
    using Line = std::array<std::string, 4>;
    std::vector<Line> lines{{"Count", "Mass (kg)", "All (kg)", "Name"}};
    for (Row const& row : m_rows)
        lines.push_back(
            {std::to_string(row.count), MassText(row.massOfOne, "-"), MassText(row.mass, "-"), Escaped(row.name)});
    std::array<std::size_t, 3> widths{};
    for (Line const& line : lines)
        for (std::size_t i = 0; i < widths.size(); ++i)
            widths[i] = std::max(widths[i], line[i].size());
    for (Line const& line : lines)
    {
        for (std::size_t i = 0; i < widths.size(); ++i)
        {
            out.PutSpaces(widths[i] - line[i].size());
            out.Put(line[i]);
            out.Put("  ");
        }
        out.Put(line.back());
        out.Put('\n');
    }
    std::string last = Components(m_rows.size()) + ", " + Counted(m_count, "occurrence", "occurrences");
    if (m_rowsWithoutMass < m_rows.size())
        last += fmt::format(", {:.10g} kg", m_mass);
    if (m_rowsWithoutMass > 0)
        last += fmt::format("; the mass of {} is not known", Components(m_rowsWithoutMass));
    out.Put(last + "\n");
}

void BillOfMaterials::WriteCsv(Output& out) const
{
    out.Put("name,id,count,mass,mass of all\n");
    for (Row const& row : m_rows)
    {
        PutCsv(out, row.name);
        out.Put(',');
        PutCsv(out, row.id);
        out.Put("," + std::to_string(row.count) + "," + MassText(row.massOfOne, "") + "," + MassText(row.mass, "") +
                "\n");
    }
}

void BillOfMaterials::WriteJson(Output& out) const
{
    JsonWriter json(out);
    auto const put = [&](char const* key, std::optional<double> const& number)
    {
        json.Key(key);
        if (number)
            json.Number(*number);
        else
            json.Null();
    };
    json.BeginObject();
    json.Key("Components");
    json.BeginList();
    for (Row const& row : m_rows)
    {
        json.BeginObject(JsonWriter::Layout::Row);
        json.Key("Name");
        json.String(row.name);
        json.Key("Id");
        json.String(row.id);
        json.Key("Count");
        json.Unsigned(row.count);
        put("Mass", row.massOfOne);
        put("MassOfAll", row.mass);
        json.EndObject();
    }
    json.EndList();
    json.Key("Count");
    json.Unsigned(m_count);
    put("Mass", m_rowsWithoutMass < m_rows.size() ? std::optional(m_mass) : std::nullopt);
    json.Key("WithoutMass");
    json.Unsigned(m_rowsWithoutMass);
    json.EndObject();
    json.EndDocument();
}

}  // namespace KVR

#include "host/QueryCommand.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <limits>

#include "exchange/source/SceneReading.h"
#include "host/CommonOptions.h"
#include "host/QueryArguments.h"
#include "host/query/BillOfMaterials.h"
#include "host/query/QueryOutput.h"
#include "inspect/query/QueryParser.h"
#include "inspect/query/QueryRun.h"
#include "output/Output.h"
#include "scene/Scene.h"

namespace KVR
{

namespace
{

constexpr char kParts[] = "part";
constexpr char kColumnsOfText[] = "path";
constexpr char kColumnsOfTables[] = "path,kind,name,id";

}  // namespace

QueryCommand::QueryCommand(CLI::App& program)
    : SceneCommand(
          program, "query",
          "Show the occurrences that an expression asks for, such as 'part[name~\"M6*\" and box.max<20mm]', by "
          "the paths of their names")
{
    CLI::App& arguments = Arguments();
    arguments.add_option("expression", m_expression, "What to ask for; of --bom all parts unless given")
        ->type_name("EXPRESSION");
    CLI::Option* const count = arguments.add_flag("--count", m_countsOnly, "Print how many they are alone");
    CLI::Option* const csv = arguments.add_flag("--csv", m_asCsv, "Print CSV");
    AddJsonOption(arguments, m_asJson);
    CLI::Option* const columns =
        arguments
            .add_option("--columns", m_columnsText,
                        "What to print of each, with commas between them: path, unless given, name, volume, mass, "
                        "property[\"Name\"] and all else that expressions know")
            ->type_name("COLUMNS");
    CLI::Option* const bill = arguments.add_flag(
        "--bom", m_asBill, "Print a bill of materials: each component with its count, its mass, and that of all of it");
    CLI::Option* const json = arguments.get_option("--json");
    csv->excludes(json)->excludes(count);
    json->excludes(count);
    columns->excludes(count)->excludes(bill);
    bill->excludes(count);
    arguments.final_callback(
        [this]
        {
            if (m_expression.empty() && !m_asBill)
                throw ArgumentError("EXPRESSION is required");
            if (!m_expression.empty())
                ExpectExpression(m_expression);
            if (!m_columnsText.empty())
                ExpectColumns(m_columnsText);
        });
}

std::string QueryCommand::Columns() const
{
    if (!m_columnsText.empty())
        return m_columnsText;
    return m_asCsv || m_asJson ? kColumnsOfTables : kColumnsOfText;
}

StoreNeeds QueryCommand::Needs() const
{
    // Of a bill of materials the masses are asked for.
    QuerySource source = m_asBill ? QuerySource::kStores : QuerySource::kDocument;
    if (!m_expression.empty())
        source = std::max(source, Query(m_expression).Source());
    if (!m_countsOnly)
        for (QueryColumn const& column : ParseQueryColumns(Columns()))
            source = std::max(source, RowOf(column.field).source);
    bool const needsStores = source == QuerySource::kStores;
    return {.geometry = needsStores,
            .segments = needsStores,
            .assets = needsStores,
            .persistentIds = needsStores,
            .properties = source != QuerySource::kDocument};
}

std::string QueryCommand::Show(IProducer& producer, SceneReading const& reading, Output& out)
{
    if (!reading.rootId)
        return OfScene("the scene has no root file, so there is nothing to ask for");
    SceneFilter whole;
    whole.mostLevels = std::numeric_limits<std::size_t>::max();
    KVR::Scene const scene(producer, *reading.rootId, whole);
    if (scene.Root() == kNoIndex)
        return OfScene("the root of the scene is no file, assembly or part, so there is nothing to ask for");
    try
    {
        Query const query(m_expression.empty() ? kParts : m_expression);
        QueryRun run(query, scene);
        QueryForm const form = m_asCsv ? QueryForm::kCsv : m_asJson ? QueryForm::kJson : QueryForm::kText;
        if (m_asBill)
        {
            BillOfMaterials(run).Write(form, out);
            return {};
        }
        if (m_countsOnly)
        {
            unsigned long long count = 0;
            while (run.Next())
                ++count;
            out.Put(std::to_string(count) + "\n");
            return {};
        }
        auto const output = QueryOutput::Of(form, ParseQueryColumns(Columns()), out);
        while (run.Next())
            output->Add(run.Values());
        output->Finish();
        return {};
    }
    catch (QueryError const& error)
    {
        return OfScene(error.what());
    }
}

}  // namespace KVR

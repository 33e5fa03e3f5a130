#include "python/InterfaceTables.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <vector>

#include "describe/Tables.h"

namespace KVR::Python
{

namespace
{

using Json = nlohmann::ordered_json;

char const* NameOf(AnswerType::Kind kind)
{
    constexpr char const* kNames[] = {"bool",  "integer",       "unsigned", "number", "text", "unit",   "time",
                                      "bytes", "propertyValue", "variant",  "list",   "map",  "object", "anyOf"};
    return kNames[static_cast<std::size_t>(kind)];
}

class Collector
{
public:
    void Add(Interface const& table)
    {
        if (std::find(m_seen.begin(), m_seen.end(), &table) != m_seen.end())
            return;
        m_seen.push_back(&table);
        Json bases = Json::array();
        Json rows = Json::array();
        for (Row const& row : table.rows)
        {
            if (row.base)
            {
                Add(*row.base);
                bases.push_back(row.base->name);
            }
            else
            {
                rows.push_back({{"name", row.name}, {"type", TypeJson(*row.type)}, {"inDump", row.isInDump}});
            }
        }
        bool const isObject =
            std::find(std::begin(kObjectTables), std::end(kObjectTables), &table) != std::end(kObjectTables);
        m_tables.push_back({{"name", table.name},
                            {"bases", std::move(bases)},
                            {"isObject", isObject},
                            {"isNamed", table.form == Interface::Form::Named},
                            {"rows", std::move(rows)}});
    }

    std::string Text() const { return m_tables.dump(); }

private:
    Json TypeJson(AnswerType const& type)
    {
        Json json{{"kind", NameOf(type.kind)}, {"canBeNull", type.canBeNull}};
        if (type.length != 0)
            json["length"] = type.length;
        if (type.item)
            json["item"] = TypeJson(*type.item);
        if (type.interface)
        {
            Add(*type.interface);
            json["interface"] = type.interface->name;
        }
        // The kinds of curve data may hold further ones: they are only named here.
        for (Interface const* const alternative : type.alternatives)
            json["alternatives"].push_back(alternative->name);
        return json;
    }

    std::vector<Interface const*> m_seen;
    Json m_tables = Json::array();
};

}  // namespace

std::string InterfaceTablesJson()
{
    Collector collector;
    collector.Add(TableOf<IProducer>::kTable);
    collector.Add(TableOf<FileQueryResult>::kTable);
    collector.Add(TableOf<IUniverse>::kTable);
    collector.Add(TableOf<Blob>::kTable);
    for (Interface const* const table : kCurveDataTables)
        collector.Add(*table);
    for (Interface const* const table : kObjectTables)
        collector.Add(*table);
    return collector.Text();
}

}  // namespace KVR::Python

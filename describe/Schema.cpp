#include "describe/Schema.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <vector>

#include "describe/Tables.h"
#include "framework/api/UnitText.h"

namespace KVR
{

namespace
{

using Json = nlohmann::ordered_json;

// All units have numbers below this.
constexpr int kUnitLimit = 128;
// What is no longer than this stands on one line.
constexpr std::size_t kLineLength = 110;

template <class Use>
void ForEachMember(Interface const& interface, Use const& use)
{
    for (Row const& row : interface.rows)
    {
        if (row.base)
            ForEachMember(*row.base, use);
        else if (row.isInDump)
            use(row);
    }
}

Json TypeJson(char const* name, bool orNull)
{
    return {{"type", orNull ? Json({name, "null"}) : Json(name)}};
}

Json Reference(std::string_view name)
{
    return {{"$ref", "#/$defs/" + std::string(name)}};
}

Json Reference(std::string_view name, bool orNull)
{
    if (!orNull)
        return Reference(name);
    return {{"anyOf", Json::array({Reference(name), TypeJson("null", false)})}};
}

// An object of just these members, of which those of `required` always stand there.
Json ObjectJson(Json properties, Json required)
{
    return {{"type", "object"},
            {"properties", std::move(properties)},
            {"required", std::move(required)},
            {"additionalProperties", false}};
}

std::string_view Comment(Refers refers)
{
    switch (refers)
    {
        case Refers::Nothing:
            return {};
        case Refers::Child:
            return "ids of objects that belong to this one";
        case Refers::Object:
            return "the id of an object";
        case Refers::Set:
            return "ids of objects";
        case Refers::SetOfEach:
            return "ids of objects, in each item";
        case Refers::Elsewhere:
            return "ids of objects, which are reached from others";
    }
    return {};
}

Json FailureJson()
{
    return ObjectJson({{"Type", {{"enum", {"FileException", "GeneralException", "StandardException"}}}},
                       {"Message", TypeJson("string", false)},
                       {"FileName", TypeJson("string", false)},
                       {"ErrorCode", TypeJson("integer", false)},
                       {"Reporter", TypeJson("integer", false)}},
                      Json::array({"Type"}));
}

Json UnitJson()
{
    Json names = Json::array();
    for (int unit = 0; unit < kUnitLimit; ++unit)
    {
        if (char const* const text = TextOfUnit(static_cast<UnitTypeEnum>(unit)))
            names.push_back(text);
    }
    return {{"enum", std::move(names)}};
}

// Makes the schema, and remembers which tables it has named.
class SchemaMaker
{
public:
    Json Make()
    {
        Json schema = {{"$schema", "https://json-schema.org/draft/2020-12/schema"}, {"title", "What kvr dump prints"}};
        Json properties = {
            {"QueryFile", Reference(NameOf(TableOf<FileQueryResult>::kTable), true)},
            {"RootObjectId", TypeJson("string", true)},
            {"Error", Reference("Failure", true)},
            {"Events", {{"type", "array"}, {"items", Reference("Failure")}}},
            {"Universe", Reference(NameOf(TableOf<IUniverse>::kTable), true)},
            {"Objects",
             {{"description", "By id, in the order in which they were reached; null for an id without an object."},
              {"type", "object"},
              {"additionalProperties", ByClass(kObjectTables, true)}}},
        };
        Json required = Json::array();
        for (auto const& member : properties.items())
            required.push_back(member.key());
        schema.update(ObjectJson(std::move(properties), std::move(required)));
        Json definitions = {
            {"Failure", FailureJson()},
            {"Unit", UnitJson()},
            {"Number", {{"description", "null for what JSON cannot hold"}, {"type", {"number", "null"}}}},
            {"CurveData", ByClass(kCurveDataTables, false)},
        };
        // Each definition may name further ones.
        for (std::size_t i = 0; i < m_tables.size(); ++i)
            definitions[std::string(m_tables[i]->name)] = Definition(*m_tables[i]);
        schema["$defs"] = std::move(definitions);
        return schema;
    }

private:
    std::string_view NameOf(Interface const& table)
    {
        if (std::find(m_tables.begin(), m_tables.end(), &table) == m_tables.end())
            m_tables.push_back(&table);
        return table.name;
    }

    // One of several tables, by the member that says the class, so that a reader hears of the one that was meant.
    Json ByClass(std::span<Interface const* const> tables, bool orNull)
    {
        Json names = Json::array();
        Json choices = Json::array();
        for (Interface const* const table : tables)
        {
            names.push_back(table->name);
            Json const isOfClass = {{"required", Json::array({"Class"})},
                                    {"properties", {{"Class", {{"const", table->name}}}}}};
            choices.push_back({{"if", {{"type", "object"}, {"allOf", Json::array({isOfClass})}}},
                               {"then", Reference(NameOf(*table))}});
        }
        Json json = TypeJson("object", orNull);
        json["required"] = Json::array({"Class"});
        json["properties"] = {{"Class", {{"enum", std::move(names)}}}};
        json["allOf"] = std::move(choices);
        return json;
    }

    Json Definition(Interface const& table)
    {
        Json properties = Json::object();
        Json required = Json::array();
        if (table.form == Interface::Form::Named)
        {
            properties["Class"] = {{"const", table.name}};
            required.push_back("Class");
        }
        ForEachMember(table,
                      [&](Row const& row)
                      {
                          Json member = Type(*row.type);
                          if (std::string_view const comment = Comment(row.refers); !comment.empty())
                              member["description"] = comment;
                          properties[std::string(row.name)] = std::move(member);
                          if (!row.isLong && !row.isMass)
                              required.push_back(row.name);
                      });
        return ObjectJson(std::move(properties), std::move(required));
    }

    Json Type(AnswerType const& type)
    {
        using Kind = AnswerType::Kind;
        switch (type.kind)
        {
            case Kind::Bool:
                return TypeJson("boolean", type.canBeNull);
            case Kind::Integer:
            case Kind::Unsigned:
                return TypeJson("integer", type.canBeNull);
            case Kind::Number:
                return Reference("Number");
            case Kind::Text:
            case Kind::Bytes:
                return TypeJson("string", type.canBeNull);
            case Kind::Unit:
                return Reference("Unit", type.canBeNull);
            case Kind::Time:
            {
                Json json = TypeJson("string", type.canBeNull);
                json["pattern"] = "^-?\\d{4,}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d$";
                return json;
            }
            case Kind::PropertyValue:
                return {{"type", {"string", "number", "boolean", "null"}}};
            case Kind::Variant:
                return {{"anyOf", Json::array({{{"type", "array"}, {"items", TypeJson("string", false)}},
                                               Reference(NameOf(TableOf<Blob>::kTable)),
                                               TypeJson("string", true)})}};
            case Kind::List:
                return List(type);
            case Kind::Map:
            {
                Json json = TypeJson("object", type.canBeNull);
                json["additionalProperties"] = Type(*type.item);
                return json;
            }
            case Kind::Object:
                return Reference(NameOf(*type.interface), type.canBeNull);
            case Kind::AnyOf:
                return Reference("CurveData", type.canBeNull);
        }
        return {};
    }

    Json List(AnswerType const& type)
    {
        Json json = TypeJson("array", type.canBeNull);
        json["items"] = Type(*type.item);
        if (type.length != 0)
        {
            json["minItems"] = type.length;
            json["maxItems"] = type.length;
        }
        return json;
    }

    std::vector<Interface const*> m_tables;
};

// Scalars, as many on a line as it takes.
void PrintScalars(std::string& text, Json const& list, std::size_t indent)
{
    std::string line;
    text += '[';
    for (std::size_t i = 0; i < list.size(); ++i)
    {
        std::string const item = list[i].dump() + (i + 1 < list.size() ? "," : "");
        if (line.empty() || line.size() + item.size() >= kLineLength)
        {
            text += line + '\n';
            line = std::string(indent + 2, ' ') + item;
        }
        else
        {
            line += ' ' + item;
        }
    }
    text += line + '\n' + std::string(indent, ' ') + ']';
}

// Short values on one line, others item by item.
void Print(std::string& text, Json const& json, std::size_t indent)
{
    std::string line = json.dump();
    if (!json.is_structured() || json.empty() || indent + line.size() <= kLineLength)
    {
        text += line;
        return;
    }
    if (json.is_array() && !json.front().is_structured())
        return PrintScalars(text, json, indent);
    text += json.is_object() ? "{" : "[";
    std::string const margin(indent + 2, ' ');
    bool isFirst = true;
    for (auto const& item : json.items())
    {
        text += isFirst ? "\n" : ",\n";
        isFirst = false;
        text += margin;
        if (json.is_object())
            text += Json(item.key()).dump() + ": ";
        Print(text, item.value(), indent + 2);
    }
    text += '\n' + std::string(indent, ' ') + (json.is_object() ? "}" : "]");
}

}  // namespace

std::string DumpSchema()
{
    std::string text;
    Print(text, SchemaMaker().Make(), 0);
    return text + '\n';
}

}  // namespace KVR

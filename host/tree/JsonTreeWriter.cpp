#include "host/tree/JsonTreeWriter.h"

#include "describe/JsonAnswers.h"
#include "host/tree/GeometryFacts.h"
#include "host/tree/ProductNode.h"
#include "host/tree/ProductTotals.h"
#include "host/tree/StyleColors.h"

namespace KVR
{

JsonTreeWriter::JsonTreeWriter(Output& out) : m_json(out)
{
    m_json.BeginObject();
    m_json.Key("Tree");
    m_json.BeginList();
}

void JsonTreeWriter::Begin(ProductNode const& node, Place const& place)
{
    m_json.BeginObject();
    m_json.Key("Kind");
    m_json.String(node.kind);
    m_json.Key("Label");
    WriteValue(m_json, node.label);
    m_json.Key("Id");
    WriteValue(m_json, node.id);
    m_json.Key("Target");
    if (node.isInstance && node.HasOwner())
    {
        m_json.BeginObject(JsonWriter::Layout::Row);
        m_json.Key("Kind");
        m_json.String(node.ownerKind);
        m_json.Key("Label");
        WriteValue(m_json, node.ownerLabel);
        m_json.Key("Id");
        WriteValue(m_json, node.ownerId);
        m_json.EndObject();
    }
    else
    {
        m_json.Null();
    }
    m_json.Key("Visible");
    WriteValue(m_json, node.visible);
    m_json.Key("ChildCount");
    m_json.Unsigned(node.ChildCount());
    m_json.Key("Cycle");
    m_json.Bool(place.isCycle);
    if (place.geometry)
        Geometry(*place.geometry);
    if (place.styles)
        Styles(*place.styles);
    m_json.Key("Children");
    m_json.BeginList();
}

void JsonTreeWriter::Geometry(GeometryFacts const& facts)
{
    m_json.Key("Geometry");
    m_json.BeginObject(JsonWriter::Layout::Row);
    for (GeometryFacts::Count const& count : facts.counts)
    {
        m_json.Key(count.key);
        m_json.Unsigned(count.value);
    }
    m_json.Key("BoundingBox");
    if (facts.box)
    {
        m_json.BeginList(JsonWriter::Layout::Row);
        for (double const coordinate : facts.box->low)
            m_json.Number(coordinate);
        for (double const coordinate : facts.box->high)
            m_json.Number(coordinate);
        m_json.EndList();
    }
    else
    {
        m_json.Null();
    }
    m_json.EndObject();
}

void JsonTreeWriter::Styles(std::vector<StyleColor> const& styles)
{
    m_json.Key("Styles");
    m_json.BeginList();
    for (StyleColor const& style : styles)
    {
        m_json.BeginObject(JsonWriter::Layout::Row);
        m_json.Key("Id");
        WriteValue(m_json, style.id);
        m_json.Key("Label");
        if (style.isThere)
            WriteValue(m_json, style.label);
        else
            m_json.Null();
        m_json.Key("DiffuseColor");
        if (style.diffuse)
            m_json.String(HexText(*style.diffuse));
        else
            m_json.Null();
        m_json.EndObject();
    }
    m_json.EndList();
}

void JsonTreeWriter::End()
{
    m_json.EndList();
    m_json.EndObject();
}

void JsonTreeWriter::Finish(ProductTotals const& totals)
{
    m_json.EndList();
    m_json.Key("Totals");
    m_json.BeginObject();
    auto const count = [&](std::string_view name, unsigned long long value)
    {
        m_json.Key(name);
        m_json.Unsigned(value);
    };
    count("Files", totals.files);
    count("Assemblies", totals.assemblies);
    count("Parts", totals.parts);
    count("Instances", totals.instances);
    count("Occurrences", totals.occurrences);
    count("PartOccurrences", totals.partOccurrences);
    count("DeepestLevel", totals.deepestLevel);
    m_json.EndObject();
    m_json.EndObject();
    m_json.EndDocument();
}

}  // namespace KVR

#include "host/tree/JsonTreeWriter.h"

#include "host/ObjectJson.h"
#include "host/tree/GeometryFacts.h"
#include "host/tree/StyleColors.h"
#include "host/tree/TreeNode.h"
#include "scene/SceneComponent.h"
#include "scene/SceneTotals.h"

namespace KVR
{

JsonTreeWriter::JsonTreeWriter(Output& out) : m_json(out)
{
    m_json.BeginObject();
    m_json.Key("Tree");
    m_json.BeginList();
}

void JsonTreeWriter::Begin(TreeNode const& node)
{
    m_json.BeginObject();
    WriteIdentity(m_json, node.kind, node.label, node.id);
    m_json.Key("Target");
    if (node.isInstance && node.owner)
    {
        m_json.BeginObject(JsonWriter::Layout::Row);
        WriteIdentity(m_json, KindOf(*node.owner), node.owner->label, node.owner->id);
        m_json.EndObject();
    }
    else
    {
        m_json.Null();
    }
    m_json.Key("Visible");
    if (node.isVisible)
        m_json.Bool(*node.isVisible);
    else
        m_json.Null();
    m_json.Key("ChildCount");
    m_json.Unsigned(node.owner ? node.owner->children.size() : 0);
    m_json.Key("Cycle");
    m_json.Bool(node.isCycle);
    if (node.isRepeated)
    {
        m_json.Key("Repeated");
        m_json.Bool(true);
    }
    if (node.geometry)
        Geometry(*node.geometry);
    if (node.styles)
        Styles(*node.styles);
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
        m_json.String(style.id.View());
        m_json.Key("Label");
        if (style.isThere)
            m_json.String(UTF8String(style.label).View());
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

void JsonTreeWriter::Finish(SceneTotals const& totals)
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
    count("Occurrences", ProductOccurrences(totals));
    count("PartOccurrences", totals.partOccurrences);
    count("DeepestLevel", totals.deepestLevel);
    m_json.EndObject();
    m_json.EndObject();
    m_json.EndDocument();
}

}  // namespace KVR

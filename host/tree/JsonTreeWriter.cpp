#include "host/tree/JsonTreeWriter.h"

#include "host/dump/DumpValues.h"
#include "host/tree/ProductNode.h"
#include "host/tree/ProductTotals.h"

namespace KVR
{

JsonTreeWriter::JsonTreeWriter(Output& out) : m_json(out)
{
    m_json.BeginObject();
    m_json.Key("Tree");
    m_json.BeginList();
}

void JsonTreeWriter::Begin(ProductNode const& node, bool, bool isCycle)
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
    m_json.Bool(isCycle);
    m_json.Key("Children");
    m_json.BeginList();
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

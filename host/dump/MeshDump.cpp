#include "host/dump/MeshDump.h"

#include "framework/api/IPolygonMesh.h"
#include "framework/api/IdSetSet.h"
#include "framework/api/IndexSets.h"
#include "framework/api/Polygon.h"
#include "framework/api/SegmentInfo.h"
#include "framework/api/TextureVertexSet.h"
#include "host/dump/DumpContext.h"
#include "host/dump/DumpOptions.h"
#include "host/dump/Members.h"
#include "host/dump/SharedDump.h"

namespace KVR
{

namespace
{

constexpr JsonWriter::Layout kRow = JsonWriter::Layout::Row;

template <class Index>
void DumpIndices(JsonWriter& json, Index const* indices, std::size_t count)
{
    json.BeginList(kRow);
    for (std::size_t i = 0; i < count; ++i)
        WriteValue(json, indices[i]);
    json.EndList();
}

template <class Index>
void DumpIndices(JsonWriter& json, std::vector<Index> const& indices)
{
    DumpIndices(json, indices.data(), indices.size());
}

template <class Point, class Getter>
void DumpPointOf(JsonWriter& json, Getter getter)
{
    if (auto const point = Ask(getter))
        WriteRow(json, point->x, point->y, point->z);
    else
        json.Null();
}

void DumpTextureVertex(JsonWriter& json, ITextureVertexSet const& set, unsigned long index)
{
    MeshTextureVertex3D vertex(0.0, 0.0, 0.0);
    MeshTextureVertex2D flat(0.0, 0.0);
    if (Members<ITextureVertexSet>::Asked([&] { return set.VertexAt(index, vertex); }))
        WriteRow(json, vertex.U(), vertex.V(), vertex.W());
    else if (Members<ITextureVertexSet>::Asked([&] { return set.VertexAt(index, flat); }))
        WriteRow(json, flat.U(), flat.V());
    else
        json.Null();
}

void DumpTextureVertexSet(DumpContext const& context, IPolygonMesh const& mesh, unsigned long index)
{
    ITextureVertexSet const* const set = Ask([&] { return mesh.TextureVertexSetAt(index); }).value_or(nullptr);
    if (!set)
        return context.json.Null();
    context.json.BeginObject();
    Members members(context.json, *set);
    members.Value("Dimension", &ITextureVertexSet::VertexDimension)
        .Optional("Materials", &ITextureVertexSet::Materials)
        .Value("VertexCount", &ITextureVertexSet::VertexCount);
    if (!context.options.summary)
        members.List("Vertices", &ITextureVertexSet::VertexCount,
                     [&](unsigned long i) { DumpTextureVertex(context.json, *set, i); });
    context.json.EndObject();
}

void DumpIndexList(JsonWriter& json, std::string_view name, EditablePolygon::IndexList list)
{
    json.Key(name);
    if (list.data)
        DumpIndices(json, list.data, static_cast<std::size_t>(list.count));
    else
        json.Null();
}

void DumpPolygon(JsonWriter& json, IPolygonMesh const& mesh, unsigned long index)
{
    EditablePolygon const* polygon = nullptr;
    if (!Members<IPolygonMesh>::Asked([&] { return mesh.PolygonAt(index, polygon); }) || !polygon)
        return json.Null();
    json.BeginObject(kRow);
    DumpIndexList(json, "VertexIndices", polygon->VertexIndices());
    DumpIndexList(json, "NormalIndices", polygon->NormalIndices());
    DumpIndexList(json, "TextureSetIndices", polygon->TextureSetIndices());
    DumpIndexList(json, "TextureVertexIndices", polygon->TextureVertexIndices());
    unsigned int material = 0;
    bool const hasMaterial = Members<IPolygonMesh>::Asked([&] { return mesh.PolygonMaterialIndexAt(index, material); });
    json.Key("MaterialIndex");
    if (hasMaterial)
        json.Unsigned(material);
    else
        json.Null();
    json.EndObject();
}

void DumpPolygonSegment(JsonWriter& json, bool visible, PolygonIndexSet const& polygons)
{
    json.BeginObject(kRow);
    json.Key("Visible");
    json.Bool(visible);
    json.Key("PolygonIndices");
    DumpIndices(json, polygons.Indices());
    json.EndObject();
}

void DumpFaceSegment(JsonWriter& json, IPolygonMesh const& mesh, unsigned long index)
{
    FaceSegmentInfo segment;
    if (Members<IPolygonMesh>::Asked([&] { return mesh.FaceSegmentAt(index, segment); }))
        DumpPolygonSegment(json, segment.IsVisible(), segment.PolygonIndices());
    else
        json.Null();
}

void DumpMeshSegment(JsonWriter& json, IPolygonMesh const& mesh, unsigned long index)
{
    PolygonIndexSet polygons;
    bool visible = false;
    if (Members<IPolygonMesh>::Asked([&] { return mesh.MeshSegmentAt(index, polygons); }) &&
        Members<IPolygonMesh>::Asked([&] { return mesh.MeshSegmentVisibilityAt(index, visible); }))
        DumpPolygonSegment(json, visible, polygons);
    else
        json.Null();
}

void DumpEdgeSegment(JsonWriter& json, IPolygonMesh const& mesh, unsigned long index)
{
    EdgeSegmentInfo segment;
    if (Members<IPolygonMesh>::Asked([&] { return mesh.EdgeSegmentInfoAt(index, segment); }))
        DumpIndices(json, segment.VertexIndices().Indices());
    else
        json.Null();
}

}  // namespace

void DumpPolygonMesh(DumpContext const& context, IPolygonMesh const& mesh)
{
    JsonWriter& json = context.json;
    DumpGeometry(context, "IPolygonMesh", mesh);
    Members members(json, mesh);
    members.Value("MeshType", &IPolygonMesh::MeshType)
        .Value("MeshOrientation", &IPolygonMesh::MeshOrientation)
        .Optional("LODId", &IPolygonMesh::LODId)
        .Optional("IsSingleSided", &IPolygonMesh::IsSingleSided)
        .Optional("PolygonMaterials", &IPolygonMesh::PolygonMaterials)
        .Optional("PolygonSetGroups", &IPolygonMesh::PolygonSetGroups)
        .Value("PolygonSetGroupCount", &IPolygonMesh::PolygonSetGroupCount)
        .Value("VertexCount", &IPolygonMesh::VertexCount)
        .Value("NormalCount", &IPolygonMesh::NormalCount)
        .Value("TextureVertexSetCount", &IPolygonMesh::TextureVertexSetCount)
        .Value("PolygonCount", &IPolygonMesh::PolygonCount)
        .Value("FaceSegmentCount", &IPolygonMesh::FaceSegmentCount)
        .Value("EdgeSegmentCount", &IPolygonMesh::EdgeSegmentCount)
        .Value("MeshSegmentCount", &IPolygonMesh::MeshSegmentCount)
        .List("TextureVertexSets", &IPolygonMesh::TextureVertexSetCount,
              [&](unsigned long i) { DumpTextureVertexSet(context, mesh, i); });
    if (context.options.summary)
        return;
    members
        .List("Vertices", &IPolygonMesh::VertexCount,
              [&](unsigned long i) { DumpPointOf<PolygonVertex>(json, [&] { return mesh.VertexAt(i); }); })
        .List("Normals", &IPolygonMesh::NormalCount,
              [&](unsigned long i) { DumpPointOf<Normal>(json, [&] { return mesh.NormalAt(i); }); })
        .List("Polygons", &IPolygonMesh::PolygonCount, [&](unsigned long i) { DumpPolygon(json, mesh, i); })
        .List("FaceSegments", &IPolygonMesh::FaceSegmentCount, [&](unsigned long i) { DumpFaceSegment(json, mesh, i); })
        .List("EdgeSegments", &IPolygonMesh::EdgeSegmentCount, [&](unsigned long i) { DumpEdgeSegment(json, mesh, i); })
        .List("MeshSegments", &IPolygonMesh::MeshSegmentCount,
              [&](unsigned long i) { DumpMeshSegment(json, mesh, i); });
}

}  // namespace KVR

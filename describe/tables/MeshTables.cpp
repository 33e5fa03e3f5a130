#include "describe/Rows.h"
#include "framework/api/IPolygonMesh.h"
#include "framework/api/IdSetSet.h"
#include "framework/api/IndexSets.h"
#include "framework/api/SegmentInfo.h"
#include "framework/api/TextureVertexSet.h"

namespace KVR
{

namespace
{

constexpr auto kNamed = Interface::Form::Named;
constexpr auto kShort = Interface::Form::Short;

using Point = std::array<double, 3>;

Point VertexOf(IPolygonMesh const& mesh, unsigned long index)
{
    PolygonVertex const vertex = mesh.VertexAt(index);
    return {vertex.x, vertex.y, vertex.z};
}

Point NormalOf(IPolygonMesh const& mesh, unsigned long index)
{
    Normal const normal = mesh.NormalAt(index);
    return {normal.x, normal.y, normal.z};
}

// A polygon with its place in the mesh.
struct MeshPolygon
{
    IPolygonMesh const* mesh;
    unsigned long index;
    EditablePolygon const* polygon;
};

IsValueSpecifiedEnum MaterialIndex(MeshPolygon const& polygon, unsigned int& material)
{
    return polygon.mesh->PolygonMaterialIndexAt(polygon.index, material);
}

constexpr Row kPolygonRows[] = {
    Value<&EditablePolygon::VertexIndices>("VertexIndices"),
    Value<&EditablePolygon::NormalIndices>("NormalIndices"),
    Value<&EditablePolygon::TextureSetIndices>("TextureSetIndices"),
    Value<&EditablePolygon::TextureVertexIndices>("TextureVertexIndices"),
    Value<&EditablePolygon::VertexCount>("VertexCount").NotInDump(),
};

constexpr Row kMeshPolygonRows[] = {
    {.base = &TableOf<EditablePolygon>::kTable,
     .toBase = [](void const* object) -> void const* { return static_cast<MeshPolygon const*>(object)->polygon; }},
    Value<&MaterialIndex, &IPolygonMesh::PolygonMaterialIndexAt>("MaterialIndex"),
};

constexpr Interface kMeshPolygon{"MeshPolygon", kMeshPolygonRows, kShort};
constexpr AnswerType kPolygon{.kind = AnswerType::Kind::Object, .canBeNull = true, .interface = &kMeshPolygon};
constexpr AnswerType kPolygons = ListType(kPolygon);

void TellPolygon(IPolygonMesh const& mesh, unsigned long index, Telling const& telling)
{
    MeshPolygon of{&mesh, index, nullptr};
    auto const answer = Ask([&] { return mesh.PolygonAt(index, of.polygon); }, [&] { telling.OnThrow(); });
    if (answer.value_or(kIsValueSpecified_No) != kIsValueSpecified_No && of.polygon)
        TellObject(kMeshPolygon, &of, telling);
    else
        telling.to.Null();
}

constexpr Row kFaceSegmentRows[] = {
    Value<&FaceSegmentInfo::IsVisible>("Visible"),
    Value<&FaceSegmentInfo::PolygonIndices>("PolygonIndices"),
};

IsValueSpecifiedEnum MeshSegment(IPolygonMesh const& mesh, unsigned long index, FaceSegmentInfo& segment)
{
    PolygonIndexSet polygons;
    bool visible = false;
    if (mesh.MeshSegmentAt(index, polygons) == kIsValueSpecified_No ||
        mesh.MeshSegmentVisibilityAt(index, visible) == kIsValueSpecified_No)
        return kIsValueSpecified_No;
    segment.SetPolygonIndexSet(std::move(polygons));
    segment.SetVisible(visible);
    return kIsValueSpecified_Yes;
}

// In two or three dimensions, as the set is; nothing when it has no such vertex.
void TellTextureVertex(ITextureVertexSet const& set, unsigned long index, Telling const& telling)
{
    MeshTextureVertex3D vertex(0.0, 0.0, 0.0);
    MeshTextureVertex2D flat(0.0, 0.0);
    auto const isAnswered = [&](auto& of)
    { return Ask([&] { return set.VertexAt(index, of); }, [&] { telling.OnThrow(); }) == kIsValueSpecified_Yes; };
    if (isAnswered(vertex))
        Tell(telling, std::array{vertex.U(), vertex.V(), vertex.W()});
    else if (isAnswered(flat))
        Tell(telling, std::array{flat.U(), flat.V()});
    else
        telling.to.Null();
}

constexpr AnswerType kTextureVertex{.kind = AnswerType::Kind::List, .canBeNull = true, .item = &kAnswerType<double>};
constexpr AnswerType kTextureVertices = ListType(kTextureVertex);

constexpr Row kTextureVertexSetRows[] = {
    Value<&ITextureVertexSet::VertexDimension>("Dimension"),
    Value<&ITextureVertexSet::Materials>("Materials").RefersTo(Refers::Elsewhere),
    Value<&ITextureVertexSet::VertexCount>("VertexCount"),
    ToldItems<&ITextureVertexSet::VertexCount, ITextureVertexSet, unsigned long, &TellTextureVertex,
              WritingAt<MeshTextureVertex2D>(&ITextureVertexSet::VertexAt),
              WritingAt<MeshTextureVertex3D>(&ITextureVertexSet::VertexAt)>("Vertices", kTextureVertices)
        .Long("VertexCount"),
};

constexpr Row kMeshRows[] = {
    Inherits<IPolygonMesh, IGeometry>(),
    Value<&IPolygonMesh::MeshType>("MeshType"),
    Value<&IPolygonMesh::MeshOrientation>("MeshOrientation"),
    Value<&IPolygonMesh::LODId>("LODId").RefersTo(Refers::Elsewhere),
    Value<&IPolygonMesh::IsSingleSided>("IsSingleSided"),
    Value<&IPolygonMesh::PolygonMaterials>("PolygonMaterials").RefersTo(Refers::SetOfEach),
    Value<&IPolygonMesh::PolygonSetGroups>("PolygonSetGroups").RefersTo(Refers::Elsewhere),
    Value<&IPolygonMesh::PolygonSetGroupCount>("PolygonSetGroupCount"),
    Value<&IPolygonMesh::VertexCount>("VertexCount"),
    Value<&IPolygonMesh::NormalCount>("NormalCount"),
    Value<&IPolygonMesh::TextureVertexSetCount>("TextureVertexSetCount"),
    Value<&IPolygonMesh::PolygonCount>("PolygonCount"),
    Value<&IPolygonMesh::FaceSegmentCount>("FaceSegmentCount"),
    Value<&IPolygonMesh::EdgeSegmentCount>("EdgeSegmentCount"),
    Value<&IPolygonMesh::MeshSegmentCount>("MeshSegmentCount"),
    List<&IPolygonMesh::TextureVertexSetCount, &IPolygonMesh::TextureVertexSetAt>("TextureVertexSets"),
    List<&IPolygonMesh::VertexCount, &VertexOf, &IPolygonMesh::VertexAt>("Vertices").Long("VertexCount"),
    List<&IPolygonMesh::NormalCount, &NormalOf, &IPolygonMesh::NormalAt>("Normals").Long("NormalCount"),
    ToldItems<&IPolygonMesh::PolygonCount, IPolygonMesh, unsigned long, &TellPolygon, &IPolygonMesh::PolygonAt>(
        "Polygons", kPolygons)
        .Long("PolygonCount"),
    List<&IPolygonMesh::FaceSegmentCount, &IPolygonMesh::FaceSegmentAt>("FaceSegments").Long("FaceSegmentCount"),
    List<&IPolygonMesh::EdgeSegmentCount, &IPolygonMesh::EdgeSegmentInfoAt>("EdgeSegments").Long("EdgeSegmentCount"),
    List<&IPolygonMesh::EdgeSegmentCount, &IPolygonMesh::EdgeSegmentAt>("EdgeSegmentVertices")
        .Long("EdgeSegmentCount")
        .NotInDump(),
    List<&IPolygonMesh::MeshSegmentCount, &MeshSegment, &IPolygonMesh::MeshSegmentAt,
         &IPolygonMesh::MeshSegmentVisibilityAt>("MeshSegments")
        .Long("MeshSegmentCount"),
};

}  // namespace

Interface const TableOf<IPolygonMesh>::kTable = {"IPolygonMesh", kMeshRows, kNamed};
Interface const TableOf<ITextureVertexSet>::kTable = {"ITextureVertexSet", kTextureVertexSetRows};
Interface const TableOf<EditablePolygon>::kTable = {"EditablePolygon", kPolygonRows, kShort};
Interface const TableOf<FaceSegmentInfo>::kTable = {"FaceSegmentInfo", kFaceSegmentRows, kShort};

}  // namespace KVR

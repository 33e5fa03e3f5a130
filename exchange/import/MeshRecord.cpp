#include "exchange/import/MeshRecord.h"

#include <array>

#include "framework/kernel/tessellation/BodyMesh.h"

namespace KVR
{

void WriteBodyMesh(BodyMesh const& mesh, UTF8String const& id, Authoring::MeshStoreWriter& store,
                   Authoring::SegmentStoreWriter& segments,
                   std::function<UTF8String(TopoDS_Shape const&)> const& styleOf,
                   std::function<bool(TopoDS_Shape const&)> const& isVisible)
{
    Authoring::MeshHead head;
    head.vertexCount = mesh.Vertices().size() / 3;
    head.normalCount = mesh.Normals().size() / 3;
    head.polygonCount = mesh.TriangleCount();
    bool const hasTexture = !mesh.Texture().empty();
    head.textureSetCount = hasTexture ? 1 : 0;
    store.BeginMesh(id, head);
    store.Vertices(mesh.Vertices());
    store.Normals(mesh.Normals());
    if (hasTexture)
    {
        std::vector<double> texture(mesh.Texture());
        texture.resize(2 * head.normalCount, 0.0);
        store.TextureSet(2, texture);
    }
    std::vector<Authoring::SegmentStoreWriter::Indices> faceSegments(mesh.Faces().size());
    std::vector<bool> visible;
    std::span<std::uint64_t const> const corners(mesh.Corners());
    std::span<std::uint64_t const> const normals(mesh.CornerNormals());
    for (std::size_t i = 0; i < mesh.Faces().size(); ++i)
    {
        UTF8String const style = styleOf(mesh.Faces()[i].face);
        Authoring::PolygonRecord polygon;
        std::array<Authoring::TextureReference, 3> texture;
        if (mesh.Faces()[i].hasTexture)
            polygon.textures = texture;
        if (!style.IsEmpty())
            polygon.material = store.AddMaterial(style);
        visible.push_back(isVisible(mesh.Faces()[i].face));
        std::size_t const end = i + 1 < mesh.Faces().size() ? mesh.Faces()[i + 1].firstTriangle : mesh.TriangleCount();
        for (std::size_t triangle = mesh.Faces()[i].firstTriangle; triangle < end; ++triangle)
        {
            faceSegments[i].push_back(triangle);
            polygon.vertices = corners.subspan(3 * triangle, 3);
            polygon.normals = normals.subspan(3 * triangle, 3);
            if (mesh.Faces()[i].hasTexture)
                for (std::size_t corner = 0; corner < 3; ++corner)
                    texture[corner].vertex = polygon.normals[corner];
            store.Polygon(polygon);
        }
    }
    store.EndMesh();
    segments.Mesh(id, faceSegments, mesh.Edges(), visible);
}

}  // namespace KVR

#pragma once

#include <string>
#include <vector>

#include "framework/api/IPolygonMesh.h"
#include "tests/support/ByteBuilder.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

/// The header of a store in the layout of "MeshInfo", without a material table unless an offset is given.
inline ByteBuilder MeshInfoHeader(std::uint64_t recordCount, std::uint64_t tableOffset = 0)
{
    return ByteBuilder().U64(99).U64(recordCount).U64(tableOffset);
}

/// The header of a store in the layout of "GeometryInfo".
inline ByteBuilder GeometryInfoHeader(std::uint64_t recordCount, std::uint64_t tableOffset = 0)
{
    return ByteBuilder().U64(recordCount).U64(tableOffset);
}

/// The front of a record: a word, its type and its id.
inline std::string RecordFront(std::uint64_t type, std::string_view id)
{
    return ByteBuilder().U64(77).U64(type).String(id).Bytes();
}

/// The head of a mesh body.
inline std::string MeshHeadBytes(std::uint64_t vertices, std::uint64_t normals, std::uint64_t polygons,
                                 std::uint64_t textures)
{
    return ByteBuilder().U64(vertices).U64(normals).U64(polygons).U64(55).U64(textures).Bytes();
}

/// Vertices (i, 10 i, 100 i) for i from 0.
inline std::string VertexBytes(int count)
{
    ByteBuilder bytes;
    for (int i = 0; i < count; ++i)
        bytes.F64(i).F64(10 * i).F64(100 * i);
    return bytes.Bytes();
}

/// A polygon's vertex count and indices, without what follows.
inline ByteBuilder PolygonFront(std::vector<std::uint64_t> const& indices)
{
    ByteBuilder bytes;
    bytes.U64(indices.size());
    for (std::uint64_t const index : indices)
        bytes.U64(index);
    return bytes;
}

/// A whole record of a mesh with three vertices, one triangle and nothing else.
inline std::string TriangleRecord(std::string_view id)
{
    return RecordFront(0, id) + MeshHeadBytes(3, 0, 1, 0) + VertexBytes(3) + PolygonFront({0, 1, 2}).Byte(0).Bytes();
}

/// A scene that names a store "s.mesh" by the element, and dresses the meshes and curves of the given ids.
inline std::string StoreScene(std::string const& info, std::vector<std::string> const& meshes,
                              std::vector<std::string> const& curves = {})
{
    std::string xml = "<Scene>" + info;
    for (std::string const& id : meshes)
        xml += "<IPolygonMesh ID=\"" + id + "\"/>";
    for (std::string const& id : curves)
        xml += "<ICurve ID=\"" + id + "\"/>";
    return xml + "</Scene>";
}

inline constexpr char kMeshInfo[] = R"(<MeshInfo GenerateMesh="True" Path="s.mesh"/>)";
inline constexpr char kGeometryInfo[] = R"(<GeometryInfo GenerateGeometry="True" Path="s.mesh"/>)";
inline constexpr char kSegmentInfo[] = R"(<MeshSegmentInfo GenerateMeshSegment="True" Path="s.seg"/>)";

inline std::vector<int> List(EditablePolygon::IndexList const& list)
{
    return list.data ? std::vector<int>(list.data, list.data + list.count) : std::vector<int>{-999};
}

/// What List gives for a list that is not there.
inline std::vector<int> const kNoList = {-999};

inline EditablePolygon const& PolygonOf(IPolygonMesh const& mesh, unsigned long index)
{
    EditablePolygon const* polygon = nullptr;
    mesh.PolygonAt(index, polygon);
    return *polygon;
}

/// The material slot of a polygon; -1 when it has none.
inline long SlotOf(IPolygonMesh const& mesh, unsigned long index)
{
    unsigned int slot = 0;
    return mesh.PolygonMaterialIndexAt(index, slot) == kIsValueSpecified_Yes ? static_cast<long>(slot) : -1;
}

}  // namespace KVR::Test

#include "authoring/MeshStoreWriter.h"

#include "framework/api/Exception.h"

namespace KVR::Authoring
{

namespace
{

constexpr std::uint64_t kMeshRecord = 0;
constexpr std::uint64_t kLastTableOffset = 0x7FFFFFFF;
constexpr std::uint64_t kWordSize = sizeof(std::uint64_t);

void Check(bool holds, char const* message)
{
    if (!holds)
        throw GeneralException(message);
}

}  // namespace

MeshStoreWriter::MeshStoreWriter(UTF16String const& path, MeshStoreLayout layout) : m_file(path), m_layout(layout)
{
    if (m_layout == MeshStoreLayout::kMeshInfo)
        m_file.U64(0);
    // Record count and table offset are known at the end.
    m_file.U64(0);
    m_file.U64(0);
}

MeshStoreWriter::~MeshStoreWriter() = default;

std::uint64_t MeshStoreWriter::AddMaterial(UTF8String const& styleId)
{
    Check(!styleId.IsEmpty(), "a material needs an id");
    auto const [place, isNew] = m_materialIndices.try_emplace(styleId, m_materials.size());
    if (isNew)
        m_materials.push_back(styleId);
    return place->second;
}

void MeshStoreWriter::BeginRecord(std::uint64_t type, UTF8String const& id)
{
    Check(!m_isInMesh, "a record begins before the mesh in front of it has ended");
    Check(!id.IsEmpty(), "a record needs an id");
    m_file.U64(0);
    m_file.U64(type);
    m_file.Text(id);
    ++m_recordCount;
}

void MeshStoreWriter::BeginMesh(UTF8String const& id, MeshHead const& head)
{
    bool const isGeometryInfo = m_layout == MeshStoreLayout::kGeometryInfo;
    Check(!isGeometryInfo || head.textureSetCount <= 1, "this layout knows one texture set");
    BeginRecord(kMeshRecord, id);
    m_file.U64(head.vertexCount);
    m_file.U64(head.normalCount);
    m_file.U64(head.polygonCount);
    m_file.U64(0);
    m_file.U64(isGeometryInfo ? head.textureVertexCount : head.textureSetCount);
    m_isInMesh = true;
    m_announced = head;
    m_written = MeshHead();
}

void MeshStoreWriter::Vertices(std::span<double const> coordinates)
{
    Check(m_isInMesh && m_written.normalCount == 0 && m_written.textureSetCount == 0 && m_written.polygonCount == 0,
          "vertices stand first in a mesh");
    m_file.F64s(coordinates);
    m_written.vertexCount += coordinates.size() / 3;
}

void MeshStoreWriter::Normals(std::span<double const> coordinates)
{
    Check(m_isInMesh && m_written.vertexCount == m_announced.vertexCount && m_written.textureSetCount == 0 &&
              m_written.polygonCount == 0,
          "normals stand behind all vertices of a mesh");
    m_file.F64s(coordinates);
    m_written.normalCount += coordinates.size() / 3;
}

void MeshStoreWriter::TextureSet(std::uint32_t dimension, std::span<double const> coordinates)
{
    Check(m_isInMesh && m_written.normalCount == m_announced.normalCount && m_written.polygonCount == 0,
          "texture sets stand behind all normals of a mesh");
    Check(dimension == 2 || (dimension == 3 && m_layout == MeshStoreLayout::kMeshInfo),
          "a texture set has two dimensions, or three in the layout that writes them");
    if (m_layout == MeshStoreLayout::kMeshInfo)
    {
        m_file.U32(dimension);
        m_file.U64(coordinates.size() / dimension);
    }
    m_file.F64s(coordinates);
    ++m_written.textureSetCount;
    m_written.textureVertexCount += coordinates.size() / dimension;
}

void MeshStoreWriter::Polygon(PolygonRecord const& polygon)
{
    Check(m_isInMesh && m_written.textureSetCount == m_announced.textureSetCount,
          "polygons stand behind all texture sets of a mesh");
    Check(!polygon.vertices.empty(), "a polygon needs vertices");
    Check(polygon.normals.empty() || polygon.normals.size() == polygon.vertices.size(),
          "a polygon has a normal for each vertex or none");
    m_file.U64(polygon.vertices.size());
    m_file.U64s(polygon.vertices);
    m_file.Flag(polygon.material.has_value());
    if (polygon.material)
        m_file.U64(*polygon.material);
    Check(m_announced.normalCount > 0 || polygon.normals.empty(), "a mesh without normals has polygons without them");
    if (m_announced.normalCount > 0)
    {
        m_file.Flag(!polygon.normals.empty());
        m_file.U64s(polygon.normals);
    }
    Check(m_announced.textureSetCount > 0 || polygon.textures.empty(),
          "a mesh without texture sets has polygons without them");
    if (m_announced.textureSetCount > 0)
        Textures(polygon);
    ++m_written.polygonCount;
}

void MeshStoreWriter::Textures(PolygonRecord const& polygon)
{
    m_file.Flag(!polygon.textures.empty());
    if (polygon.textures.empty())
        return;
    std::size_t const setCount = polygon.textures.size() / polygon.vertices.size();
    Check(setCount * polygon.vertices.size() == polygon.textures.size(), "each vertex has as many texture vertices");
    Check(m_layout == MeshStoreLayout::kMeshInfo || setCount == 1, "this layout knows one texture set");
    for (std::size_t i = 0; i < polygon.textures.size(); ++i)
    {
        TextureReference const& reference = polygon.textures[i];
        if (m_layout == MeshStoreLayout::kMeshInfo)
        {
            if (i % setCount == 0)
                m_file.U32(static_cast<std::uint32_t>(setCount));
            m_file.U64(reference.set);
        }
        m_file.U64(reference.vertex);
    }
}

void MeshStoreWriter::EndMesh()
{
    Check(
        m_isInMesh && m_written.vertexCount == m_announced.vertexCount &&
            m_written.normalCount == m_announced.normalCount && m_written.polygonCount == m_announced.polygonCount &&
            m_written.textureSetCount == m_announced.textureSetCount &&
            (m_layout == MeshStoreLayout::kMeshInfo || m_written.textureVertexCount == m_announced.textureVertexCount),
        "a mesh holds as much as its head announces");
    m_isInMesh = false;
}

void MeshStoreWriter::Curve(UTF8String const& id, CurveRecord const& curve)
{
    BeginRecord(curve.Type(), id);
    WriteCurvePayload(m_file, curve);
}

void MeshStoreWriter::Finish()
{
    Check(!m_isInMesh, "the last mesh has not ended");
    std::uint64_t const header = m_layout == MeshStoreLayout::kMeshInfo ? kWordSize : 0;
    m_file.PatchU64(header, m_recordCount);
    if (!m_materials.empty())
    {
        Check(m_file.Position() <= kLastTableOffset, "readers do not reach a material table behind 2 GiB of records");
        m_file.PatchU64(header + kWordSize, m_file.Position());
        m_file.U64(m_materials.size());
        for (UTF8String const& material : m_materials)
            m_file.Text(material);
    }
    m_file.Commit();
}

SegmentStoreWriter::SegmentStoreWriter(UTF16String const& path) : m_file(path)
{
    m_file.U64(0);
}
SegmentStoreWriter::~SegmentStoreWriter() = default;

void SegmentStoreWriter::Mesh(UTF8String const& id, std::span<Indices const> faceSegments,
                              std::span<Indices const> edgeSegments, std::vector<bool> const& visible)
{
    Check(!id.IsEmpty(), "a record needs an id");
    m_file.Text(id);
    m_file.U64(faceSegments.size());
    m_file.U64(edgeSegments.size());
    m_file.U64(visible.size());
    for (bool const flag : visible)
        m_file.Flag(flag);
    for (std::span<Indices const> const segments : {faceSegments, edgeSegments})
    {
        for (Indices const& indices : segments)
        {
            m_file.U64(indices.size());
            m_file.U64s(indices);
        }
    }
    ++m_recordCount;
}

void SegmentStoreWriter::Finish()
{
    m_file.PatchU64(0, m_recordCount);
    m_file.Commit();
}

}  // namespace KVR::Authoring

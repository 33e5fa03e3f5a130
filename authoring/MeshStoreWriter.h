#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <unordered_map>
#include <vector>

#include "authoring/CurveRecord.h"
#include "authoring/Export.h"
#include "authoring/StoreFile.h"

namespace KVR::Authoring
{

/// The two forms of a mesh store, by the element of the scene that names it.
enum class MeshStoreLayout
{
    /// "MeshInfo". Header: a word that no reader uses (u64), record count R (u64), offset of the material table (u64).
    kMeshInfo,
    /// "GeometryInfo". Header: record count R (u64), offset of the material table (u64).
    kGeometryInfo
};

/// A texture vertex of a polygon's vertex: the set, by its place among the mesh's sets, and the vertex in it.
struct TextureReference
{
    std::uint64_t set = 0;
    std::uint64_t vertex = 0;
};

/// One polygon, as views of the caller's lists. In the file: vertex count n (u64), n vertex indices (u64), has material
/// (byte), with one its index in the material table (u64); where the mesh has normals: has normals (byte), with them n
/// normal indices (u64); where the mesh has texture sets: has textures (byte), with them, by layout, n texture vertex
/// indices (u64), or n times a number S (u32) and S pairs of set and vertex (u64 each).
struct PolygonRecord
{
    std::span<std::uint64_t const> vertices;
    std::optional<std::uint64_t> material;
    /// Empty, or one per vertex.
    std::span<std::uint64_t const> normals;
    /// Empty, or for each vertex in turn as many as the polygon uses sets; in the "GeometryInfo" layout one each, of
    /// set 0.
    std::span<TextureReference const> textures;
};

/// What a mesh record announces. In the file five u64: vertices, normals, polygons, 0, and by layout the number of
/// texture sets, or of the texture vertices of the one set.
struct MeshHead
{
    std::uint64_t vertexCount = 0;
    std::uint64_t normalCount = 0;
    std::uint64_t polygonCount = 0;
    /// The "GeometryInfo" layout knows one set of two dimensions at most.
    std::uint64_t textureSetCount = 0;
    /// "GeometryInfo" only: the vertices of that set.
    std::uint64_t textureVertexCount = 0;
};

/// Writes a mesh store, streaming: meshes and curves may be larger than memory. A record is a word that no reader uses
/// (u64), its type (u64; 0 for a mesh, 1 to 6 for a curve), its id (string) and its body; a mesh's body is its head,
/// the vertices (3 f64 each), the normals (3 f64 each), the texture sets and the polygons. Behind the records stands
/// the material table: a count (u64) and the ids (strings).
///
/// Operations throw FileException when the file system refuses, and GeneralException when calls do not fit together or
/// counts do not agree with what was announced.
class KVR_AUTHORING_API MeshStoreWriter
{
public:
    MeshStoreWriter(UTF16String const& path, MeshStoreLayout layout);
    ~MeshStoreWriter();

    /// Enters a style id in the material table, and answers its index; the same index for the same id. Not empty.
    std::uint64_t AddMaterial(UTF8String const& styleId);

    /// Begins a mesh, whose vertices, normals, texture sets and polygons follow in this order. The id is not empty.
    void BeginMesh(UTF8String const& id, MeshHead const& head);
    /// Coordinates, three per vertex, in the mesh's length unit; may be called more than once.
    void Vertices(std::span<double const> coordinates);
    /// Normals, three numbers each, behind all vertices; may be called more than once.
    void Normals(std::span<double const> coordinates);
    /// In the "MeshInfo" layout: a set in two or three dimensions, which in the file is the dimension (u32), the vertex
    /// count (u64) and the coordinates (f64); in the other layout the coordinates alone.
    void TextureSet(std::uint32_t dimension, std::span<double const> coordinates);
    /// A polygon, behind all texture sets; it has at least one vertex. Nothing of it is kept.
    void Polygon(PolygonRecord const& polygon);
    /// Ends the mesh, which by then has what it announced.
    void EndMesh();

    /// A curve between meshes; its id is not empty.
    void Curve(UTF8String const& id, CurveRecord const& curve);

    /// Writes the material table and the header; the file appears. A store with materials has to stay below 2 GiB, or
    /// readers would not reach the table.
    void Finish();

private:
    void BeginRecord(std::uint64_t type, UTF8String const& id);
    void Textures(PolygonRecord const& polygon);

    StoreFile m_file;
    MeshStoreLayout m_layout;
    std::vector<UTF8String> m_materials;
    std::unordered_map<UTF8String, std::uint64_t> m_materialIndices;
    std::uint64_t m_recordCount = 0;
    bool m_isInMesh = false;
    MeshHead m_announced;
    MeshHead m_written;
};

/// Writes a segment store: record count (u64), and for each mesh its id (string), face segment count F, edge segment
/// count E and visibility flag count B (u64 each), B flags (byte each), F times a count and that many polygon indices
/// (u64), E times a count and that many vertex indices (u64). Throws as the mesh store's writer does.
class KVR_AUTHORING_API SegmentStoreWriter
{
public:
    using Indices = std::vector<std::uint64_t>;

    explicit SegmentStoreWriter(UTF16String const& path);
    ~SegmentStoreWriter();

    /// The segments of the mesh of that id, which is not empty; `visible` has a flag per face segment, or fewer.
    void Mesh(UTF8String const& id, std::span<Indices const> faceSegments, std::span<Indices const> edgeSegments,
              std::vector<bool> const& visible);
    /// Writes the record count; the file appears. Nothing can be written afterwards.
    void Finish();

private:
    StoreFile m_file;
    std::uint64_t m_recordCount = 0;
};

}  // namespace KVR::Authoring

#include "bench/MeshGenerator.h"

#include <fmt/format.h>
#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "authoring/MeshStoreWriter.h"
#include "bench/SceneFile.h"

namespace KVR::Bench
{

namespace
{

constexpr std::uint64_t kRowsPerSegment = 100;

using Triangle = std::array<std::uint64_t, 3>;
using Coordinates = std::array<double, 3>;

Coordinates PointOf(std::uint64_t row, std::uint64_t column)
{
    double const x = 0.1 * static_cast<double>(column);
    double const y = 0.1 * static_cast<double>(row);
    return {x, y, std::sin(x) * std::cos(y)};
}

Coordinates NormalOf(std::uint64_t row, std::uint64_t column)
{
    double const x = 0.1 * static_cast<double>(column);
    double const y = 0.1 * static_cast<double>(row);
    double const dx = -std::cos(x) * std::cos(y);
    double const dy = std::sin(x) * std::sin(y);
    double const length = std::sqrt(dx * dx + dy * dy + 1.0);
    return {dx / length, dy / length, 1.0 / length};
}

template <class Action>
void ForEachVertex(Grid const& grid, Action action)
{
    for (std::uint64_t row = 0; row <= grid.side; ++row)
        for (std::uint64_t column = 0; column <= grid.side; ++column)
            action(row, column);
}

template <class Action>
void ForEachTriangle(Grid const& grid, Action action)
{
    for (std::uint64_t row = 0; row < grid.side; ++row)
    {
        for (std::uint64_t column = 0; column < grid.side; ++column)
        {
            std::uint64_t const corner = row * (grid.side + 1) + column;
            std::uint64_t const above = corner + grid.side + 1;
            action(row, Triangle{corner, corner + 1, above + 1});
            action(row, Triangle{corner, above + 1, above});
        }
    }
}

void WriteMesh(Authoring::MeshStoreWriter& writer, UTF8String const& id, Grid const& grid)
{
    Authoring::MeshHead head;
    head.vertexCount = grid.VertexCount();
    head.normalCount = grid.VertexCount();
    head.polygonCount = grid.TriangleCount();
    writer.BeginMesh(id, head);
    ForEachVertex(grid, [&](std::uint64_t row, std::uint64_t column) { writer.Vertices(PointOf(row, column)); });
    ForEachVertex(grid, [&](std::uint64_t row, std::uint64_t column) { writer.Normals(NormalOf(row, column)); });
    std::uint64_t segment = 0;
    std::uint64_t material = writer.AddMaterial(UTF8String("style0"));
    ForEachTriangle(grid,
                    [&](std::uint64_t row, Triangle const& triangle)
                    {
                        if (row / kRowsPerSegment != segment)
                        {
                            segment = row / kRowsPerSegment;
                            material = writer.AddMaterial(UTF8String(fmt::format("style{}", segment)));
                        }
                        Authoring::PolygonRecord polygon;
                        polygon.vertices = triangle;
                        polygon.material = material;
                        polygon.normals = triangle;
                        writer.Polygon(polygon);
                    });
    writer.EndMesh();
}

void WriteSegments(Authoring::SegmentStoreWriter& writer, UTF8String const& id, Grid const& grid)
{
    using Indices = Authoring::SegmentStoreWriter::Indices;
    std::vector<Indices> faces((grid.side + kRowsPerSegment - 1) / kRowsPerSegment);
    for (std::uint64_t triangle = 0; triangle < grid.TriangleCount(); ++triangle)
        faces[triangle / (2 * grid.side) / kRowsPerSegment].push_back(triangle);
    std::vector<Indices> edges(1);
    for (std::uint64_t column = 0; column <= grid.side; ++column)
        edges.front().push_back(column);
    writer.Mesh(id, faces, edges, std::vector<bool>(faces.size(), true));
}

// A file of little-endian items, through a large buffer.
class BinaryFile
{
public:
    explicit BinaryFile(std::filesystem::path const& path) : m_path(path), m_file(std::fopen(path.c_str(), "wb"))
    {
        static_assert(std::endian::native == std::endian::little);
        if (!m_file)
            throw std::runtime_error("Cannot write " + path.string());
    }
    ~BinaryFile()
    {
        if (m_file)
            std::fclose(m_file);
    }
    BinaryFile(BinaryFile const&) = delete;
    BinaryFile& operator=(BinaryFile const&) = delete;

    void Bytes(void const* bytes, std::size_t count)
    {
        if (std::fwrite(bytes, 1, count, m_file) != count)
            throw std::runtime_error("Cannot write " + m_path.string());
    }
    template <class Item>
    void Put(Item const& item)
    {
        Bytes(&item, sizeof item);
    }
    void Text(std::string const& text) { Bytes(text.data(), text.size()); }
    void Triple(Coordinates const& values)
    {
        for (double const value : values)
            Put(static_cast<float>(value));
    }
    void Close()
    {
        if (std::fclose(std::exchange(m_file, nullptr)) != 0)
            throw std::runtime_error("Cannot write " + m_path.string());
    }

private:
    std::filesystem::path m_path;
    std::FILE* m_file;
};

constexpr std::uint64_t kTripleSize = 3 * sizeof(float);

}  // namespace

Grid Grid::OfTriangles(std::uint64_t triangles)
{
    return {static_cast<std::uint64_t>(std::sqrt(static_cast<double>(triangles) / 2.0))};
}

void WriteStores(MeshStores const& stores, Grid const& grid, std::uint64_t meshCount)
{
    Authoring::MeshStoreWriter meshes(UTF16String(stores.meshes.wstring()), Authoring::MeshStoreLayout::kMeshInfo);
    for (std::uint64_t i = 0; i < meshCount; ++i)
        WriteMesh(meshes, UTF8String(fmt::format("mesh{}", i)), grid);
    meshes.Finish();
    if (stores.segments.empty())
        return;
    Authoring::SegmentStoreWriter segments(UTF16String(stores.segments.wstring()));
    for (std::uint64_t i = 0; i < meshCount; ++i)
        WriteSegments(segments, UTF8String(fmt::format("mesh{}", i)), grid);
    segments.Finish();
}

void WriteMeshScene(std::filesystem::path const& path, Grid const& grid, std::uint64_t meshCount)
{
    std::filesystem::path store = path;
    store += ".mesh";
    std::filesystem::path segments = path;
    segments += ".segments";
    WriteStores({store, segments}, grid, meshCount);
    SceneFile file(path);
    file.Put(
        "<Scene><MeshInfo GenerateMesh=\"True\" Path=\"{}\"/><MeshSegmentInfo GenerateMeshSegment=\"True\" "
        "Path=\"{}\"/><IFile ID=\"file\" Label=\"\" IsRoot=\"1\"><ChildSet><Child ID=\"part\" Type=\"IPart\"/>"
        "</ChildSet></IFile><IPart ID=\"part\" Label=\"\"><ChildSet>\n",
        store.filename().string(), segments.filename().string());
    for (std::uint64_t i = 0; i < meshCount; ++i)
        file.Put("<IPolygonMesh ID=\"mesh{}\" Label=\"\" Visibility=\"1\"/>\n", i);
    file.Put("</ChildSet></IPart></Scene>\n");
    file.Close();
}

void WriteBinaryGltf(std::filesystem::path const& path, Grid const& grid)
{
    std::uint64_t const vertices = grid.VertexCount();
    std::uint64_t const triples = vertices * kTripleSize;
    std::uint64_t const indices = 3 * grid.TriangleCount();
    std::uint64_t const binary = 2 * triples + indices * sizeof(std::uint32_t);
    double const extent = 0.1 * static_cast<double>(grid.side);
    std::string json = fmt::format(
        R"({{"asset":{{"version":"2.0"}},"scene":0,"scenes":[{{"nodes":[0]}}],"nodes":[{{"mesh":0}}],)"
        R"("meshes":[{{"primitives":[{{"attributes":{{"POSITION":0,"NORMAL":1}},"indices":2}}]}}],)"
        R"("buffers":[{{"byteLength":{0}}}],"bufferViews":[{{"buffer":0,"byteOffset":0,"byteLength":{1}}},)"
        R"({{"buffer":0,"byteOffset":{1},"byteLength":{1}}},{{"buffer":0,"byteOffset":{2},"byteLength":{3}}}],)"
        R"("accessors":[{{"bufferView":0,"componentType":5126,"count":{4},"type":"VEC3","min":[0,0,-1],"max":[{6},{6},1]}},)"
        R"({{"bufferView":1,"componentType":5126,"count":{4},"type":"VEC3"}},)"
        R"({{"bufferView":2,"componentType":5125,"count":{5},"type":"SCALAR"}}]}})",
        binary, triples, 2 * triples, indices * sizeof(std::uint32_t), vertices, indices, extent);
    json.resize((json.size() + 3) / 4 * 4, ' ');
    BinaryFile file(path);
    file.Text("glTF");
    file.Put(std::uint32_t{2});
    file.Put(static_cast<std::uint32_t>(12 + 8 + json.size() + 8 + binary));
    file.Put(static_cast<std::uint32_t>(json.size()));
    file.Text("JSON");
    file.Text(json);
    file.Put(static_cast<std::uint32_t>(binary));
    file.Bytes("BIN", 4);
    ForEachVertex(grid, [&](std::uint64_t row, std::uint64_t column) { file.Triple(PointOf(row, column)); });
    ForEachVertex(grid, [&](std::uint64_t row, std::uint64_t column) { file.Triple(NormalOf(row, column)); });
    ForEachTriangle(grid,
                    [&](std::uint64_t, Triangle const& triangle)
                    {
                        for (std::uint64_t const index : triangle)
                            file.Put(static_cast<std::uint32_t>(index));
                    });
    file.Close();
}

void WriteBinaryPly(std::filesystem::path const& path, Grid const& grid)
{
    BinaryFile file(path);
    file.Text(
        fmt::format("ply\nformat binary_little_endian 1.0\nelement vertex {}\n"
                    "property float x\nproperty float y\nproperty float z\n"
                    "property float nx\nproperty float ny\nproperty float nz\n"
                    "element face {}\nproperty list uchar int vertex_indices\nend_header\n",
                    grid.VertexCount(), grid.TriangleCount()));
    ForEachVertex(grid,
                  [&](std::uint64_t row, std::uint64_t column)
                  {
                      file.Triple(PointOf(row, column));
                      file.Triple(NormalOf(row, column));
                  });
    ForEachTriangle(grid,
                    [&](std::uint64_t, Triangle const& triangle)
                    {
                        file.Put(std::uint8_t{3});
                        for (std::uint64_t const index : triangle)
                            file.Put(static_cast<std::int32_t>(index));
                    });
    file.Close();
}

void WriteBinaryStl(std::filesystem::path const& path, Grid const& grid)
{
    BinaryFile file(path);
    file.Text(std::string(80, ' '));
    file.Put(static_cast<std::uint32_t>(grid.TriangleCount()));
    std::uint64_t const columns = grid.side + 1;
    ForEachTriangle(grid,
                    [&](std::uint64_t, Triangle const& triangle)
                    {
                        file.Triple(NormalOf(triangle[0] / columns, triangle[0] % columns));
                        for (std::uint64_t const index : triangle)
                            file.Triple(PointOf(index / columns, index % columns));
                        file.Put(std::uint16_t{0});
                    });
    file.Close();
}

}  // namespace KVR::Bench

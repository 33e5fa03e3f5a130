#pragma once

#include <cstdint>
#include <filesystem>

namespace KVR::Bench
{

/// A wavy grid of triangles, so many squares to a side, with shared vertices and a normal at each.
struct Grid
{
    std::uint64_t side = 0;

    static Grid OfTriangles(std::uint64_t triangles);

    std::uint64_t TriangleCount() const noexcept { return 2 * side * side; }
    std::uint64_t VertexCount() const noexcept { return (side + 1) * (side + 1); }
};

/// The stores of a scene, as the scene's elements name them.
struct MeshStores
{
    std::filesystem::path meshes;
    std::filesystem::path segments;
};

// Each throws std::exception when the file cannot be written; the same arguments give the same bytes.

/// So many meshes, each a grid, with a material per face segment of a hundred rows, and its segments. The segment file
/// is not written when its path is empty.
void WriteStores(MeshStores const& stores, Grid const& grid, std::uint64_t meshCount);

/// A scene with such meshes in one part, and its stores beside it.
void WriteMeshScene(std::filesystem::path const& path, Grid const& grid, std::uint64_t meshCount);

/// The grid as one primitive with normals, in single precision as that format has it; and so the next.
void WriteBinaryGltf(std::filesystem::path const& path, Grid const& grid);
void WriteBinaryPly(std::filesystem::path const& path, Grid const& grid);
void WriteBinaryStl(std::filesystem::path const& path, Grid const& grid);

}  // namespace KVR::Bench

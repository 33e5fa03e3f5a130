#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace KVR::Test
{

/// Where the numbers of a polygon stand in a store.
struct PolygonPlaces
{
    std::vector<std::size_t> vertices;
    /// Empty without normals.
    std::vector<std::size_t> normals;
};

/// The same of a mesh; coordinates are three doubles one behind the other.
struct MeshPlaces
{
    std::string id;
    /// The record, to behind its end.
    std::size_t begin = 0;
    std::size_t end = 0;
    std::size_t vertices = 0;
    std::size_t vertexCount = 0;
    std::size_t normals = 0;
    std::size_t normalCount = 0;
    std::vector<PolygonPlaces> polygons;

    /// Of the meshes of a store in the layout of "MeshInfo" without textures, up to the first that has some.
    static std::vector<MeshPlaces> Of(std::string const& store);
};

/// The same of what a segment store says of a mesh.
struct SegmentPlaces
{
    std::string id;
    std::size_t begin = 0;
    std::size_t end = 0;
    /// Of each segment, where its indices stand.
    std::vector<std::vector<std::size_t>> faces;
    std::vector<std::vector<std::size_t>> edges;

    static std::vector<SegmentPlaces> Of(std::string const& store);
};

/// Numbers of a store, as it has them.
double NumberAt(std::string const& store, std::size_t place);
std::size_t WordAt(std::string const& store, std::size_t place);
void PutNumber(std::string& store, std::size_t place, double number);
void PutWord(std::string& store, std::size_t place, std::size_t word);

}  // namespace KVR::Test

#pragma once

#include <tiny_gltf.h>

#include <cstdint>
#include <span>
#include <unordered_map>
#include <vector>

#include "exchange/export/ExportTask.h"
#include "exchange/export/GltfBuffers.h"
#include "exchange/export/GltfMaterials.h"
#include "scene/CurvePoints.h"
#include "scene/SceneMesh.h"

namespace KVR
{

/// A primitive of geometry, without its material.
struct GltfDrawing
{
    /// Of its own; null for that of the whole.
    SceneStyle const* style = nullptr;
    GltfSurface surface = GltfSurface::kPlain;
    tinygltf::Primitive primitive;
};

/// What geometry looks like in a glTF document.
struct GltfGeometry
{
    std::vector<GltfDrawing> drawings;
    /// The ids of its faces, by the numbers that the primitives have for them; null when no face has any.
    tinygltf::Value faces;
};

/// The numbers of one run of triangles, in lists that others own. Normals and texture are empty for a run without.
struct RunNumbers
{
    static RunNumbers Of(SceneMesh const& mesh, SceneMesh::Run const& run);

    std::span<double const> positions;
    std::span<float const> normals;
    std::span<float const> texture;
    /// Counted from the first vertex.
    std::span<std::uint32_t const> indices;
    std::size_t firstVertex = 0;
};

/// Adds the numbers of geometry to a glTF document, once for all styles.
class GltfPrimitives
{
public:
    GltfPrimitives(ExportTask& task, tinygltf::Model& model);

    /// What there is to draw of geometry; counts what there is not, the first time.
    GltfGeometry const& Of(SceneGeometry const& geometry);

    /// The diagonal of the largest primitive that was made of geometry, in the geometry's unit; 0 when there is none.
    double SizeOf(SceneGeometry const& geometry) const;

private:
    /// Adds a line strip for each line.
    void AddLines(std::vector<GltfDrawing>& drawings, SceneLines const& lines);
    SceneMesh MeshOf(SceneGeometry const& geometry);
    void AddTriangles(GltfGeometry& made, SceneMesh const& mesh);
    void AddRun(GltfGeometry& made, SceneMesh const& mesh, SceneMesh::Run const& run);
    void AddNumbers(tinygltf::Primitive& primitive, RunNumbers const& numbers);
    void AddPoint(std::vector<GltfDrawing>& drawings, IPoint const& point);

    ExportTask& m_task;
    tinygltf::Model& m_model;
    GltfBuffers m_buffers;
    std::unordered_map<IObject const*, GltfGeometry> m_geometry;
    std::unordered_map<std::string_view, IBrep const*> m_bodies;
};

}  // namespace KVR

#pragma once

#include <tiny_gltf.h>

#include <map>
#include <span>
#include <string>
#include <tuple>
#include <vector>

#include "exchange/export/ExportTask.h"
#include "scene/CurvePoints.h"
#include "scene/OccurrenceWalk.h"
#include "scene/SceneMesh.h"

namespace KVR
{

/// Builds a glTF document of a scene. Lengths in it are metres, and up is y.
class GltfDocument
{
public:
    explicit GltfDocument(ExportTask& task);

    /// Throws std::runtime_error for a scene of more occurrences than a document can hold.
    void Build();

    tinygltf::Model& Model() noexcept { return m_model; }

private:
    /// An object, its style, and whether its faces keep theirs.
    using MeshKey = std::tuple<IObject const*, SceneStyle const*, bool>;

    struct Drawing
    {
        /// Of its own; null for that of the whole.
        SceneStyle const* style = nullptr;
        tinygltf::Primitive primitive;
        /// Also for points.
        bool isCurve = false;
    };

    int AddNode(tinygltf::Node node, int parent);
    /// The node of the scene's root, with the components and geometry below it.
    void AddOccurrences();
    /// The node that takes what is below the occurrence; -1, and counted, when nothing is left of it.
    int AddOccurrence(OccurrenceWalk const& walk, int parent);
    void AddProperties(SceneComponent const& component, int node);
    void AddGeometry(SceneGeometry const& geometry, OccurrenceWalk const& walk, int parent);
    /// -1 for geometry of which there is nothing to draw.
    int MeshOf(SceneGeometry const& geometry, OccurrenceState const& state);
    int MakeMesh(SceneGeometry const& geometry, SceneStyle const* style, bool keepsFaceStyles);
    int MaterialOf(SceneStyle const* style, bool isCurve);
    /// The primitives of geometry, without materials; made once for all styles.
    std::vector<Drawing> const& DrawingsOf(SceneGeometry const& geometry);
    void AddTriangles(std::vector<Drawing>& drawings, SceneMesh const& mesh);
    void AddLines(std::vector<Drawing>& drawings, SceneLines const& lines);
    void AddPoint(std::vector<Drawing>& drawings, IPoint const& point);
    int AddFloats(std::span<float const> values, int type);
    /// With the range of the points.
    int AddPoints(std::span<double const> points);
    /// Each less the number of the first vertex.
    int AddIndices(std::span<std::uint32_t const> indices, std::size_t firstVertex, std::size_t vertexCount);
    int AddView(void const* bytes, std::size_t size, int target);
    /// False, and counted, for a transform that leaves nothing of what it places.
    bool SetTransform(tinygltf::Node& node, Matrix const& transform, int& inner);
    void AddCameras(Matrix const& root);
    void AddExtras();
    tinygltf::Value::Object ExtrasOf(std::string_view id, IObject const* object);

    ExportTask& m_task;
    Scene const& m_scene;
    tinygltf::Model m_model;
    std::map<MeshKey, int> m_meshes;
    std::unordered_map<IObject const*, std::vector<Drawing>> m_drawings;
    /// By style, and whether it is a curve's own colour.
    std::map<std::pair<SceneStyle const*, bool>, int> m_materials;
    std::unordered_map<std::string_view, std::vector<std::string_view>> m_layersOf;
    std::map<std::string, int, std::less<>> m_cameraNodes;
};

}  // namespace KVR

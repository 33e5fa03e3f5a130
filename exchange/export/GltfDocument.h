#pragma once

#include <tiny_gltf.h>

#include <map>
#include <string>
#include <tuple>
#include <unordered_map>
#include <vector>

#include "exchange/export/ExportTask.h"
#include "exchange/export/GltfMaterials.h"
#include "exchange/export/GltfNotes.h"
#include "exchange/export/GltfPrimitives.h"
#include "scene/OccurrenceWalk.h"

namespace KVR
{

class ICamera;

/// Builds a glTF document of a scene. Lengths in it are metres, and up is y.
class GltfDocument
{
public:
    /// Images are in the document's buffer, or else for files beside it (GltfMaterials).
    GltfDocument(ExportTask& task, bool embedsImages);

    /// Throws std::runtime_error for a scene of more occurrences than a document can hold.
    void Build();

    tinygltf::Model& Model() noexcept { return m_model; }

private:
    /// An object, its style, and whether its faces keep theirs.
    using MeshKey = std::tuple<IObject const*, SceneStyle const*, bool>;

    int AddNode(tinygltf::Node node, int parent);
    /// The node of the scene's root, with the components and geometry below it.
    void AddOccurrences(Matrix const& turn);
    /// The group of nodes of what is annotated.
    void AddNotes(Matrix const& turn);
    /// The node that takes what is below the occurrence; -1, and counted, when nothing is left of it.
    int AddOccurrence(OccurrenceWalk const& walk, Matrix const& turn, int parent);
    /// GltfPlace::AddTo; false, and counted, for a transform that leaves nothing of what it places.
    bool Place(tinygltf::Node& node, Matrix const& transform, int& inner);
    void AddProperties(SceneComponent const& component, int node);
    void AddGeometry(SceneGeometry const& geometry, OccurrenceWalk const& walk, int parent);
    /// -1 for geometry of which there is nothing to draw.
    int MeshOf(SceneGeometry const& geometry, OccurrenceState const& state);
    int MakeMesh(SceneGeometry const& geometry, SceneStyle const* style, bool keepsFaceStyles);
    /// A node for each camera of each view, and one for each camera that no view has.
    void AddCameras(Matrix const& turn);
    /// The camera of the document, which stands under no node yet.
    void AddCamera(SceneReference const& listed, Matrix const& turn);
    void AddCameraNode(std::string const& id, std::string const& name, tinygltf::Value::Object extras);
    tinygltf::Value ViewOf(SceneReference const& listed);
    void AddExtras();
    tinygltf::Value::Object ExtrasOf(std::string_view id, IObject const* object);

    ExportTask& m_task;
    Scene const& m_scene;
    tinygltf::Model m_model;
    GltfPrimitives m_primitives;
    GltfMaterials m_materials;
    GltfNotes m_notes;
    std::map<MeshKey, int> m_meshes;
    std::unordered_map<std::string_view, std::vector<std::string_view>> m_layersOf;
    /// Of a camera that stands somewhere.
    struct Camera
    {
        ICamera const* object = nullptr;
        int index = -1;
        std::vector<double> matrix;
        bool isInView = false;
    };
    std::map<std::string, Camera, std::less<>> m_cameras;
    /// The views, for the extras of the scene.
    tinygltf::Value::Array m_views;
};

}  // namespace KVR

#pragma once

#include <memory>
#include <unordered_map>

#include "scene/Export.h"
#include "scene/SceneMesh.h"

namespace KVR
{

class IObject;

/// The meshes of objects, each computed when it is first asked for and then shared by all occurrences. Objects are told
/// apart by their addresses: they must outlive it.
class KVR_SCENE_API SceneMeshes
{
public:
    /// How finely bodies are meshed.
    explicit SceneMeshes(MeshQuality const& quality = {});
    ~SceneMeshes();
    SceneMeshes(SceneMeshes const&) = delete;
    SceneMeshes& operator=(SceneMeshes const&) = delete;

    /// Good until the object is released, or the meshes end.
    SceneMesh const& Of(IPolygonMesh& mesh);
    SceneMesh const& Of(IBrep& body);
    /// Forgets what was computed for an object.
    void Release(IObject const& object);

private:
    MeshQuality m_quality;
    std::unordered_map<IObject const*, std::unique_ptr<SceneMesh>> m_meshes;
};

}  // namespace KVR

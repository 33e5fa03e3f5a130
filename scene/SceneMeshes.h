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
    /// How far the triangles of a body may be from it, as a fraction of the diagonal of its box.
    explicit SceneMeshes(double deflection = 1e-3);
    ~SceneMeshes();
    SceneMeshes(SceneMeshes const&) = delete;
    SceneMeshes& operator=(SceneMeshes const&) = delete;

    /// Good until the object is released, or the meshes end.
    SceneMesh const& Of(IPolygonMesh& mesh);
    SceneMesh const& Of(IBrep& body);
    /// Forgets what was computed for an object.
    void Release(IObject const& object);

private:
    double m_deflection;
    std::unordered_map<IObject const*, std::unique_ptr<SceneMesh>> m_meshes;
};

}  // namespace KVR

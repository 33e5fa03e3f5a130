#include "scene/SceneMeshes.h"

#include "framework/api/IBrep.h"
#include "framework/api/IPolygonMesh.h"

namespace KVR
{

SceneMeshes::SceneMeshes(MeshQuality const& quality) : m_quality(quality) {}
SceneMeshes::~SceneMeshes() = default;

SceneMesh const& SceneMeshes::Of(IPolygonMesh& mesh)
{
    std::unique_ptr<SceneMesh>& entry = m_meshes[&mesh];
    if (!entry)
        entry = std::make_unique<SceneMesh>(SceneMesh::Of(mesh));
    return *entry;
}

SceneMesh const& SceneMeshes::Of(IBrep& body)
{
    std::unique_ptr<SceneMesh>& entry = m_meshes[&body];
    if (!entry)
        entry = std::make_unique<SceneMesh>(SceneMesh::Of(body, m_quality));
    return *entry;
}

void SceneMeshes::Release(IObject const& object)
{
    m_meshes.erase(&object);
}

}  // namespace KVR

#pragma once

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "authoring/MeshStoreWriter.h"
#include "scene/Scene.h"
#include "tests/scene/ModelScene.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

/// A part's mesh of a box from the origin on, in the unit of the part. An open one has no lid.
struct BoxMesh
{
    std::string id;
    std::array<double, 3> size;
    bool isOpen = false;
};

/// A scene of a test's own text with meshes of boxes.
class QueryScene
{
public:
    QueryScene(std::string const& text, std::vector<BoxMesh> const& boxes = {})
        : m_scene("<Scene><MeshInfo GenerateMesh='True' Path='s.mesh'/>" + text + "</Scene>")
    {
        Authoring::MeshStoreWriter store(UTF16String(UTF8String(m_scene.Folder() + "/s.mesh")),
                                         Authoring::MeshStoreLayout::kMeshInfo);
        for (BoxMesh const& box : boxes)
            Write(store, box);
        store.Finish();
        m_scene.Begin();
        m_model = std::make_unique<KVR::Scene>(m_scene.Producer(), Root());
    }

    KVR::Scene const& Model() const { return *m_model; }
    XMLProducer& Producer() { return m_scene.Producer(); }
    UTF8String Root() { return m_scene.Producer().RootObjectId().Id(); }
    std::string const& Path() const { return m_scene.Path(); }

private:
    static void Write(Authoring::MeshStoreWriter& store, BoxMesh const& box)
    {
        std::vector<double> points;
        for (unsigned corner = 0; corner < 8; ++corner)
            for (unsigned axis = 0; axis < 3; ++axis)
                points.push_back((corner >> axis) & 1U ? box.size[axis] : 0.0);
        std::vector<std::vector<std::uint64_t>> faces{
            {0, 2, 3, 1}, {0, 1, 5, 4}, {2, 6, 7, 3}, {0, 4, 6, 2}, {1, 3, 7, 5}};
        if (!box.isOpen)
            faces.push_back({4, 5, 7, 6});
        Authoring::MeshHead head;
        head.vertexCount = 8;
        head.polygonCount = faces.size();
        store.BeginMesh(UTF8String(box.id), head);
        store.Vertices(points);
        for (auto const& face : faces)
        {
            Authoring::PolygonRecord polygon;
            polygon.vertices = face;
            store.Polygon(polygon);
        }
        store.EndMesh();
    }

    TestScene m_scene;
    std::unique_ptr<KVR::Scene> m_model;
};

inline std::string Mesh(std::string const& id)
{
    return "<IPolygonMesh ID='" + id + "' Label='' Visibility='1'/>";
}

/// An instance with a transformation, of sixteen numbers.
inline std::string PlacedInstance(std::string const& id, std::string const& target, std::string const& place)
{
    return "<IInstance ID='" + id + "' Label='Label of " + id + "' Visibility='1'><Child ID='" + target +
           "' Transformation='" + place + "'/></IInstance>";
}

/// File properties with custom properties, as they are written.
inline std::string CustomProperties(std::string const& properties, std::string const& more = {})
{
    return "<FileProperties>" + more + "<CustomProperties>" + properties + "</CustomProperties></FileProperties>";
}

inline std::string NumberProperty(std::string const& name, std::string const& value)
{
    return "<CustomProperty Key='" + name + "' Type='kDouble' Value='" + value + "'/>";
}

inline std::string TextProperty(std::string const& name, std::string const& value)
{
    return "<CustomProperty Key='" + name + "' Type='kString' Value='" + value + "'/>";
}

}  // namespace KVR::Test

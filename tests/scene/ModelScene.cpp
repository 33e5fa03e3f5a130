#include "tests/scene/ModelScene.h"

#include <stdexcept>

#include "authoring/MeshStoreWriter.h"

namespace KVR::Test
{

ModelScene::ModelScene(std::string const& text, SceneFilter const& filter, std::vector<std::string> const& meshes)
    : m_scene("<Scene><MeshInfo GenerateMesh='True' Path='s.mesh'/>" + text + "</Scene>")
{
    Authoring::MeshStoreWriter store(UTF16String(UTF8String(m_scene.Folder() + "/s.mesh")),
                                     Authoring::MeshStoreLayout::kMeshInfo);
    for (std::string const& mesh : meshes)
    {
        Authoring::MeshHead head;
        head.vertexCount = 3;
        head.polygonCount = 1;
        store.BeginMesh(UTF8String(mesh), head);
        store.Vertices(std::vector<double>{0, 0, 0, 1, 0, 0, 0, 1, 0});
        std::vector<std::uint64_t> const corners{0, 1, 2};
        Authoring::PolygonRecord polygon;
        polygon.vertices = corners;
        store.Polygon(polygon);
        store.EndMesh();
    }
    store.Finish();
    m_scene.Begin();
    m_model = std::make_unique<KVR::Scene>(m_scene.Producer(), m_scene.Producer().RootObjectId().Id(), filter);
}

SceneComponent const& ModelScene::Component(std::string_view id) const
{
    for (SceneComponent const& component : m_model->Components())
        if (component.id == id)
            return component;
    throw std::runtime_error("no such component: " + std::string(id));
}

ScenePlacement const& ModelScene::Placement(std::string_view component, std::string_view id) const
{
    for (ScenePlacement const& placement : Component(component).placements)
        if (placement.object ? placement.id == id : m_model->Components()[placement.target].id == id)
            return placement;
    throw std::runtime_error("no such placement: " + std::string(id));
}

SceneGeometry const& ModelScene::Geometry(std::string_view component, std::string_view id) const
{
    for (SceneGeometry const& geometry : Component(component).geometry)
        if (geometry.id == id)
            return geometry;
    throw std::runtime_error("no such geometry: " + std::string(id));
}

namespace
{

std::string MoveText(double x)
{
    return "1 0 0 " + std::to_string(x) + " 0 1 0 0 0 0 1 0 0 0 0 1";
}

std::string InstanceText(std::string const& id, std::string const& target, bool isVisible, std::string const& inChild,
                         std::string const& more)
{
    return "<IInstance ID='" + id + "' Label='Label of " + id + "' Visibility='" + (isVisible ? "1" : "0") +
           "'><Child ID='" + target + "'" + inChild + "/>" + more + "</IInstance>";
}

}  // namespace

std::string File(std::vector<std::string> const& children, std::string const& declared)
{
    std::string text = "<IFile ID='f' Label='File' IsRoot='1'><Unit LengthUnit='kUnitType_Millimeter'/><AttributeSet>" +
                       declared + "</AttributeSet><ChildSet>";
    for (std::string const& child : children)
        text += "<Child ID='" + child + "'/>";
    return text + "</ChildSet></IFile>";
}

std::string Assembly(std::string const& id, std::string const& children, std::string const& more)
{
    return "<IAssembly ID='" + id + "' Label='Label of " + id + "'>" + more + "<ChildSet>" + children +
           "</ChildSet></IAssembly>";
}

std::string Part(std::string const& id, std::string const& children, std::string const& more)
{
    return "<IPart ID='" + id + "' Label='Label of " + id + "'>" + more + "<ChildSet>" + children +
           "</ChildSet></IPart>";
}

std::string Instance(std::string const& id, std::string const& target, std::string const& more)
{
    return InstanceText(id, target, true, {}, more);
}

std::string HiddenInstance(std::string const& id, std::string const& target)
{
    return InstanceText(id, target, false, {}, {});
}

std::string StyledInstance(std::string const& id, std::string const& target, std::string const& style)
{
    return InstanceText(id, target, true, {}, "<Styles><StyleRef ID='" + style + "'/></Styles>");
}

std::string MovedInstance(std::string const& id, std::string const& target, double x)
{
    return InstanceText(id, target, true, " Transformation='" + MoveText(x) + "'", {});
}

std::string Point(std::string const& id, std::string const& more)
{
    return "<IPoint ID='" + id + "' Label='Label of " + id + "' Visibility='1'><Point X='1' Y='2' Z='3'/>" + more +
           "</IPoint>";
}

std::string Body(std::string const& id)
{
    return "<IBrep ID='" + id + "' Label='Label of " + id + "' Visibility='1'/>";
}

std::string MeshOf(std::string const& id, std::string const& body)
{
    return "<IPolygonMesh ID='" + id + "' Label='Label of " + id +
           "' Visibility='1'><ExtensionData TypeId='kvr.body' Content='" + body + "'/></IPolygonMesh>";
}

std::string CrossLevel(std::string const& content)
{
    return "<CrossLevelAttributes>" + content + "</CrossLevelAttributes>";
}

std::string Shows(std::string const& path, bool isVisible)
{
    return "<Visibilities><EntityVisibility Path='" + path + "' Visibility='" + (isVisible ? "1" : "0") +
           "'/></Visibilities>";
}

std::string Styles(std::string const& path, std::string const& style)
{
    return "<Styles><EntityStyles Path='" + path + "'><Styles><StyleRef ID='" + style +
           "'/></Styles></EntityStyles></Styles>";
}

std::string Moves(std::string const& path, double x)
{
    return "<Transformations><EntityTransformation Path='" + path + "' Transformation='" + MoveText(x) +
           "'/></Transformations>";
}

std::vector<std::string> PathsOf(KVR::Scene const& scene, OccurrenceWalk::Mode mode)
{
    std::vector<std::string> paths;
    for (OccurrenceWalk walk(scene, mode); walk.Next();)
    {
        std::string text;
        for (std::string_view const id : walk.Path())
            text += (text.empty() ? "" : "/") + std::string(id);
        paths.push_back(walk.Depth() == 0 ? std::string(walk.Component().id) : text);
    }
    return paths;
}

}  // namespace KVR::Test

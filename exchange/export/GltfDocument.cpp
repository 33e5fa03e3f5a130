#include "exchange/export/GltfDocument.h"

#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "framework/api/kvr_api.h"
#include "framework/kernel/entity.h"
#include "scene/Transform.h"

namespace KVR
{

namespace
{

// Each is a node, which takes some kilobytes of memory until all is written.
constexpr unsigned long long kMostOccurrences = 1'000'000;

using tinygltf::Value;

// glTF writes matrices column by column.
std::vector<double> ColumnsOf(Matrix const& matrix)
{
    std::vector<double> columns;
    for (std::size_t column = 0; column < 4; ++column)
        for (std::size_t row = 0; row < 4; ++row)
            columns.push_back(matrix[4 * row + column]);
    return columns;
}

// Turns a direction upwards, which in glTF is y, the short way.
Matrix TurnUp(std::array<double, 3> const& up)
{
    // The axis is up x y, and the cosine the y of up.
    double const x = -up[2];
    double const z = up[0];
    double const cosine = up[1];
    Matrix turn = kIdentity;
    if (cosine < -1.0 + 1e-12)
    {
        turn[5] = turn[10] = -1.0;
        return turn;
    }
    double const k = 1.0 / (1.0 + cosine);
    turn = {cosine + x * x * k, -z, x * z * k, 0, z, cosine, -x, 0, x * z * k, x, cosine + z * z * k, 0, 0, 0, 0, 1};
    return turn;
}

char const* KindText(SceneComponent::Kind kind)
{
    switch (kind)
    {
        case SceneComponent::Kind::kFile:
            return "IFile";
        case SceneComponent::Kind::kAssembly:
            return "IAssembly";
        case SceneComponent::Kind::kPart:
            break;
    }
    return "IPart";
}

std::string LabelOf(std::string_view label, std::string_view id)
{
    return std::string(label.empty() ? id : label);
}

}  // namespace

GltfDocument::GltfDocument(ExportTask& task) : m_task(task), m_scene(task.scene)
{
    m_model.asset.version = "2.0";
    m_model.asset.generator = "kvr_xml_producer";
    m_model.defaultScene = 0;
    m_model.scenes.emplace_back();
    m_model.buffers.emplace_back();
    for (SceneLayer const& layer : m_scene.Layers())
        for (std::string_view const item : layer.items)
            m_layersOf[item].push_back(layer.label.empty() ? layer.id : layer.label);
}

void GltfDocument::Build()
{
    RefuseMoreOccurrences(m_scene, kMostOccurrences);
    AddOccurrences();
    AddCameras(TurnUp(m_scene.UpVector()));
    AddExtras();
    // A buffer without content is none.
    if (m_model.buffers.front().data.empty())
        m_model.buffers.clear();
}

int GltfDocument::AddNode(tinygltf::Node node, int parent)
{
    int const index = static_cast<int>(m_model.nodes.size());
    m_model.nodes.push_back(std::move(node));
    if (parent < 0)
        m_model.scenes.front().nodes.push_back(index);
    else
        m_model.nodes[static_cast<std::size_t>(parent)].children.push_back(index);
    return index;
}

Value::Object GltfDocument::ExtrasOf(std::string_view id, IObject const* object)
{
    Value::Object extras;
    if (!id.empty())
        extras["id"] = Value(std::string(id));
    auto const layers = m_layersOf.find(id);
    if (layers != m_layersOf.end())
    {
        Value::Array list;
        for (std::string_view const layer : layers->second)
            list.emplace_back(std::string(layer));
        extras["layers"] = Value(list);
    }
    if (!object)
        return extras;
    UTF8String persistentId;
    if (object->VersionPersistentId(persistentId) == kIsValueSpecified_Yes)
        extras["versionPersistentId"] = Value(std::string(persistentId.View()));
    Value::Object properties;
    for (SceneProperty const& property : m_scene.PropertiesOf(*object))
    {
        if (auto const* const text = std::get_if<std::string>(&property.value))
            properties[property.name] = Value(*text);
        else if (auto const* const number = std::get_if<double>(&property.value))
            properties[property.name] = Value(*number);
        else if (auto const* const integer = std::get_if<int>(&property.value))
            properties[property.name] = Value(*integer);
        else if (auto const* const flag = std::get_if<bool>(&property.value))
            properties[property.name] = Value(*flag);
    }
    if (!properties.empty())
        extras["properties"] = Value(properties);
    return extras;
}

bool GltfDocument::SetTransform(tinygltf::Node& node, Matrix const& transform, int& inner)
{
    inner = -1;
    if (transform == kIdentity)
        return true;
    if (!IsSolid(transform))
    {
        m_task.notCarried.Add("occurrences of which their transform leaves nothing");
        return false;
    }
    if (HasRightAngles(transform))
    {
        node.matrix = ColumnsOf(transform);
        return true;
    }
    TwoTransforms const two = TwoTransforms::Of(transform);
    node.matrix = ColumnsOf(two.outer);
    tinygltf::Node below;
    below.matrix = ColumnsOf(two.inner);
    inner = static_cast<int>(m_model.nodes.size());
    m_model.nodes.push_back(std::move(below));
    node.children.push_back(inner);
    return true;
}

void GltfDocument::AddOccurrences()
{
    // Of each level down to the current one, the node that takes what is below.
    std::vector<int> nodes;
    for (OccurrenceWalk walk(m_scene); walk.Next();)
    {
        if (!walk.State().isVisible)
        {
            m_task.notCarried.Add("hidden occurrences");
            walk.SkipBelow();
            continue;
        }
        nodes.resize(walk.Depth());
        int const node = AddOccurrence(walk, nodes.empty() ? -1 : nodes.back());
        if (node < 0)
        {
            walk.SkipBelow();
            continue;
        }
        nodes.push_back(node);
        AddProperties(walk.Component(), node);
        for (SceneGeometry const& geometry : walk.Component().geometry)
            AddGeometry(geometry, walk, node);
    }
}

int GltfDocument::AddOccurrence(OccurrenceWalk const& walk, int parent)
{
    SceneComponent const& component = walk.Component();
    tinygltf::Node node;
    ScenePlacement const* const placement = walk.Placement();
    if (!placement)
    {
        Matrix const toScene = Product(TurnUp(m_scene.UpVector()), Scaling(component.metresPerUnit));
        node.name = LabelOf(component.label, component.id);
        node.extras = Value(ExtrasOf(component.id, component.object));
        if (toScene != kIdentity)
            node.matrix = ColumnsOf(toScene);
        return AddNode(std::move(node), parent);
    }
    std::string_view const id = placement->id.empty() ? component.id : placement->id;
    node.name = LabelOf(placement->label.empty() ? component.label : placement->label, id);
    Value::Object extras = ExtrasOf(id, placement->object ? placement->object : component.object);
    extras["kind"] = Value(std::string(KindText(component.kind)));
    if (!placement->id.empty())
    {
        extras["component"] = Value(std::string(component.id));
        extras["componentLabel"] = Value(std::string(component.label));
    }
    node.extras = Value(extras);
    int inner = -1;
    if (!SetTransform(node, walk.Step(), inner))
        return -1;
    int const index = AddNode(std::move(node), parent);
    return inner >= 0 ? inner : index;
}

void GltfDocument::AddProperties(SceneComponent const& component, int node)
{
    if (component.properties.empty())
        return;
    Value::Object properties;
    for (SceneProperty const& property : component.properties)
    {
        auto const* const text = std::get_if<std::string>(&property.value);
        auto const* const flag = std::get_if<bool>(&property.value);
        std::optional<double> const number = NumberOf(property);
        properties[property.name] = text ? Value(*text) : flag ? Value(*flag) : number ? Value(*number) : Value();
    }
    Value const& extras = m_model.nodes[static_cast<std::size_t>(node)].extras;
    Value::Object all = extras.IsObject() ? extras.Get<Value::Object>() : Value::Object();
    all["componentProperties"] = Value(properties);
    m_model.nodes[static_cast<std::size_t>(node)].extras = Value(all);
}

void GltfDocument::AddGeometry(SceneGeometry const& geometry, OccurrenceWalk const& walk, int parent)
{
    OccurrenceState const& state = walk.State();
    // The mesh of a body stands for it, whether the body is shown or not.
    if (geometry.kind == GeometryKind::kBody && geometry.hasMesh)
        return;
    if (!state.IsVisible(geometry))
    {
        m_task.notCarried.Add("hidden pieces of geometry");
        return;
    }
    if (geometry.kind == GeometryKind::kOther || geometry.kind == GeometryKind::kCloud)
    {
        m_task.notCarried.Add("objects of the kind " + std::string(geometry.className));
        return;
    }
    int const mesh = MeshOf(geometry, state);
    if (mesh < 0)
        return;
    tinygltf::Node node;
    node.name = LabelOf(geometry.label, geometry.id);
    node.mesh = mesh;
    Value::Object extras = ExtrasOf(geometry.id, geometry.object);
    if (!geometry.bodyId.empty())
        extras["body"] = Value(std::string(geometry.bodyId));
    node.extras = Value(extras);
    int inner = -1;
    if (!SetTransform(node, state.PlaceOf(geometry, walk.Component()), inner))
        return;
    if (inner >= 0)
        std::swap(m_model.nodes[static_cast<std::size_t>(inner)].mesh, node.mesh);
    AddNode(std::move(node), parent);
}

int GltfDocument::MeshOf(SceneGeometry const& geometry, OccurrenceState const& state)
{
    MeshKey const key{geometry.object, state.StyleOf(geometry), state.KeepsFaceStyles(geometry)};
    auto const [entry, isNew] = m_meshes.try_emplace(key, -1);
    if (isNew)
        entry->second = MakeMesh(geometry, std::get<1>(key), std::get<2>(key));
    return entry->second;
}

int GltfDocument::MakeMesh(SceneGeometry const& geometry, SceneStyle const* style, bool keepsFaceStyles)
{
    tinygltf::Mesh mesh;
    mesh.name = LabelOf(geometry.label, geometry.id);
    for (Drawing const& drawing : DrawingsOf(geometry))
    {
        tinygltf::Primitive& primitive = mesh.primitives.emplace_back(drawing.primitive);
        primitive.material = MaterialOf(keepsFaceStyles && drawing.style ? drawing.style : style, drawing.isCurve);
    }
    if (mesh.primitives.empty())
        return -1;
    m_model.meshes.push_back(std::move(mesh));
    return static_cast<int>(m_model.meshes.size()) - 1;
}

std::vector<GltfDocument::Drawing> const& GltfDocument::DrawingsOf(SceneGeometry const& geometry)
{
    auto const [entry, isNew] = m_drawings.try_emplace(geometry.object);
    std::vector<Drawing>& drawings = entry->second;
    if (!isNew)
        return drawings;
    CurveTolerance const tolerance{m_task.options.deflection, 0.0};
    switch (geometry.kind)
    {
        case GeometryKind::kMesh:
        {
            SceneMesh const mesh = SceneMesh::Of(*geometry.mesh);
            m_task.notCarried.Add("polygons whose indices make no sense", mesh.brokenPolygons);
            AddTriangles(drawings, mesh);
            break;
        }
        case GeometryKind::kBody:
        {
            SceneMesh const mesh = SceneMesh::Of(*geometry.body, m_task.options.deflection);
            m_task.notCarried.Add("faces that could not be meshed", mesh.facesWithoutTriangles);
            AddTriangles(drawings, mesh);
            if (mesh.runs.empty() && geometry.body->Body())
                AddLines(drawings, CurvePoints::OfEdges(geometry.body->Body()->Shape(), tolerance));
            break;
        }
        case GeometryKind::kCurve:
            AddLines(drawings, CurvePoints::Of(*geometry.curve, tolerance));
            break;
        case GeometryKind::kPoint:
            AddPoint(drawings, *geometry.point);
            break;
        case GeometryKind::kCloud:
        case GeometryKind::kOther:
            break;
    }
    if (drawings.empty())
        m_task.notCarried.Add("pieces of geometry with nothing to draw");
    return drawings;
}

void GltfDocument::AddTriangles(std::vector<Drawing>& drawings, SceneMesh const& mesh)
{
    for (SceneMesh::Run const& run : mesh.runs)
    {
        Drawing& drawing = drawings.emplace_back();
        drawing.style = m_scene.StyleOf(run.style);
        drawing.primitive.mode = TINYGLTF_MODE_TRIANGLES;
        auto& attributes = drawing.primitive.attributes;
        attributes["POSITION"] = AddPoints(std::span(mesh.positions).subspan(3 * run.firstVertex, 3 * run.vertexCount));
        if (run.hasNormals)
            attributes["NORMAL"] = AddFloats(std::span(mesh.normals).subspan(3 * run.firstVertex, 3 * run.vertexCount),
                                             TINYGLTF_TYPE_VEC3);
        if (run.hasTexture)
            attributes["TEXCOORD_0"] = AddFloats(
                std::span(mesh.texture).subspan(2 * run.firstVertex, 2 * run.vertexCount), TINYGLTF_TYPE_VEC2);
        drawing.primitive.indices =
            AddIndices(std::span(mesh.indices).subspan(3 * run.firstTriangle, 3 * run.triangleCount), run.firstVertex,
                       run.vertexCount);
    }
}

void GltfDocument::AddLines(std::vector<Drawing>& drawings, SceneLines const& lines)
{
    for (std::size_t i = 0; i < lines.Count(); ++i)
    {
        Drawing& drawing = drawings.emplace_back();
        drawing.isCurve = true;
        drawing.primitive.mode = TINYGLTF_MODE_LINE_STRIP;
        drawing.primitive.attributes["POSITION"] = AddPoints(lines.At(i));
    }
}

void GltfDocument::AddPoint(std::vector<Drawing>& drawings, IPoint const& point)
{
    std::array<double, 3> const position{point.X(), point.Y(), point.Z()};
    for (double const x : position)
        if (!(std::abs(x) <= std::numeric_limits<float>::max()))
            return;
    Drawing& drawing = drawings.emplace_back();
    drawing.isCurve = true;
    drawing.primitive.mode = TINYGLTF_MODE_POINTS;
    drawing.primitive.attributes["POSITION"] = AddPoints(position);
}

}  // namespace KVR

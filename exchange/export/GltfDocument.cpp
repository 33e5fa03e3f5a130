#include "exchange/export/GltfDocument.h"

#include "exchange/export/GltfPlace.h"
#include "framework/api/kvr_api.h"

namespace KVR
{

namespace
{

// Each is a node, which takes some kilobytes of memory until all is written.
constexpr unsigned long long kMostOccurrences = 1'000'000;

using tinygltf::Value;

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

GltfDocument::GltfDocument(ExportTask& task, bool embedsImages)
    : m_task(task),
      m_scene(task.scene),
      m_primitives(task, m_model),
      m_materials(task, m_model, embedsImages),
      m_notes(task, m_model, m_primitives, m_materials)
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
    Matrix const turn = TurnUp(m_scene.UpVector());
    AddOccurrences(turn);
    AddNotes(turn);
    AddCameras(turn);
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

void GltfDocument::AddNotes(Matrix const& turn)
{
    std::vector<int> notes = m_notes.Write();
    if (notes.empty())
        return;
    tinygltf::Node group;
    group.name = "Notes";
    group.children = std::move(notes);
    group.matrix = ColumnsOf(Product(turn, Scaling(m_scene.MetresPerUnit())));
    AddNode(std::move(group), -1);
}

void GltfDocument::AddOccurrences(Matrix const& turn)
{
    // Of each level down to the current one, the node that takes what is below.
    std::vector<int> nodes;
    for (OccurrenceWalk walk(m_scene); walk.Next();)
    {
        m_task.NextOccurrence();
        if (!walk.State().isVisible && !m_task.options.hiddenNodes)
        {
            m_task.notCarried.Add("hidden occurrences");
            walk.SkipBelow();
            continue;
        }
        nodes.resize(walk.Depth());
        int const node = AddOccurrence(walk, turn, nodes.empty() ? -1 : nodes.back());
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

int GltfDocument::AddOccurrence(OccurrenceWalk const& walk, Matrix const& turn, int parent)
{
    SceneComponent const& component = walk.Component();
    tinygltf::Node node;
    ScenePlacement const* const placement = walk.Placement();
    if (!placement)
    {
        Matrix const toScene = Product(turn, Scaling(component.metresPerUnit));
        node.name = LabelOf(component.label, component.id);
        node.extras = Value(ExtrasOf(component.id, component.object));
        if (toScene != kIdentity)
            node.matrix = ColumnsOf(toScene);
        if (!walk.State().isVisible)
            HideNode(node, m_model);
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
    if (!walk.State().isVisible)
        HideNode(node, m_model);
    int inner = -1;
    if (!Place(node, walk.Step(), inner))
        return -1;
    int const index = AddNode(std::move(node), parent);
    return inner >= 0 ? inner : index;
}

// Counts what has no place.
bool GltfDocument::Place(tinygltf::Node& node, Matrix const& transform, int& inner)
{
    bool const isSolid = GltfPlace::Of(transform).AddTo(node, m_model, &inner);
    m_task.notCarried.Add("occurrences of which their transform leaves nothing", isSolid ? 0 : 1);
    return isSolid;
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
    if (!state.IsVisible(geometry) && !m_task.options.hiddenNodes)
    {
        m_task.notCarried.Add("hidden pieces of geometry");
        return;
    }
    if (auto const* const callout = dynamic_cast<IAnnotationCallout const*>(geometry.object))
        return m_notes.Add(walk, geometry, *callout);
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
    if (!state.IsVisible(geometry))
        HideNode(node, m_model);
    int inner = -1;
    if (Place(node, state.PlaceOf(geometry, walk.Component()), inner))
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
    GltfGeometry const& made = m_primitives.Of(geometry);
    for (GltfDrawing const& drawing : made.drawings)
    {
        tinygltf::Primitive& primitive = mesh.primitives.emplace_back(drawing.primitive);
        primitive.material = m_materials.Of(keepsFaceStyles && drawing.style ? drawing.style : style, drawing.surface);
    }
    if (mesh.primitives.empty())
        return -1;
    if (made.faces.IsArray())
    {
        Value::Object extras;
        extras["faces"] = made.faces;
        mesh.extras = Value(extras);
    }
    m_model.meshes.push_back(std::move(mesh));
    return static_cast<int>(m_model.meshes.size()) - 1;
}

}  // namespace KVR

#include "exchange/export/SceneModelReader.h"
#include "framework/api/LengthUnits.h"
#include "scene/conventions/ExtensionTypes.h"

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>

#include "exchange/export/GeometryFinder.h"
#include "framework/api/kvr_api.h"

namespace KVR
{

namespace
{

// Of sets of geometry in one another.
constexpr std::size_t kMostSets = 1000;
// Of ids in an occurrence path: no scene is read deeper.
constexpr unsigned long long kLongestPath = 1000;

std::string Text(UTF8String const& text)
{
    return std::string(text.View());
}
std::string Text(UTF16String const& text)
{
    return Text(UTF8String(text));
}

std::array<double, 3> Triple(Color const& color)
{
    return {std::clamp(color.Red(), 0.0, 1.0), std::clamp(color.Green(), 0.0, 1.0), std::clamp(color.Blue(), 0.0, 1.0)};
}

bool IsUsable(IdSet const& path)
{
    return !path.IsEmpty() && path.Size() <= kLongestPath;
}

ModelOverride& OverrideAt(std::shared_ptr<ModelOverride>& top, IdSet const& path)
{
    if (!top)
        top = std::make_shared<ModelOverride>();
    ModelOverride* entry = top.get();
    for (unsigned long long i = 0; i < path.Size(); ++i)
    {
        auto& below = entry->below[Text(path.At(i))];
        if (!below)
            below = std::make_unique<ModelOverride>();
        entry = below.get();
    }
    return *entry;
}

}  // namespace

SceneModelReader::SceneModelReader(SceneModel& model, IProducer& producer, SceneFilter const& filter)
    : m_model(model), m_producer(producer), m_filter(filter)
{
}

void SceneModelReader::Read(UTF8String const& rootId)
{
    m_model.root = ComponentOf(rootId);
    while (!m_waiting.empty())
    {
        std::size_t const index = m_waiting.front();
        m_waiting.pop_front();
        ReadComponent(index);
    }
    // What states no unit is in that of the scene.
    for (ModelComponent& component : m_model.components)
        if (component.metresPerUnit == 0.0)
            component.metresPerUnit = m_model.metresPerUnit;
    ReadUpVector();
    CutCycles();
    ApplyFilter();
}

std::size_t SceneModelReader::ComponentOf(UTF8String const& id)
{
    auto const known = m_components.find(Text(id));
    if (known != m_components.end())
        return known->second;
    IObject* const object = id.IsEmpty() ? nullptr : m_producer.Load(id);
    bool const isFile = dynamic_cast<IFile*>(object) != nullptr;
    bool const isAssembly = dynamic_cast<IAssembly*>(object) != nullptr;
    if (!isFile && !isAssembly && !dynamic_cast<IPart*>(object))
        return SceneModel::kNone;
    std::size_t const index = m_model.components.size();
    m_components.emplace(Text(id), index);
    ModelComponent& component = m_model.components.emplace_back();
    component.kind = isFile       ? ModelComponent::Kind::kFile
                     : isAssembly ? ModelComponent::Kind::kAssembly
                                  : ModelComponent::Kind::kPart;
    component.object = object;
    component.id = Text(id);
    component.label = Text(object->Label());
    m_waiting.push_back(index);
    return index;
}

void SceneModelReader::ReadComponent(std::size_t index)
{
    IObject* const object = m_model.components[index].object;
    double metres = 0.0;
    UnitTypeEnum unit = kUnitType_Unknown;
    if (auto const* const measured = dynamic_cast<IUnit const*>(object);
        measured && measured->LengthUnit(unit) == kIsValueSpecified_Yes)
        metres = MetresOf(unit);
    m_model.components[index].metresPerUnit = metres;
    if (metres > 0.0 && !m_hasUnit)
    {
        m_model.unit = unit;
        m_model.metresPerUnit = metres;
        m_hasUnit = true;
    }
    ReadAttributeSets(*object);
    ReadProperties(m_model.components[index]);
    std::unordered_set<std::string> seen;
    if (auto const* const component = dynamic_cast<IComponent const*>(object))
    {
        m_model.components[index].style = FirstStyle(component->Styles());
        if (auto const* const assembly = dynamic_cast<IAssembly const*>(object))
            ReadOverrides(m_model.components[index], *assembly);
        ReadChildren(index, component->ChildCount(), seen);
    }
    else if (auto const* const file = dynamic_cast<IFile const*>(object))
        ReadChildren(index, file->ChildCount(), seen);
    JoinMeshesAndBodies(m_model.components[index]);
}

void SceneModelReader::ReadChildren(std::size_t index, unsigned long long count, std::unordered_set<std::string>& seen)
{
    IObject const* const object = m_model.components[index].object;
    auto const* const file = dynamic_cast<IFile const*>(object);
    auto const* const assembly = dynamic_cast<IAssembly const*>(object);
    auto const* const part = dynamic_cast<IPart const*>(object);
    for (unsigned long long i = 0; i < count; ++i)
    {
        UTF8String const id = file       ? file->ChildAt(i).Id()
                              : assembly ? assembly->ChildAt(i).Id()
                                         : part->ChildAt(i).Id();
        // A child that is listed twice is one object.
        if (!id.IsEmpty() && seen.insert(Text(id)).second)
            ReadChild(index, id);
    }
}

void SceneModelReader::ReadChild(std::size_t index, UTF8String const& id)
{
    IObject* const object = m_producer.Load(id);
    if (!object)
        return;
    if (auto* const instance = dynamic_cast<IInstance*>(object))
    {
        ReadInstance(index, *instance);
        return;
    }
    if (std::size_t const target = ComponentOf(id); target != SceneModel::kNone)
    {
        ModelPlacement placement;
        placement.target = target;
        m_model.components[index].placements.push_back(std::move(placement));
        return;
    }
    ReadGeometry(m_model.components[index], *object, kIdentity, true, 0);
}

void SceneModelReader::ReadInstance(std::size_t index, IInstance& instance)
{
    std::size_t const target = ComponentOf(instance.TargetId().Id());
    if (target == SceneModel::kNone)
    {
        ++m_model.missingTargets;
        return;
    }
    ModelPlacement placement;
    placement.object = &instance;
    placement.id = Text(instance.Id());
    placement.label = Text(instance.Label());
    placement.target = target;
    placement.transform = PlaceOf(instance.Transform());
    placement.isVisible = instance.IsVisible();
    placement.style = FirstStyle(instance.Styles());
    m_model.components[index].placements.push_back(std::move(placement));
}

void SceneModelReader::ReadGeometry(ModelComponent& component, IObject& object, Matrix const& place, bool isVisible,
                                    std::size_t depth)
{
    auto const readSet = [&](auto const& set)
    {
        if (depth >= kMostSets)
            return;
        Matrix const inner = Product(place, PlaceOf(set.Transform()));
        for (unsigned long long i = 0; i < set.ChildCount(); ++i)
        {
            UTF8String const id = set.ChildAt(i).Id();
            IObject* const child = id.IsEmpty() ? nullptr : m_producer.Load(id);
            if (child)
                ReadGeometry(component, *child, inner, isVisible && set.IsVisible(), depth + 1);
        }
    };
    if (auto const* const set = dynamic_cast<IGeometricSet const*>(&object))
        return readSet(*set);
    if (auto const* const set = dynamic_cast<IExtensionGeometry const*>(&object))
        return readSet(*set);
    GeometryFinder finder;
    object.AcceptVisitor(&finder);
    ModelGeometry& geometry = finder.geometry;
    if (geometry.className.empty())
        return;
    geometry.object = &object;
    geometry.id = Text(object.Id());
    geometry.label = Text(object.Label());
    geometry.transform = Product(place, geometry.transform);
    geometry.isVisible = geometry.isVisible && isVisible;
    geometry.style = FirstStyle(finder.styles);
    ExtensionDataContent content;
    if (geometry.mesh && object.ExtensionDataByTypeId(kBodyTypeId, content) == kIsValueSpecified_Yes)
        geometry.bodyId = Text(content.Data());
    if (geometry.body)
        if (SubEntityToStylesMap const* const map = geometry.body->StylesMap())
            for (unsigned long long i = 0; i < map->Size(); ++i)
                FirstStyle(map->StylesAt(i));
    if (geometry.mesh)
    {
        IdSetSet materials;
        if (geometry.mesh->PolygonMaterials(materials) == kIsValueSpecified_Yes)
            for (unsigned long long i = 0; i < materials.Size(); ++i)
                FirstStyle(materials.At(i));
    }
    component.geometry.push_back(std::move(geometry));
}

void SceneModelReader::ReadOverrides(ModelComponent& component, IAssembly const& assembly)
{
    for (unsigned long long i = 0; i < assembly.CrossLevelVisibilityCount(); ++i)
    {
        IdSet path;
        bool isVisible = true;
        assembly.CrossLevelVisibilityAt(i, path, isVisible);
        if (IsUsable(path))
            OverrideAt(component.overrides, path).isVisible = isVisible;
    }
    for (unsigned long long i = 0; i < assembly.CrossLevelStyleCount(); ++i)
    {
        IdSet path;
        IdSet styles;
        assembly.CrossLevelStyleAt(i, path, styles);
        if (IsUsable(path) && !styles.IsEmpty())
            OverrideAt(component.overrides, path).style = FirstStyle(styles);
    }
    for (unsigned long long i = 0; i < assembly.CrossLevelTransformCount(); ++i)
    {
        IdSet path;
        Matrix3d transform;
        assembly.CrossLevelTransformAt(i, path, transform);
        if (IsUsable(path))
            OverrideAt(component.overrides, path).transform = PlaceOf(&transform);
    }
}

std::string SceneModelReader::FirstStyle(IdSet const& styles)
{
    if (styles.IsEmpty())
        return {};
    std::string id = Text(styles.At(0));
    ReadStyle(id);
    return id;
}

void SceneModelReader::ReadStyle(std::string const& id)
{
    if (id.empty() || m_model.styles.contains(id))
        return;
    ModelStyle style;
    style.id = id;
    auto const* const object = dynamic_cast<IRenderStyle const*>(m_producer.Load(UTF8String(id)));
    if (object)
    {
        style.label = Text(object->Label());
        Color color;
        if (object->DiffuseColor(color) == kIsValueSpecified_Yes)
        {
            style.diffuse = Triple(color);
            style.opacity = std::clamp(color.Alpha(), 0.0, 1.0);
        }
        double transparency = 0.0;
        if (object->Transparency(transparency) == kIsValueSpecified_Yes && style.opacity == 1.0)
            style.opacity = 1.0 - std::clamp(transparency, 0.0, 1.0);
        Color emission;
        if (object->EmissionColor(emission) == kIsValueSpecified_Yes)
            style.emission = Triple(emission);
        ExtensionDataContent content;
        if (object->ExtensionDataByTypeId(kPbrTypeId, content) == kIsValueSpecified_Yes)
        {
            auto const values = nlohmann::json::parse(Text(content.Data()), nullptr, false);
            auto const number = [&](char const* name, std::optional<double>& value)
            {
                if (values.is_object() && values.contains(name) && values[name].is_number())
                    value = std::clamp(values[name].get<double>(), 0.0, 1.0);
            };
            number("metallicFactor", style.metallic);
            number("roughnessFactor", style.roughness);
        }
    }
    m_model.styles.emplace(id, std::move(style));
}

void SceneModelReader::ReadAttributeSets(IObject const& object)
{
    auto const* const sets = dynamic_cast<IAttributeSets const*>(&object);
    if (!sets)
        return;
    IdSet const layers = sets->LayerSet();
    for (unsigned long long i = 0; i < layers.Size(); ++i)
    {
        auto const* const layer = dynamic_cast<ILayer const*>(m_producer.Load(layers.At(i)));
        if (!layer || !m_attributeIds.insert(Text(layers.At(i))).second)
            continue;
        ModelLayer entry;
        entry.id = Text(layers.At(i));
        entry.label = Text(layer->Label());
        entry.description = Text(layer->Description());
        entry.number = layer->LayerNumber();
        entry.isVisible = layer->IsVisible();
        for (unsigned long long item = 0; item < layer->GeometryItems().Size(); ++item)
            entry.items.push_back(Text(layer->GeometryItems().At(item)));
        m_model.layers.push_back(std::move(entry));
    }
    auto const collect = [&](IdSet const& ids, std::vector<std::string>& list)
    {
        for (unsigned long long i = 0; i < ids.Size(); ++i)
            if (m_attributeIds.insert(Text(ids.At(i))).second)
                list.push_back(Text(ids.At(i)));
    };
    collect(sets->CameraSet(), m_model.cameraIds);
    collect(sets->ViewSet(), m_model.viewIds);
    IdSet const styles = sets->StyleSet();
    for (unsigned long long i = 0; i < styles.Size(); ++i)
        ReadStyle(Text(styles.At(i)));
}

void SceneModelReader::ReadProperties(ModelComponent& component)
{
    auto const* const part = dynamic_cast<IComponent const*>(component.object);
    FileProperties const* const properties = part ? part->FileProperties() : nullptr;
    if (!properties)
        return;
    for (unsigned long long i = 0; i < properties->CustomPropertyCount(); ++i)
    {
        CustomProperty property;
        if (properties->CustomPropertyAt(i, property) != kIsValueSpecified_Yes)
            continue;
        ModelProperty entry;
        entry.name = Text(property.Name());
        UTF16String text;
        double number = 0.0;
        int integer = 0;
        bool flag = false;
        nlohmann::json value;
        if (property.Value(text) == kIsValueSpecified_Yes)
            value = Text(text);
        else if (property.Value(number) == kIsValueSpecified_Yes)
            value = number;
        else if (property.Value(integer) == kIsValueSpecified_Yes)
            value = integer;
        else if (property.Value(flag) == kIsValueSpecified_Yes)
            value = flag;
        entry.json = value.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
        component.properties.push_back(std::move(entry));
    }
}

void SceneModelReader::JoinMeshesAndBodies(ModelComponent& component)
{
    std::unordered_set<std::string> meshed;
    for (ModelGeometry const& geometry : component.geometry)
        if (!geometry.bodyId.empty())
            meshed.insert(geometry.bodyId);
    for (ModelGeometry& geometry : component.geometry)
        geometry.hasMesh = geometry.kind == GeometryKind::kBody && meshed.contains(geometry.id);
}

void SceneModelReader::ReadUpVector()
{
    IUniverse const* const universe = m_producer.LoadUniverse();
    ViewingData viewing;
    if (!universe || universe->ViewingDataOf(viewing) != kIsValueSpecified_Yes)
        return;
    Vector const& up = viewing.UpVector();
    double const length = std::sqrt(up[0] * up[0] + up[1] * up[1] + up[2] * up[2]);
    if (length > 0.0 && std::isfinite(length))
        m_model.upVector = {up[0] / length, up[1] / length, up[2] / length};
}

}  // namespace KVR

#include "host/export/GltfExtras.h"

#include <cmath>
#include <limits>

#include "framework/api/IView.h"
#include "framework/api/kvr_api.h"

namespace KVR
{

namespace
{

using nlohmann::json;

std::string Text(UTF8String const& text)
{
    return std::string(text.View());
}

json TextsOf(IdSet const& ids)
{
    json texts = json::array();
    for (unsigned long long i = 0; i < ids.Size(); ++i)
        texts.push_back(Text(ids.At(i)));
    return texts;
}

json ValueOf(IProperty const& property)
{
    UTF16String text;
    int integer = 0;
    double number = 0.0;
    bool flag = false;
    std::tm time{};
    if (property.Value(text) == kIsValueSpecified_Yes)
        return Text(UTF8String(text));
    if (property.Value(integer) == kIsValueSpecified_Yes)
        return integer;
    if (property.Value(number) == kIsValueSpecified_Yes)
        return std::isfinite(number) ? json(number) : json();
    if (property.Value(flag) == kIsValueSpecified_Yes)
        return flag;
    if (property.Value(time) == kIsValueSpecified_Yes)
    {
        std::array<char, 64> written{};
        std::size_t const length = std::strftime(written.data(), written.size(), "%Y-%m-%dT%H:%M:%S", &time);
        return std::string(written.data(), length);
    }
    return {};
}

char const* KindOf(ModelComponent const& component)
{
    switch (component.kind)
    {
        case ModelComponent::Kind::kFile:
            return "file";
        case ModelComponent::Kind::kAssembly:
            return "assembly";
        default:
            return "part";
    }
}

}  // namespace

tinygltf::Value ExtrasOf(json const& value)
{
    if (value.is_object())
    {
        tinygltf::Value::Object object;
        for (auto const& [key, member] : value.items())
            object.emplace(key, ExtrasOf(member));
        return tinygltf::Value(std::move(object));
    }
    if (value.is_array())
    {
        tinygltf::Value::Array array;
        for (json const& member : value)
            array.push_back(ExtrasOf(member));
        return tinygltf::Value(std::move(array));
    }
    if (value.is_string())
        return tinygltf::Value(value.get<std::string>());
    if (value.is_boolean())
        return tinygltf::Value(value.get<bool>());
    if (value.is_number_integer())
    {
        auto const number = value.get<long long>();
        if (number >= std::numeric_limits<int>::min() && number <= std::numeric_limits<int>::max())
            return tinygltf::Value(static_cast<int>(number));
    }
    if (value.is_number())
        return tinygltf::Value(value.get<double>());
    return {};
}

void PutObjectExtras(ExportTask const& task, IObject const* object, json& extras)
{
    if (!object)
        return;
    UTF8String persistentId;
    if (object->VersionPersistentId(persistentId) == kIsValueSpecified_Yes && !persistentId.IsEmpty())
        extras["persistentId"] = Text(persistentId);
    IdSet const ids = object->PropertyIds();
    IUniverse const* const universe = ids.IsEmpty() ? nullptr : task.producer.LoadUniverse();
    PropertyDatabase const* const database = universe ? universe->PropertyDatabaseOf() : nullptr;
    if (!database)
        return;
    for (unsigned long long i = 0; i < ids.Size(); ++i)
    {
        IProperty const* property = nullptr;
        if (database->PropertyAt(ids.At(i), property) == kIsValueSpecified_Yes && property)
            extras["properties"][Text(UTF8String(property->Name()))] = ValueOf(*property);
    }
}

json ComponentExtras(ExportTask const& task, ModelComponent const& component)
{
    json extras = {{"kind", KindOf(component)}};
    if (!component.label.empty())
        extras["label"] = component.label;
    extras["metresPerUnit"] = component.metresPerUnit;
    PutObjectExtras(task, component.object, extras);
    for (ModelProperty const& property : component.properties)
        extras["customProperties"][property.name] = json::parse(property.json, nullptr, false);
    return extras;
}

json LayerExtras(SceneModel const& scene)
{
    json layers = json::array();
    for (ModelLayer const& layer : scene.layers)
    {
        json entry = {{"id", layer.id}, {"number", layer.number}, {"visible", layer.isVisible}, {"items", layer.items}};
        if (!layer.label.empty())
            entry["label"] = layer.label;
        if (!layer.description.empty())
            entry["description"] = layer.description;
        layers.push_back(std::move(entry));
    }
    return layers;
}

json ViewExtras(ExportTask const& task)
{
    json views = json::array();
    for (std::string const& id : task.scene.viewIds)
    {
        auto const* const view = dynamic_cast<IView const*>(task.producer.Load(UTF8String(id)));
        if (!view)
            continue;
        json entry = {{"id", id},
                      {"label", Text(UTF8String(view->Label()))},
                      {"active", view->IsActive()},
                      {"visible", view->IsVisible()},
                      {"cameras", TextsOf(view->CameraSet())}};
        json members = json::array();
        for (unsigned long long i = 0; i < view->ViewMemberCount(); ++i)
        {
            json member = {{"path", TextsOf(view->OccurrencePathAt(i))}, {"visible", view->EntityVisibilityAt(i)}};
            if (Matrix3d const transform = view->EntityTransformAt(i); !transform.IsIdentity())
                for (double const element : transform.Elements())
                    member["transform"].push_back(std::isfinite(element) ? json(element) : json());
            if (IdSet const styles = view->EntityStylesAt(i); !styles.IsEmpty())
                member["styles"] = TextsOf(styles);
            members.push_back(std::move(member));
        }
        if (!members.empty())
            entry["members"] = std::move(members);
        views.push_back(std::move(entry));
    }
    return views;
}

}  // namespace KVR

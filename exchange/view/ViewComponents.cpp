#include "exchange/view/ViewComponents.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <map>
#include <string>
#include <type_traits>
#include <unordered_set>
#include <variant>

#include "framework/api/LengthUnits.h"
#include "framework/api/UnitText.h"
#include "framework/api/kvr_api.h"

namespace KVR
{

namespace
{

std::string TextOf(std::tm const& time)
{
    std::array<char, 32> text{};
    return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S", &time)};
}

ViewJson ValueJson(SceneProperty const& property)
{
    return std::visit(
        [](auto const& value) -> ViewJson
        {
            using Value = std::decay_t<decltype(value)>;
            if constexpr (std::is_same_v<Value, std::monostate>)
                return nullptr;
            else if constexpr (std::is_same_v<Value, std::tm>)
                return TextOf(value);
            else if constexpr (std::is_same_v<Value, double>)
                return std::isfinite(value) ? ViewJson(value) : ViewJson(nullptr);
            else
                return value;
        },
        property.value);
}

// The name of a unit behind the prefix that all have, with a small letter.
std::string UnitName(UnitTypeEnum unit)
{
    char const* const text = TextOfUnit(unit);
    if (!text)
        return {};
    std::string name = std::string(text).substr(std::string_view("kUnitType_").size());
    name.front() = static_cast<char>(name.front() - 'A' + 'a');
    return name;
}

char const* SymbolOf(UnitTypeEnum unit)
{
    switch (unit)
    {
        case kUnitType_Micrometer:
            return "\u00B5m";
        case kUnitType_Millimeter:
            return "mm";
        case kUnitType_Centimeter:
            return "cm";
        case kUnitType_Decimeter:
            return "dm";
        case kUnitType_Meter:
            return "m";
        case kUnitType_Kilometer:
            return "km";
        case kUnitType_Microinch:
            return "\u00B5in";
        case kUnitType_Mil:
            return "mil";
        case kUnitType_Inch:
            return "in";
        case kUnitType_Foot:
            return "ft";
        case kUnitType_Yard:
            return "yd";
        case kUnitType_Mile:
            return "mi";
        default:
            return "";
    }
}

ViewJson FilePropertiesJson(FileProperties const& properties)
{
    using Getter = IsValueSpecifiedEnum (FileProperties::*)(UTF16String&) const;
    constexpr std::pair<char const*, Getter> kTexts[] = {{"title", &FileProperties::Title},
                                                         {"author", &FileProperties::Author},
                                                         {"organization", &FileProperties::Organization},
                                                         {"description", &FileProperties::Description},
                                                         {"sendingSystem", &FileProperties::SendingSystem},
                                                         {"partNumber", &FileProperties::PartNumber},
                                                         {"revision", &FileProperties::Revision},
                                                         {"preprocessor", &FileProperties::Preprocessor},
                                                         {"authorisation", &FileProperties::Authorisation}};
    ViewJson json = ViewJson::object();
    for (auto const& [name, getter] : kTexts)
        if (UTF16String text; (properties.*getter)(text) == kIsValueSpecified_Yes)
            SetText(json, name, UTF8String(text).View());
    if (Time time; properties.CreationDate(time) == kIsValueSpecified_Yes)
        json["creationDate"] = TextOf(time.Value());
    using UnitGetter = IsValueSpecifiedEnum (FileProperties::*)(UnitTypeEnum&) const;
    constexpr std::pair<char const*, UnitGetter> kUnits[] = {{"massUnit", &FileProperties::MassUnit},
                                                             {"timeUnit", &FileProperties::TimeUnit}};
    for (auto const& [name, getter] : kUnits)
    {
        UnitTypeEnum unit = kUnitType_Unknown;
        if ((properties.*getter)(unit) == kIsValueSpecified_Yes && unit != kUnitType_Unknown)
            SetText(json, name, UnitName(unit));
    }
    return json;
}

char const* KindText(SceneComponent::Kind kind)
{
    switch (kind)
    {
        case SceneComponent::Kind::kFile:
            return "file";
        case SceneComponent::Kind::kAssembly:
            return "assembly";
        case SceneComponent::Kind::kPart:
            break;
    }
    return "part";
}

char const* CutText(SceneCut cut)
{
    switch (cut)
    {
        case SceneCut::kMissingTarget:
            return "missing target";
        case SceneCut::kCycle:
            return "cycle";
        case SceneCut::kTooDeep:
            return "too deep";
        default:
            return "";
    }
}

ViewJson PlacementsJson(Scene const& scene, SceneComponent const& component, ViewIndex const& index,
                        ViewStyles const& styles)
{
    ViewJson list = ViewJson::array();
    for (ScenePlacement const& placement : component.placements)
    {
        if (placement.cut == SceneCut::kFiltered)
            continue;
        std::size_t const target = index.ComponentAt(placement.target);
        std::string_view const id =
            placement.object || target == kNoIndex ? placement.id : scene.Components()[placement.target].id;
        ViewJson entry{{"id", id}, {"label", placement.label}};
        entry["component"] = target == kNoIndex ? ViewJson(-1) : ViewJson(target);
        styles.Set(entry, placement.style);
        SetIdentity(entry, scene, placement.object);
        SetText(entry, "cut", CutText(placement.cut));
        list.push_back(std::move(entry));
    }
    return list;
}

// The ids of all that is in the file.
std::unordered_set<std::string_view> KnownIds(Scene const& scene, ViewIndex const& index)
{
    std::unordered_set<std::string_view> ids;
    for (std::size_t const place : index.Components())
    {
        SceneComponent const& component = scene.Components()[place];
        ids.insert(component.id);
        for (ScenePlacement const& placement : component.placements)
            if (placement.cut != SceneCut::kFiltered)
                ids.insert(placement.id);
        for (SceneGeometry const& geometry : component.geometry)
            ids.insert(geometry.id);
    }
    return ids;
}

// The ids of meshes by the level of detail that they refer to.
std::map<std::string, ViewJson, std::less<>> MeshesOfLevels(Scene const& scene, ViewIndex const& index)
{
    std::map<std::string, ViewJson, std::less<>> meshes;
    for (std::size_t const place : index.Components())
        for (SceneGeometry const& geometry : scene.Components()[place].geometry)
            if (UTF8String level; geometry.mesh && geometry.mesh->LODId(level) == kIsValueSpecified_Yes)
                meshes[std::string(level.View())].push_back(geometry.id);
    return meshes;
}

}  // namespace

ViewJson ComponentsJson(Scene const& scene, ViewIndex const& index, ViewStyles const& styles)
{
    ViewJson list = ViewJson::array();
    for (std::size_t const place : index.Components())
    {
        SceneComponent const& component = scene.Components()[place];
        ViewJson& entry = list.emplace_back();
        entry = {{"kind", KindText(component.kind)}, {"id", component.id}, {"label", component.label}};
        if (ViewJson unit = UnitJson(component.unit); !unit.is_null())
            entry["unit"] = std::move(unit);
        entry["metres"] = component.metresPerUnit;
        styles.Set(entry, component.style);
        entry["placements"] = PlacementsJson(scene, component, index, styles);
        ViewJson geometry = ViewJson::array();
        for (std::size_t i = 0; i < component.geometry.size(); ++i)
            geometry.push_back(index.GeometryAt(place, i));
        entry["geometry"] = std::move(geometry);
        SetIdentity(entry, scene, component.object, component.properties);
        if (component.fileProperties)
            if (ViewJson properties = FilePropertiesJson(*component.fileProperties); !properties.empty())
                entry["fileProperties"] = std::move(properties);
        SetOptional(entry, "density", DensityOf(component));
    }
    return list;
}

ViewJson OrganisationJson(Scene const& scene, ViewIndex const& index, ViewStyles const& styles)
{
    std::unordered_set<std::string_view> const known = KnownIds(scene, index);
    auto const list = [&](auto const& all, auto const& dress)
    {
        ViewJson entries = ViewJson::array();
        for (auto const& one : all)
        {
            ViewJson entry{{"id", one.id}, {"label", one.label}, {"description", one.description}};
            dress(entry, one);
            entries.push_back(std::move(entry));
        }
        return entries;
    };
    auto const items = [&](ViewJson& entry, auto const& one)
    {
        ViewJson ids = ViewJson::array();
        for (std::string_view const item : one.items)
            if (known.contains(item))
                ids.push_back(item);
        entry["items"] = std::move(ids);
    };
    ViewJson json = ViewJson::object();
    json["layers"] = list(scene.Layers(),
                          [&](ViewJson& entry, SceneLayer const& layer)
                          {
                              entry["number"] = layer.number;
                              entry["visible"] = layer.isVisible;
                              styles.Set(entry, layer.style);
                              items(entry, layer);
                          });
    json["groups"] = list(scene.Groups(), items);
    auto const levels = MeshesOfLevels(scene, index);
    json["lods"] = list(scene.Lods(),
                        [&](ViewJson& entry, SceneLod const& lod)
                        {
                            auto const found = levels.find(lod.id);
                            entry["items"] = found == levels.end() ? ViewJson::array() : found->second;
                        });
    return json;
}

ViewJson UnitJson(UnitTypeEnum unit)
{
    double const metres = MetresOf(unit);
    return metres > 0.0 ? ViewJson{{"name", UnitName(unit)}, {"symbol", SymbolOf(unit)}, {"metres", metres}}
                        : ViewJson();
}

ViewJson PropertiesJson(std::vector<SceneProperty> const& properties)
{
    ViewJson list = ViewJson::array();
    for (SceneProperty const& property : properties)
        list.push_back(ViewJson::array({property.name, ValueJson(property)}));
    return list;
}

void SetIdentity(ViewJson& json, Scene const& scene, IObject const* object, std::vector<SceneProperty> const& own)
{
    if (!object)
        return;
    if (UTF8String id; object->VersionPersistentId(id) == kIsValueSpecified_Yes)
        SetText(json, "persistentId", id.View());
    std::vector<SceneProperty> properties = scene.PropertiesOf(*object);
    properties.insert(properties.end(), own.begin(), own.end());
    if (!properties.empty())
        json["properties"] = PropertiesJson(properties);
}

std::optional<double> DensityOf(SceneComponent const& component)
{
    // As models state it: in grams for each cubic millimetre.
    constexpr double kUnit = 1e6;
    for (SceneProperty const& property : component.properties)
        if (property.name == "material density")
            if (auto const density = NumberOf(property); density && *density > 0.0)
                return *density * kUnit;
    return std::nullopt;
}

}  // namespace KVR

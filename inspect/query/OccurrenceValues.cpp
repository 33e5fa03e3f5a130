#include "inspect/query/OccurrenceValues.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "framework/api/IBrep.h"
#include "framework/api/IPolygonMesh.h"
#include "framework/api/IdSet.h"
#include "framework/api/IdSetSet.h"
#include "framework/api/SubEntityToStylesMap.h"
#include "scene/SceneStyle.h"

namespace KVR
{

namespace
{

constexpr double kMillimetresPerMetre = 1e3;

constexpr std::string_view kKindNames[] = {"file", "assembly", "part"};

std::string_view FirstOf(std::string_view a, std::string_view b)
{
    return a.empty() ? b : a;
}

bool HasShape(SceneGeometry const& geometry)
{
    return geometry.kind != GeometryKind::kOther;
}

bool IsNote(SceneGeometry const& geometry)
{
    return geometry.className == "IAnnotationCallout";
}

template <class Has>
bool HasGeometry(SceneComponent const& component, Has const& has)
{
    return std::any_of(component.geometry.begin(), component.geometry.end(), has);
}

}  // namespace

OccurrenceValues::OccurrenceValues(Scene const& scene)
    : m_scene(scene), m_walk(scene), m_sizes(scene), m_componentProperties(scene)
{
}

bool OccurrenceValues::Next()
{
    if (!m_walk.Next())
        return false;
    if (m_hasStarted)
        ++m_place;
    m_hasStarted = true;
    ScenePlacement const* const placement = m_walk.Placement();
    SceneComponent const& component = m_walk.Component();
    std::string_view const placed = placement ? placement->label : std::string_view();
    std::string_view const id = placement && placement->object ? placement->id : component.id;
    m_names.resize(m_walk.Depth());
    m_names.push_back(FirstOf(FirstOf(placed, component.label), id));
    m_ids.resize(m_walk.Depth());
    m_ids.push_back(id);
    return true;
}

std::vector<std::string_view> const& OccurrenceValues::Texts(QueryField field)
{
    m_texts.clear();
    ScenePlacement const* const placement = m_walk.Placement();
    SceneComponent const& component = m_walk.Component();
    bool const isOfInstance = field != QueryField::kComponentName && field != QueryField::kComponentId;
    bool const isOfComponent = field != QueryField::kInstanceName && field != QueryField::kInstanceId;
    switch (field)
    {
        case QueryField::kKind:
            Take(kKindNames[static_cast<std::size_t>(component.kind)]);
            break;
        case QueryField::kName:
        case QueryField::kInstanceName:
        case QueryField::kComponentName:
            if (isOfInstance && placement)
                Take(placement->label);
            if (isOfComponent)
                Take(component.label);
            break;
        case QueryField::kId:
        case QueryField::kInstanceId:
        case QueryField::kComponentId:
            if (isOfInstance && placement)
                Take(placement->id);
            if (isOfComponent)
                Take(component.id);
            break;
        case QueryField::kPath:
            TakeJoined(m_names);
            break;
        case QueryField::kIdPath:
            TakeJoined(m_ids);
            break;
        case QueryField::kLayer:
            TakeLayers();
            break;
        case QueryField::kColor:
            TakeColors();
            break;
        default:
            break;
    }
    return m_texts;
}

void OccurrenceValues::Take(std::string_view text)
{
    if (!text.empty() && std::find(m_texts.begin(), m_texts.end(), text) == m_texts.end())
        m_texts.push_back(text);
}

void OccurrenceValues::TakeJoined(std::vector<std::string_view> const& names)
{
    m_joined.clear();
    for (std::size_t i = 0; i < names.size(); ++i)
    {
        if (i > 0)
            m_joined += '/';
        m_joined += names[i];
    }
    Take(m_joined);
}

std::vector<SceneLayer const*> OccurrenceValues::Layers()
{
    if (!m_layers)
    {
        m_layers.emplace();
        for (SceneLayer const& layer : m_scene.Layers())
            for (std::string_view const item : layer.items)
                (*m_layers)[item].push_back(&layer);
    }
    std::vector<SceneLayer const*> layers;
    auto const take = [&](std::string_view id)
    {
        auto const found = m_layers->find(id);
        if (!id.empty() && found != m_layers->end())
            layers.insert(layers.end(), found->second.begin(), found->second.end());
    };
    if (m_layers->empty())
        return layers;
    if (m_walk.Placement())
        take(m_walk.Placement()->id);
    take(m_walk.Component().id);
    for (SceneGeometry const& geometry : m_walk.Component().geometry)
    {
        take(geometry.id);
        take(geometry.bodyId);
    }
    return layers;
}

void OccurrenceValues::TakeLayers()
{
    std::vector<SceneLayer const*> const layers = Layers();
    m_made.clear();
    // Views of the texts stay good, since there is room for all of them.
    m_made.reserve(layers.size());
    for (SceneLayer const* const layer : layers)
    {
        Take(layer->label);
        Take(layer->id);
        m_made.push_back(std::to_string(layer->number));
        Take(m_made.back());
    }
}

std::vector<std::string_view> const& OccurrenceValues::Shown(QueryField field)
{
    if (field != QueryField::kName && field != QueryField::kId && field != QueryField::kLayer)
        return Texts(field);
    m_texts.clear();
    if (field == QueryField::kLayer)
        for (SceneLayer const* const layer : Layers())
            Take(FirstOf(layer->label, layer->id));
    else
        Take(field == QueryField::kName ? m_names.back() : m_ids.back());
    return m_texts;
}

void OccurrenceValues::TakeColors()
{
    m_made.clear();
    OccurrenceState const& state = m_walk.State();
    SceneComponent const& component = m_walk.Component();
    std::vector<SceneStyle const*> styles;
    for (SceneGeometry const& geometry : component.geometry)
    {
        if (!HasShape(geometry) || (geometry.body && geometry.hasMesh))
            continue;
        styles.push_back(state.StyleOf(geometry));
        if (!state.KeepsFaceStyles(geometry))
            continue;
        Styles const& faces = FaceStylesOf(geometry);
        styles.insert(styles.end(), faces.begin(), faces.end());
    }
    if (styles.empty())
        styles.push_back(state.imposedStyle ? state.imposedStyle : state.inheritedStyle);
    m_made.reserve(styles.size());
    for (SceneStyle const* const style : styles)
        TakeColor(style);
}

void OccurrenceValues::TakeColor(SceneStyle const* style)
{
    if (!style || !style->diffuse)
        return;
    auto const byte = [&](std::size_t i)
    { return static_cast<int>(std::lround(std::clamp((*style->diffuse)[i], 0.0, 1.0) * 255.0)); };
    m_made.push_back(fmt::format("#{:02x}{:02x}{:02x}", byte(0), byte(1), byte(2)));
    Take(m_made.back());
}

OccurrenceValues::Styles const& OccurrenceValues::FaceStylesOf(SceneGeometry const& geometry)
{
    auto const [place, isNew] = m_faceStyles.try_emplace(geometry.object);
    Styles& styles = place->second;
    if (!isNew)
        return styles;
    auto const take = [&](IdSet const& ids)
    {
        SceneStyle const* const style = ids.IsEmpty() ? nullptr : m_scene.StyleOf(ids.At(0).View());
        if (style && std::find(styles.begin(), styles.end(), style) == styles.end())
            styles.push_back(style);
    };
    IdSetSet materials;
    if (geometry.mesh && geometry.mesh->PolygonMaterials(materials) == kIsValueSpecified_Yes)
        for (unsigned long long i = 0; i < materials.Size(); ++i)
            take(materials.At(i));
    SubEntityToStylesMap const* const faces = geometry.body ? geometry.body->StylesMap() : nullptr;
    for (unsigned long long i = 0; faces && i < faces->Size(); ++i)
        take(faces->StylesAt(i));
    return styles;
}

bool OccurrenceValues::Flag(QueryField field)
{
    SceneComponent const& component = m_walk.Component();
    switch (field)
    {
        case QueryField::kInstance:
            return m_walk.Placement() && m_walk.Placement()->object;
        case QueryField::kVisible:
            return m_walk.State().isVisible;
        case QueryField::kHidden:
            return !m_walk.State().isVisible;
        case QueryField::kMirrored:
            return Mirrors(m_walk.Place());
        case QueryField::kShared:
            return Users() > 1.0;
        case QueryField::kNotes:
            return HasGeometry(component, &IsNote);
        case QueryField::kBody:
            return HasGeometry(component, [](SceneGeometry const& geometry) { return geometry.body != nullptr; });
        case QueryField::kMesh:
            return HasGeometry(component, [](SceneGeometry const& geometry) { return geometry.mesh != nullptr; });
        default:
            return false;
    }
}

std::optional<double> OccurrenceValues::Number(QueryField field)
{
    switch (field)
    {
        case QueryField::kDepth:
            return static_cast<double>(m_walk.Depth());
        case QueryField::kUsers:
            return Users();
        case QueryField::kCount:
            return static_cast<double>(Totals().occurrencesOf[m_walk.ComponentIndex()]);
        case QueryField::kArea:
        case QueryField::kVolume:
        case QueryField::kMass:
            return Measure(field);
        default:
            return RowOf(field).type == QueryFieldType::kLength ? Extent(field) : std::nullopt;
    }
}

std::optional<double> OccurrenceValues::Extent(QueryField field)
{
    std::optional<SceneBox> const& box = m_sizes.BoxOf(m_walk.ComponentIndex());
    if (!box)
        return std::nullopt;
    // How long the axes of the component are where it stands.
    Matrix const& place = m_walk.Place();
    double const metres = m_walk.Component().metresPerUnit;
    std::array<double, 3> extents{};
    for (std::size_t axis = 0; axis < 3; ++axis)
    {
        double const length = std::hypot(place[axis], place[4 + axis], place[8 + axis]);
        extents[axis] = (box->high[axis] - box->low[axis]) * UnlessNear1(length * m_scene.MetresPerUnit() / metres) *
                        metres * kMillimetresPerMetre;
    }
    switch (field)
    {
        case QueryField::kBoxX:
            return extents[0];
        case QueryField::kBoxY:
            return extents[1];
        case QueryField::kBoxZ:
            return extents[2];
        case QueryField::kBoxMin:
            return *std::min_element(extents.begin(), extents.end());
        case QueryField::kBoxMax:
            return *std::max_element(extents.begin(), extents.end());
        default:
            return std::hypot(extents[0], extents[1], extents[2]);
    }
}

std::optional<double> OccurrenceValues::Measure(QueryField field)
{
    ComponentSizes::Measures const& measures = m_sizes.MeasuresOf(m_walk.ComponentIndex());
    double const metres = m_walk.Component().metresPerUnit;
    double const scale = VolumeScale(Product(m_walk.Place(), Scaling(m_scene.MetresPerUnit() / metres)));
    double const millimetres = metres * kMillimetresPerMetre;
    std::optional<double> number = measures.mass;
    double factor = scale;
    if (field == QueryField::kArea)
    {
        number = measures.area;
        factor = std::cbrt(scale * scale) * millimetres * millimetres;
    }
    else if (field == QueryField::kVolume)
    {
        number = measures.volume;
        factor = scale * millimetres * millimetres * millimetres;
    }
    return number ? std::optional(*number * factor) : std::nullopt;
}

SceneTotals const& OccurrenceValues::Totals()
{
    if (!m_totals)
        m_totals = SceneTotals::Of(m_scene);
    return *m_totals;
}

double OccurrenceValues::Users()
{
    if (m_users.empty())
        for (std::size_t i = 0; i < m_scene.Components().size(); ++i)
            for (SceneGeometry const& geometry : m_scene.Components()[i].geometry)
                if (geometry.body || geometry.mesh)
                    m_users[geometry.object] += Totals().occurrencesOf[i];
    double most = 0.0;
    for (SceneGeometry const& geometry : m_walk.Component().geometry)
        if (auto const found = m_users.find(geometry.object); found != m_users.end())
            most = std::max(most, static_cast<double>(found->second));
    return most;
}

std::vector<SceneProperty> const& OccurrenceValues::Properties()
{
    ScenePlacement const* const placement = m_walk.Placement();
    std::vector<SceneProperty> const& ofComponent = m_componentProperties.Of(m_walk.Component());
    if (!placement || !placement->object)
        return ofComponent;
    m_properties = m_scene.PropertiesOf(*placement->object);
    if (m_properties.empty())
        return ofComponent;
    m_properties.insert(m_properties.end(), ofComponent.begin(), ofComponent.end());
    return m_properties;
}

}  // namespace KVR

#include "inspect/query/ComponentSizes.h"

#include <TopoDS_Shape.hxx>
#include <algorithm>
#include <cmath>
#include <string_view>

#include "framework/api/FileProperties.h"
#include "framework/api/IBrep.h"
#include "framework/kernel/entity.h"
#include "inspect/query/MeshMeasures.h"
#include "scene/PostOrder.h"
#include "scene/Scene.h"
#include "scene/SceneMesh.h"
#include "scene/SceneMeshes.h"
#include "scene/ShapeMeasures.h"

namespace KVR
{

namespace
{

constexpr double kMillimetresPerMetre = 1e3;
constexpr double kPound = 0.45359237;

using Number = std::optional<double>;

void Add(Number& sum, Number const& number, double factor)
{
    if (number)
        sum = sum.value_or(0.0) + *number * factor;
}

std::array<double, 3> Placed(Matrix const& place, std::array<double, 3> const& point)
{
    std::array<double, 3> placed{};
    for (std::size_t row = 0; row < 3; ++row)
        placed[row] = place[4 * row] * point[0] + place[4 * row + 1] * point[1] + place[4 * row + 2] * point[2] +
                      place[4 * row + 3];
    return placed;
}

void Include(std::optional<SceneBox>& box, std::optional<SceneBox> const& other, Matrix const& place)
{
    if (!other)
        return;
    for (unsigned corner = 0; corner < 8; ++corner)
    {
        std::array<double, 3> point{};
        for (std::size_t axis = 0; axis < 3; ++axis)
            point[axis] = (corner >> axis) & 1U ? other->high[axis] : other->low[axis];
        point = Placed(place, point);
        if (std::isfinite(point[0]) && std::isfinite(point[1]) && std::isfinite(point[2]))
            box = SceneBox::Around(box, point);
    }
}

// From what is placed to the component that places it, each in its own unit.
Matrix PlaceOf(Scene const& scene, SceneComponent const& component, ScenePlacement const& placement)
{
    double const scale = scene.Components()[placement.target].metresPerUnit / component.metresPerUnit;
    return Product(placement.transform, Scaling(scale));
}

Matrix PlaceOf(SceneComponent const& component, SceneGeometry const& geometry)
{
    return Product(Scaling(geometry.metresPerUnit / component.metresPerUnit), geometry.transform);
}

// How much of a kilogram the unit of masses of a component is; nothing for one that is no unit of masses.
Number KilogramsPerUnit(SceneComponent const& component)
{
    UnitTypeEnum unit = kUnitType_Unknown;
    if (!component.fileProperties || component.fileProperties->MassUnit(unit) != kIsValueSpecified_Yes)
        return 1.0;
    switch (unit)
    {
        case kUnitType_Milligram:
            return 1e-6;
        case kUnitType_Gram:
            return 1e-3;
        case kUnitType_Kilogram:
            return 1.0;
        case kUnitType_Tonne:
            return 1e3;
        case kUnitType_Ounce:
            return kPound / 16.0;
        case kUnitType_Pound:
            return kPound;
        case kUnitType_Slug:
            return 14.59390294;
        default:
            return std::nullopt;
    }
}

Number PropertyOf(SceneComponent const& component, std::string_view name)
{
    for (SceneProperty const& property : component.properties)
        if (property.name == name)
            if (Number const number = NumberOf(property))
                return number;
    return std::nullopt;
}

// The mass that a component states as its own and of all below it, in kilograms.
Number StatedMass(SceneComponent const& component)
{
    Number const mass = PropertyOf(component, "mass");
    Number const unit = KilogramsPerUnit(component);
    return mass && unit ? Number(*mass * *unit) : std::nullopt;
}

// Where there are bodies, which are more exact, meshes are theirs.
bool HasBodies(SceneComponent const& component)
{
    return std::any_of(component.geometry.begin(), component.geometry.end(),
                       [](SceneGeometry const& geometry) { return geometry.body != nullptr; });
}

}  // namespace

double UnlessNear1(double factor)
{
    constexpr double kRounding = 1e-9;
    return std::abs(factor - 1.0) < kRounding ? 1.0 : factor;
}

double VolumeScale(Matrix const& m)
{
    return UnlessNear1(std::abs(m[0] * (m[5] * m[10] - m[6] * m[9]) - m[1] * (m[4] * m[10] - m[6] * m[8]) +
                                m[2] * (m[4] * m[9] - m[5] * m[8])));
}

std::optional<SceneBox> const& ComponentSizes::BoxOf(std::size_t component)
{
    InPostOrder(
        m_scene, component, [&](std::size_t index) { return m_boxes.contains(index); },
        [&](std::size_t index) { m_boxes.emplace(index, BoxAround(m_scene.Components()[index])); });
    return m_boxes.at(component);
}

std::optional<SceneBox> ComponentSizes::BoxAround(SceneComponent const& component) const
{
    std::optional<SceneBox> box;
    for (SceneGeometry const& geometry : component.geometry)
        if (!(geometry.body && geometry.hasMesh))
        {
            // Triangles are needed for a moment alone.
            SceneMeshes meshes;
            Include(box, SceneBox::Of(geometry, PlaceOf(component, geometry), meshes), kIdentity);
        }
    for (ScenePlacement const& placement : component.placements)
        if (placement.IsEntered())
            Include(box, m_boxes.at(placement.target), PlaceOf(m_scene, component, placement));
    return box;
}

ComponentSizes::Measures const& ComponentSizes::MeasuresOf(std::size_t component)
{
    InPostOrder(
        m_scene, component, [&](std::size_t index) { return m_measures.contains(index); },
        [&](std::size_t index) { m_measures.emplace(index, MeasuresIn(m_scene.Components()[index])); });
    return m_measures.at(component);
}

ComponentSizes::Measures ComponentSizes::MeasuresIn(SceneComponent const& component)
{
    Measures sum;
    Number ownVolume;
    bool const hasBodies = HasBodies(component);
    for (SceneGeometry const& geometry : component.geometry)
    {
        if (hasBodies ? !geometry.body : !geometry.mesh)
            continue;
        Measures const& own = MeasuresOf(geometry);
        double const scale = VolumeScale(PlaceOf(component, geometry));
        Add(sum.area, own.area, std::cbrt(scale * scale));
        Add(ownVolume, own.volume, scale);
    }
    sum.volume = ownVolume;
    // As import writes it: grams for each cubic millimetre.
    Number const density = PropertyOf(component, "material density");
    if (density && ownVolume)
        sum.mass = *ownVolume * std::pow(component.metresPerUnit * kMillimetresPerMetre, 3) * *density / 1e3;
    for (ScenePlacement const& placement : component.placements)
    {
        if (!placement.IsEntered())
            continue;
        Measures const& below = m_measures.at(placement.target);
        double const scale = VolumeScale(PlaceOf(m_scene, component, placement));
        Add(sum.area, below.area, std::cbrt(scale * scale));
        Add(sum.volume, below.volume, scale);
        Add(sum.mass, below.mass, VolumeScale(placement.transform));
    }
    if (Number const stated = StatedMass(component))
        sum.mass = stated;
    return sum;
}

ComponentSizes::Measures const& ComponentSizes::MeasuresOf(SceneGeometry const& geometry)
{
    auto const [place, isNew] = m_ofGeometry.try_emplace(geometry.object);
    if (!isNew)
        return place->second;
    Measures& measures = place->second;
    BODY const* const body = geometry.body ? geometry.body->Body() : nullptr;
    if (body)
    {
        ShapeMeasures const shape = ShapeMeasures::Of(body->Shape());
        if (!shape.faces.empty())
            measures.area = shape.area;
        measures.volume = shape.volume;
    }
    else if (geometry.mesh)
    {
        MeshMeasures const mesh = MeshMeasures::Of(SceneMesh::Of(*geometry.mesh));
        measures.area = mesh.area;
        measures.volume = mesh.volume;
    }
    return measures;
}

}  // namespace KVR

#include "scene/Scene.h"

#include "framework/api/IObject.h"
#include "framework/api/IProperty.h"
#include "framework/api/PropertyDatabase.h"
#include "scene/reader/PropertyValue.h"
#include "scene/reader/SceneContent.h"
#include "scene/reader/SceneCuts.h"
#include "scene/reader/SceneReader.h"
#include "scene/reader/ViewOverrides.h"

namespace KVR
{

Scene::Scene(IProducer& producer, UTF8String const& rootId, SceneFilter const& filter)
    : m_content(std::make_unique<SceneContent>())
{
    SceneReader(*m_content, producer).Read(rootId);
    CutCycles(*m_content, filter.mostLevels);
    if (!filter.view.empty())
        ApplyView(*m_content, filter.view);
    ApplyFilter(*m_content, filter);
}

Scene::Scene(Scene&& other) noexcept = default;
Scene& Scene::operator=(Scene&& other) noexcept = default;
Scene::~Scene() = default;

void Scene::Reduce(SceneSelection const& selection)
{
    ApplySelection(*m_content, selection);
}

std::vector<SceneComponent> const& Scene::Components() const noexcept
{
    return m_content->components;
}

std::size_t Scene::Root() const noexcept
{
    return m_content->root;
}

UnitTypeEnum Scene::Unit() const noexcept
{
    return m_content->unit;
}

double Scene::MetresPerUnit() const noexcept
{
    return m_content->metresPerUnit;
}

std::deque<SceneStyle> const& Scene::Styles() const noexcept
{
    return m_content->styles;
}

SceneStyle const* Scene::StyleOf(std::string_view id) const
{
    auto const found = m_content->styleOf.find(id);
    return found == m_content->styleOf.end() ? nullptr : found->second;
}

std::vector<SceneLayer> const& Scene::Layers() const noexcept
{
    return m_content->layers;
}

std::vector<SceneGroup> const& Scene::Groups() const noexcept
{
    return m_content->groups;
}

std::vector<SceneLod> const& Scene::Lods() const noexcept
{
    return m_content->lods;
}

std::vector<SceneReference> const& Scene::Views() const noexcept
{
    return m_content->views;
}

std::vector<SceneReference> const& Scene::Cameras() const noexcept
{
    return m_content->cameras;
}

std::array<double, 3> const& Scene::UpVector() const noexcept
{
    return m_content->upVector;
}

std::array<double, 3> const& Scene::DefaultSurfaceColor() const noexcept
{
    return m_content->surfaceColor;
}

std::array<double, 3> const& Scene::DefaultCurveColor() const noexcept
{
    return m_content->curveColor;
}

std::vector<SceneProperty> Scene::PropertiesOf(IObject const& object) const
{
    std::vector<SceneProperty> properties;
    IdSet const ids = m_content->database ? object.PropertyIds() : IdSet();
    for (unsigned long long i = 0; i < ids.Size(); ++i)
    {
        IProperty const* property = nullptr;
        if (m_content->database->PropertyAt(ids.At(i), property) == kIsValueSpecified_Yes && property)
            properties.push_back(PropertyOf(*property));
    }
    return properties;
}

std::vector<Scene::Cut> const& Scene::Cuts() const noexcept
{
    return m_content->cuts;
}

std::size_t Scene::FilteredGeometry() const noexcept
{
    return m_content->filteredGeometry;
}

}  // namespace KVR

#include "scene/reader/AttributeReader.h"

#include <algorithm>
#include <cmath>

#include "framework/api/kvr_api.h"
#include "scene/reader/PropertyValue.h"
#include "scene/reader/SceneContent.h"
#include "scene/reader/StyleReader.h"

namespace KVR
{

namespace
{

std::vector<std::string_view> Kept(SceneText& text, IdSet const& ids)
{
    std::vector<std::string_view> kept;
    kept.reserve(ids.Size());
    for (unsigned long long i = 0; i < ids.Size(); ++i)
        kept.push_back(text.Keep(ids.At(i)));
    return kept;
}

std::array<double, 3> Triple(Color const& color)
{
    return {std::clamp(color.Red(), 0.0, 1.0), std::clamp(color.Green(), 0.0, 1.0), std::clamp(color.Blue(), 0.0, 1.0)};
}

}  // namespace

template <class Use>
void AttributeReader::ForEachNew(IdSet const& ids, Use const& use)
{
    for (unsigned long long i = 0; i < ids.Size(); ++i)
    {
        UTF8String const& id = ids.At(i);
        if (m_known.contains(id.View()))
            continue;
        std::string_view const kept = m_content.text.Keep(id);
        if (use(kept, m_producer.Load(id)))
            m_known.insert(kept);
    }
}

void AttributeReader::ReadSets(IObject const& object)
{
    auto const* const sets = dynamic_cast<IAttributeSets const*>(&object);
    if (!sets)
        return;
    ReadLayers(sets->LayerSet());
    ReadGroups(sets->GroupSet());
    ReadLods(sets->LodSet());
    auto const list = [](std::vector<SceneReference>& references)
    {
        return [&references](std::string_view id, IObject* found)
        {
            references.push_back({id, found});
            return true;
        };
    };
    ForEachNew(sets->CameraSet(), list(m_content.cameras));
    ForEachNew(sets->ViewSet(), list(m_content.views));
    IdSet const styles = sets->StyleSet();
    for (unsigned long long i = 0; i < styles.Size(); ++i)
        m_styles.Read(styles.At(i));
}

void AttributeReader::ReadLayers(IdSet const& ids)
{
    ForEachNew(ids,
               [&](std::string_view id, IObject* object)
               {
                   auto const* const layer = dynamic_cast<ILayer const*>(object);
                   if (!layer)
                       return false;
                   SceneLayer entry;
                   entry.object = object;
                   entry.id = id;
                   entry.label = m_content.text.Keep(layer->Label());
                   entry.description = m_content.text.Keep(layer->Description());
                   entry.number = layer->LayerNumber();
                   entry.isVisible = layer->IsVisible();
                   entry.style = m_styles.First(layer->Styles());
                   entry.items = Kept(m_content.text, layer->GeometryItems());
                   m_content.layers.push_back(std::move(entry));
                   return true;
               });
}

void AttributeReader::ReadGroups(IdSet const& ids)
{
    ForEachNew(ids,
               [&](std::string_view id, IObject* object)
               {
                   auto const* const group = dynamic_cast<IGroup const*>(object);
                   if (!group)
                       return false;
                   SceneGroup entry;
                   entry.object = object;
                   entry.id = id;
                   entry.label = m_content.text.Keep(group->Label());
                   entry.description = m_content.text.Keep(group->Description());
                   entry.items = Kept(m_content.text, group->GeometryItems());
                   m_content.groups.push_back(std::move(entry));
                   return true;
               });
}

void AttributeReader::ReadLods(IdSet const& ids)
{
    ForEachNew(ids,
               [&](std::string_view id, IObject* object)
               {
                   auto const* const lod = dynamic_cast<ILod const*>(object);
                   if (!lod)
                       return false;
                   SceneLod entry;
                   entry.object = object;
                   entry.id = id;
                   entry.label = m_content.text.Keep(lod->Label());
                   entry.description = m_content.text.Keep(lod->Description());
                   m_content.lods.push_back(entry);
                   return true;
               });
}

void AttributeReader::ReadProperties(SceneComponent& component)
{
    if (!component.fileProperties)
        return;
    FileProperties const& properties = *component.fileProperties;
    for (unsigned long long i = 0; i < properties.CustomPropertyCount(); ++i)
    {
        CustomProperty property;
        if (properties.CustomPropertyAt(i, property) != kIsValueSpecified_Yes)
            continue;
        component.properties.push_back(PropertyOf(property));
    }
}

void AttributeReader::ReadUniverse()
{
    IUniverse const* const universe = m_producer.LoadUniverse();
    if (!universe)
        return;
    m_content.database = universe->PropertyDatabaseOf();
    Color color;
    if (universe->DefaultCurveColor(color) == kIsValueSpecified_Yes)
        m_content.curveColor = Triple(color);
    ViewingData viewing;
    if (universe->ViewingDataOf(viewing) != kIsValueSpecified_Yes)
        return;
    Vector const& up = viewing.UpVector();
    double const length = std::sqrt(up[0] * up[0] + up[1] * up[1] + up[2] * up[2]);
    if (length > 0.0 && std::isfinite(length))
        m_content.upVector = {up[0] / length, up[1] / length, up[2] / length};
}

}  // namespace KVR

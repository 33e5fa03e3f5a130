#include "exchange/view/ViewStyles.h"

namespace KVR
{

ViewStyles::ViewStyles(Scene const& scene) : m_scene(scene)
{
    for (SceneStyle const& style : scene.Styles())
        m_places.emplace(&style, static_cast<int>(m_places.size()));
}

int ViewStyles::IndexOf(SceneStyle const* style) const
{
    auto const found = m_places.find(style);
    return found == m_places.end() ? -1 : found->second;
}

void ViewStyles::Set(ViewJson& json, SceneStyle const* style) const
{
    if (int const index = IndexOf(style); index >= 0)
        json["style"] = index;
}

ViewJson ViewStyles::Json() const
{
    ViewJson list = ViewJson::array();
    for (SceneStyle const& style : m_scene.Styles())
    {
        ViewJson entry{{"id", style.id}, {"label", style.label}};
        SetOptional(entry, "diffuse", style.diffuse);
        SetOptional(entry, "emission", style.emission);
        entry["opacity"] = style.opacity;
        SetOptional(entry, "metallic", style.metallic);
        SetOptional(entry, "roughness", style.roughness);
        list.push_back(std::move(entry));
    }
    return list;
}

}  // namespace KVR

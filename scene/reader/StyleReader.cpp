#include "scene/reader/StyleReader.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "framework/api/Color.h"
#include "framework/api/ExtensionDataContent.h"
#include "framework/api/IProducer.h"
#include "framework/api/IRenderStyle.h"
#include "framework/api/IdSet.h"
#include "scene/ExtensionTypes.h"
#include "scene/reader/SceneContent.h"

namespace KVR
{

namespace
{

std::array<double, 3> Triple(Color const& color)
{
    return {std::clamp(color.Red(), 0.0, 1.0), std::clamp(color.Green(), 0.0, 1.0), std::clamp(color.Blue(), 0.0, 1.0)};
}

void ReadMetallicRoughness(SceneStyle& style, IRenderStyle const& object)
{
    ExtensionDataContent content;
    if (object.ExtensionDataByTypeId(kPbrTypeId, content) != kIsValueSpecified_Yes)
        return;
    auto const values = nlohmann::json::parse(UTF8String(content.Data()).View(), nullptr, false);
    auto const number = [&](char const* name, std::optional<double>& value)
    {
        if (values.is_object() && values.contains(name) && values[name].is_number())
            value = std::clamp(values[name].get<double>(), 0.0, 1.0);
    };
    number("metallicFactor", style.metallic);
    number("roughnessFactor", style.roughness);
}

}  // namespace

SceneStyle const* StyleReader::Read(UTF8String const& id)
{
    if (id.IsEmpty())
        return nullptr;
    auto const known = m_content.styleOf.find(id.View());
    if (known != m_content.styleOf.end())
        return known->second;
    SceneStyle& style = m_content.styles.emplace_back();
    style.id = m_content.text.Keep(id);
    m_content.styleOf.emplace(style.id, &style);
    Fill(style, id);
    return &style;
}

SceneStyle const* StyleReader::First(IdSet const& ids)
{
    return ids.IsEmpty() ? nullptr : Read(ids.At(0));
}

void StyleReader::Fill(SceneStyle& style, UTF8String const& id)
{
    auto const* const object = dynamic_cast<IRenderStyle const*>(m_producer.Load(id));
    if (!object)
        return;
    style.object = object;
    style.label = m_content.text.Keep(object->Label());
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
    ReadMetallicRoughness(style, *object);
}

}  // namespace KVR

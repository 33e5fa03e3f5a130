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

// Takes two numbers out of an object as it is parsed; of a name that stands twice the last counts. Whoever makes a
// document of it instead, needs memory to give it back, and ends where there is none.
class MetallicRoughness final : public nlohmann::json_sax<nlohmann::json>
{
public:
    std::optional<double> metallic;
    std::optional<double> roughness;

    bool null() override { return Meet(std::nullopt); }
    bool boolean(bool) override { return Meet(std::nullopt); }
    bool binary(binary_t&) override { return Meet(std::nullopt); }
    bool string(string_t&) override { return Meet(std::nullopt); }
    bool number_integer(number_integer_t number) override { return Meet(static_cast<double>(number)); }
    bool number_unsigned(number_unsigned_t number) override { return Meet(static_cast<double>(number)); }
    bool number_float(number_float_t number, string_t const&) override { return Meet(number); }
    bool start_array(std::size_t) override { return Enter(); }
    bool end_array() override { return Leave(); }
    bool start_object(std::size_t) override { return Enter(); }
    bool end_object() override { return Leave(); }
    bool key(string_t& name) override
    {
        m_value = nullptr;
        if (m_depth == 1)
            m_value = name == "metallicFactor" ? &metallic : name == "roughnessFactor" ? &roughness : nullptr;
        return true;
    }
    bool parse_error(std::size_t, std::string const&, nlohmann::detail::exception const&) override { return false; }

private:
    bool Meet(std::optional<double> value)
    {
        if (m_depth == 1 && m_value)
            *m_value = value;
        return true;
    }
    bool Enter()
    {
        Meet(std::nullopt);
        ++m_depth;
        return true;
    }
    bool Leave()
    {
        --m_depth;
        m_value = nullptr;
        return true;
    }

    std::optional<double>* m_value = nullptr;
    std::size_t m_depth = 0;
};

void ReadMetallicRoughness(SceneStyle& style, IRenderStyle const& object)
{
    ExtensionDataContent content;
    if (object.ExtensionDataByTypeId(kPbrTypeId, content) != kIsValueSpecified_Yes)
        return;
    MetallicRoughness found;
    if (!nlohmann::json::sax_parse(UTF8String(content.Data()).View(), &found))
        return;
    auto const fraction = [](std::optional<double> value)
    { return value ? std::optional(std::clamp(*value, 0.0, 1.0)) : std::nullopt; };
    style.metallic = fraction(found.metallic);
    style.roughness = fraction(found.roughness);
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

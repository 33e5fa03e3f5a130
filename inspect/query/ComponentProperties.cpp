#include "inspect/query/ComponentProperties.h"

#include <fmt/format.h>

#include "framework/api/FileProperties.h"
#include "framework/api/UTF16String.h"
#include "framework/api/UTF8String.h"
#include "scene/Scene.h"

namespace KVR
{

namespace
{

struct NamedText
{
    char const* name;
    IsValueSpecifiedEnum (FileProperties::*text)(UTF16String&) const;
};

constexpr NamedText kFileTexts[] = {
    {"Title", &FileProperties::Title},
    {"Author", &FileProperties::Author},
    {"Organization", &FileProperties::Organization},
    {"Description", &FileProperties::Description},
    {"SendingSystem", &FileProperties::SendingSystem},
    {"PartNumber", &FileProperties::PartNumber},
    {"Revision", &FileProperties::Revision},
    {"Preprocessor", &FileProperties::Preprocessor},
    {"Authorisation", &FileProperties::Authorisation},
};

}  // namespace

std::vector<SceneProperty> const& ComponentProperties::Of(SceneComponent const& component)
{
    auto const [place, isNew] = m_properties.try_emplace(&component);
    std::vector<SceneProperty>& properties = place->second;
    if (!isNew)
        return properties;
    if (component.object)
        properties = m_scene.PropertiesOf(*component.object);
    properties.insert(properties.end(), component.properties.begin(), component.properties.end());
    UTF16String text;
    for (NamedText const& row : kFileTexts)
        if (component.fileProperties && (component.fileProperties->*row.text)(text) == kIsValueSpecified_Yes)
            properties.push_back({row.name, std::string(UTF8String(text).View())});
    return properties;
}

std::string TextOf(SceneProperty const& property)
{
    if (auto const* const text = std::get_if<std::string>(&property.value))
        return *text;
    if (auto const* const number = std::get_if<int>(&property.value))
        return std::to_string(*number);
    if (auto const* const number = std::get_if<double>(&property.value))
        return fmt::format("{}", *number);
    if (auto const* const truth = std::get_if<bool>(&property.value))
        return *truth ? "true" : "false";
    if (auto const* const time = std::get_if<std::tm>(&property.value))
        return fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}", time->tm_year + 1900LL, time->tm_mon + 1LL,
                           time->tm_mday, time->tm_hour, time->tm_min, time->tm_sec);
    return {};
}

}  // namespace KVR

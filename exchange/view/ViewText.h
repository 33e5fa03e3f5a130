#pragma once

#include <array>
#include <concepts>
#include <nlohmann/json.hpp>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace KVR
{

/// A part of the JSON of a viewer file; members stay in the order in which they are set.
using ViewJson = nlohmann::ordered_json;

/// The shortest JSON; bytes that are not UTF-8 become U+FFFD.
std::string TextOf(ViewJson const& json);

/// A list of numbers as the text of its JSON, which takes a tenth of the memory of one as JSON.
class ViewColumn
{
public:
    void Add(std::integral auto number) { AddText(std::to_string(number)); }
    /// To 12 digits; null for what JSON cannot hold.
    void Add(double number);

    std::string List() const { return '[' + m_text + ']'; }

private:
    void AddText(std::string_view number)
    {
        if (!m_text.empty())
            m_text += ',';
        m_text += number;
    }

    std::string m_text;
};

/// A list of three numbers; those that are not finite are 0.
ViewJson JsonOf(std::array<double, 3> const& triple);

/// Sets a member unless its text is empty.
void SetText(ViewJson& json, char const* name, std::string_view text);

/// Sets a member to what there is.
template <class Value>
void SetOptional(ViewJson& json, char const* name, std::optional<Value> const& value)
{
    if (!value)
        return;
    if constexpr (std::is_same_v<Value, std::array<double, 3>>)
        json[name] = JsonOf(*value);
    else
        json[name] = *value;
}

}  // namespace KVR

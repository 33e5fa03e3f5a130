#include "host/notes/NoteDetails.h"

#include <fmt/format.h>

#include <nlohmann/json.hpp>

#include "output/JsonDepth.h"
#include "output/JsonWriter.h"
#include "scene/SceneNote.h"

namespace KVR
{

namespace
{

using nlohmann::json;

json DetailsOf(SceneNote const& note)
{
    json details = IsShallowJson(note.details) ? json::parse(note.details, nullptr, false) : json();
    return details.is_object() ? details : json();
}

std::optional<double> NumberAt(json const& details, char const* key)
{
    auto const found = details.find(key);
    return found != details.end() && found->is_number() ? std::optional(found->get<double>()) : std::nullopt;
}

std::string TextAt(json const& details, char const* key)
{
    auto const found = details.find(key);
    return found != details.end() && found->is_string() ? found->get<std::string>() : std::string();
}

void AddWord(std::string& words, std::string const& word)
{
    if (!word.empty())
        words += (words.empty() ? "" : ", ") + word;
}

void AddNumber(std::string& words, char const* name, std::optional<double> const& number)
{
    if (number)
        AddWord(words, fmt::format("{} {:.10g}", name, *number));
}

}  // namespace

std::string ValuesOf(SceneNote const& note)
{
    json const details = DetailsOf(note);
    if (details.is_null())
        return {};
    std::string words;
    auto const minus = NumberAt(details, "minus");
    auto const plus = NumberAt(details, "plus");
    if (minus && plus)
        words = fmt::format("{:+.10g} {:+.10g}", -*minus, *plus);
    auto const lower = NumberAt(details, "lower");
    auto const upper = NumberAt(details, "upper");
    if (lower && upper)
        AddWord(words, fmt::format("{:.10g} to {:.10g}", *lower, *upper));
    AddWord(words, TextAt(details, "fitOf"));
    AddWord(words, TextAt(details, "zone"));
    AddNumber(words, "at most", NumberAt(details, "maximum"));
    AddNumber(words, "displaced", NumberAt(details, "displacement"));
    AddNumber(words, "per", NumberAt(details, "unitSize"));
    AddNumber(words, "projected", NumberAt(details, "projection"));
    if (std::string const target = TextAt(details, "target"); !target.empty())
        AddWord(words, "target " + target + (TextAt(details, "targetType").empty() ? "" : " ") +
                           TextAt(details, "targetType"));
    AddNumber(words, "length", NumberAt(details, "targetLength"));
    AddNumber(words, "width", NumberAt(details, "targetWidth"));
    if (auto const modifiers = details.find("modifiers"); modifiers != details.end() && modifiers->is_array())
        for (json const& modifier : *modifiers)
            if (modifier.is_string())
                AddWord(words, modifier.get<std::string>());
    if (std::string const tolerance = TextAt(details, "tolerance"); !tolerance.empty())
        AddWord(words, "of " + tolerance);
    return words;
}

void WriteDetails(JsonWriter& writer, SceneNote const& note)
{
    json const details = DetailsOf(note);
    if (details.is_null())
        return writer.Null();
    writer.BeginObject();
    for (auto const& [key, value] : details.items())
    {
        if (!value.is_number() && !value.is_string() && !value.is_array())
            continue;
        writer.Key(key);
        if (value.is_number())
            writer.Number(value.get<double>());
        else if (value.is_string())
            writer.String(value.get<std::string>());
        else
        {
            writer.BeginList(JsonWriter::Layout::Row);
            for (json const& item : value)
                if (item.is_string())
                    writer.String(item.get<std::string>());
            writer.EndList();
        }
    }
    writer.EndObject();
}

}  // namespace KVR

#include "tests/exchange/SceneComparison.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <stdexcept>

#include "tests/tool/ToolRun.h"

namespace KVR::Test
{

namespace
{

using nlohmann::json;

// Named after the file, counted by its entities, or made anew.
std::set<std::string> const kIgnored{"FileFullPath", "PersistentIDsMap", "VersionPersistentId", "ChangeKey",
                                     "VertexCount",  "NormalCount",      "PolygonCount",        "EdgeSegmentCount"};
std::set<std::string> const kIgnoredOfFile{"Title", "SendingSystem", "Preprocessor", "CreationDate"};
// Lists without an order.
std::set<std::string> const kSets{"GeometryItems", "StyleSet"};

class Scene
{
public:
    explicit Scene(std::string const& path)
    {
        ToolRun const run =
            RunTool({"dump", "--summary", "--mass", "--extension", "kvr.body", "--extension", "kvr.annotation.kind",
                     "--extension", "kvr.annotation.references", "--extension", "kvr.annotation.details", path});
        if (run.status != 0)
            throw std::runtime_error(path + ": " + run.error);
        json const dump = json::parse(run.out);
        // The numbers of styles are those of a table that has no order: their looks stand for them.
        for (auto const& [id, object] : dump.at("Objects").items())
            if (object.is_object() && object.at("Class") == "IRenderStyle")
                m_styles[id] = LookOf(object);
        for (auto const& [id, object] : dump.at("Objects").items())
            if (m_styles.count(id) == 0)
                objects[id] = Cleaned(object);
    }

    json objects = json::object();

private:
    static std::string LookOf(json object)
    {
        object.erase("Id");
        object.erase("Label");
        for (json& value : object)
            if (value.is_array())
                for (json& number : value)
                    if (number.is_number())
                        number = std::round(number.get<double>() * 1e6) / 1e6;
        return "look " + object.dump();
    }

    json Cleaned(json const& value, bool isFile = false) const
    {
        if (value.is_string())
        {
            auto const style = m_styles.find(value.get<std::string>());
            return style == m_styles.end() ? value : json(style->second);
        }
        if (value.is_array())
        {
            json list = json::array();
            for (json const& element : value)
                list.push_back(Cleaned(element));
            return list;
        }
        if (!value.is_object())
            return value;
        bool const isRoot = value.contains("Class") && value.at("Class") == "IFile";
        json object = json::object();
        for (auto const& [key, member] : value.items())
        {
            if (kIgnored.count(key) > 0 || (isFile && kIgnoredOfFile.count(key) > 0) || (isRoot && key == "Label"))
                continue;
            object[key] = Cleaned(member, key == "FileProperties");
            if (kSets.count(key) > 0)
                std::sort(object[key].begin(), object[key].end());
        }
        return object;
    }

    std::map<std::string, std::string> m_styles;
};

void Compare(std::string const& where, json const& a, json const& b, std::vector<std::string>& differences)
{
    if (a.is_number() && b.is_number())
    {
        double const x = a.get<double>();
        double const y = b.get<double>();
        if (std::abs(x - y) <= 1e-6 * std::max({1.0, std::abs(x), std::abs(y)}))
            return;
    }
    else if (a.is_object() && b.is_object())
    {
        for (auto const& [key, value] : a.items())
            Compare(where + '/' + key, value, b.contains(key) ? b.at(key) : json("nothing"), differences);
        for (auto const& [key, value] : b.items())
            if (!a.contains(key))
                Compare(where + '/' + key, "nothing", value, differences);
        return;
    }
    else if (a.is_array() && b.is_array() && a.size() == b.size())
    {
        for (std::size_t i = 0; i < a.size(); ++i)
            Compare(where + '/' + std::to_string(i), a.at(i), b.at(i), differences);
        return;
    }
    else if (a == b)
        return;
    differences.push_back(where + ": " + a.dump().substr(0, 300) + " became " + b.dump().substr(0, 300));
}

}  // namespace

nlohmann::json SceneContent(std::string const& path)
{
    return Scene(path).objects;
}

nlohmann::json WithoutAddedMeasures(nlohmann::json const& first, nlohmann::json second)
{
    json const none = json::array();
    for (auto& [id, object] : second.items())
    {
        if (!object.is_object() || !object.value("FileProperties", json()).is_object())
            continue;
        json& properties = object["FileProperties"];
        json const before = first.contains(id) ? first.at(id).value("FileProperties", json()) : json();
        json const known = before.is_object() ? before.at("CustomProperties") : none;
        json left = json::array();
        for (json const& property : properties.at("CustomProperties"))
        {
            bool const isMeasure =
                property.at("Name").get<std::string>().starts_with("geometric validation property: ");
            bool const isKnown = std::any_of(known.begin(), known.end(),
                                             [&](json const& other) { return other["Name"] == property["Name"]; });
            if (!isMeasure || isKnown)
                left.push_back(property);
        }
        properties["CustomProperties"] = left;
        if (before.is_null() && left.empty())
            properties = json();
    }
    return second;
}

std::vector<std::string> DifferencesOf(nlohmann::json const& first, nlohmann::json const& second)
{
    std::vector<std::string> differences;
    Compare("", first, second, differences);
    return differences;
}

}  // namespace KVR::Test

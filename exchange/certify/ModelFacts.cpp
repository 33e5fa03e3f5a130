#include "exchange/certify/ModelFacts.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>

namespace KVR::Certification
{

namespace
{

// JSON has no others.
std::vector<double> Finite(std::vector<double> numbers)
{
    for (double& number : numbers)
        number = std::isfinite(number) ? number : 0.0;
    return numbers;
}

}  // namespace

void ModelFacts::Add(char const* table, std::string const& name, std::vector<double> const& numbers, double count)
{
    tables[table][name].Add({count, numbers});
}

void ModelFacts::Entry::Add(Entry const& other)
{
    count += other.count;
    numbers.resize(std::max(numbers.size(), other.numbers.size()), 0.0);
    for (std::size_t i = 0; i < other.numbers.size(); ++i)
        numbers[i] += other.numbers[i];
}

std::pair<std::string, std::string> ModelFacts::Parted(std::string const& joined)
{
    std::size_t const place = joined.find(kJoint);
    return place == std::string::npos ? std::pair(std::string(), joined)
                                      : std::pair(joined.substr(0, place), joined.substr(place + 1));
}

std::string ModelFacts::Text() const
{
    using nlohmann::json;
    json list = json::array();
    for (Occurrence const& o : occurrences)
        list.push_back({o.path, o.name, o.component, o.componentName, o.number, o.isPart, o.isHidden, o.solids, o.faces,
                        o.triangles, o.bodies.Numbers(), o.mesh.Numbers(), o.properties, o.units});
    json all = json::object();
    for (auto const& [name, table] : tables)
    {
        json entries = json::object();
        for (auto const& [key, entry] : table)
            entries[key] = {entry.count, Finite(entry.numbers)};
        all[name] = std::move(entries);
    }
    return json({std::move(list), std::move(all), hasBodies, hasMesh})
        .dump(-1, ' ', false, json::error_handler_t::replace);
}

ModelFacts ModelFacts::Of(std::string const& text)
{
    nlohmann::json const object = nlohmann::json::parse(text);
    ModelFacts facts;
    for (auto const& row : object.at(0))
    {
        Occurrence& o = facts.occurrences.emplace_back();
        row.at(0).get_to(o.path);
        row.at(1).get_to(o.name);
        row.at(2).get_to(o.component);
        row.at(3).get_to(o.componentName);
        row.at(4).get_to(o.number);
        row.at(5).get_to(o.isPart);
        row.at(6).get_to(o.isHidden);
        row.at(7).get_to(o.solids);
        row.at(8).get_to(o.faces);
        row.at(9).get_to(o.triangles);
        o.bodies = Bulk::Of(row.at(10));
        o.mesh = Bulk::Of(row.at(11));
        row.at(12).get_to(o.properties);
        row.at(13).get_to(o.units);
    }
    for (auto const& [name, table] : object.at(1).items())
        for (Table& entries = facts.tables[name]; auto const& [key, entry] : table.items())
            entries[key] = {entry.at(0), entry.at(1)};
    object.at(2).get_to(facts.hasBodies);
    object.at(3).get_to(facts.hasMesh);
    return facts;
}

std::string ColorText(double red, double green, double blue, double alpha)
{
    auto const byte = [](double fraction)
    { return static_cast<int>(std::lround(std::clamp(fraction, 0.0, 1.0) * 255.0)); };
    return fmt::format("#{:02x}{:02x}{:02x}{:02x}", byte(red), byte(green), byte(blue), byte(alpha));
}

}  // namespace KVR::Certification

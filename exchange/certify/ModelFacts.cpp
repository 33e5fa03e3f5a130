#include "exchange/certify/ModelFacts.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>

namespace KVR
{

namespace
{

using nlohmann::json;

json ToJson(Measures const& measures)
{
    return {measures.volume, measures.area, measures.volumeMoment, measures.areaMoment};
}

void FromJson(json const& value, Measures& measures)
{
    measures.volume = value.at(0);
    measures.area = value.at(1);
    measures.volumeMoment = value.at(2);
    measures.areaMoment = value.at(3);
}
template <class Value>
json ToJson(Value const& value)
{
    return value;
}

template <class Value>
void FromJson(json const& value, Value& target)
{
    target = value.get<Value>();
}

// Every member by its name, for writing and reading alike.
template <class Facts, class Use>
void ForEachMember(Facts& facts, Use use)
{
    use("assemblies", facts.assemblies);
    use("parts", facts.parts);
    use("instances", facts.instances);
    use("occurrences", facts.occurrences);
    use("solids", facts.solids);
    use("faces", facts.faces);
    use("edges", facts.edges);
    use("triangles", facts.triangles);
    use("names", facts.names);
    use("colors", facts.colors);
    use("drawnColors", facts.drawnColors);
    use("layers", facts.layers);
    use("layerMembers", facts.layerMembers);
    use("annotations", facts.annotations);
    use("drawings", facts.drawings);
    use("views", facts.views);
    use("bodies", facts.bodies);
    use("mesh", facts.mesh);
    use("box", facts.box);
}

}  // namespace

std::string ModelFacts::Text() const
{
    json object = json::object();
    ForEachMember(*this,
                  [&](char const* name, auto const& member)
                  {
                      if (member)
                          object[name] = ToJson(*member);
                  });
    return object.dump(-1, ' ', false, json::error_handler_t::replace);
}

ModelFacts ModelFacts::Of(std::string const& text)
{
    json const object = json::parse(text);
    ModelFacts facts;
    ForEachMember(facts,
                  [&](char const* name, auto& member)
                  {
                      if (object.contains(name))
                          FromJson(object.at(name), member.emplace());
                  });
    return facts;
}

void ModelFacts::AddPoint(double x, double y, double z)
{
    if (!box)
    {
        box = {x, y, z, x, y, z};
        return;
    }
    std::array<double, 3> const point{x, y, z};
    for (std::size_t axis = 0; axis < 3; ++axis)
    {
        (*box)[axis] = std::min((*box)[axis], point[axis]);
        (*box)[3 + axis] = std::max((*box)[3 + axis], point[axis]);
    }
}

void AddTriangle(Measures& measures, std::array<double, 3> const& a, std::array<double, 3> const& b,
                 std::array<double, 3> const& c)
{
    std::array<double, 3> normal{};
    for (std::size_t axis = 0; axis < 3; ++axis)
    {
        std::size_t const next = (axis + 1) % 3;
        std::size_t const last = (axis + 2) % 3;
        normal[axis] = (b[next] - a[next]) * (c[last] - a[last]) - (b[last] - a[last]) * (c[next] - a[next]);
    }
    double const area = 0.5 * std::hypot(normal[0], normal[1], normal[2]);
    // That of the tetrahedron with the origin.
    double const volume = (a[0] * normal[0] + a[1] * normal[1] + a[2] * normal[2]) / 6.0;
    measures.area += area;
    measures.volume += volume;
    for (std::size_t axis = 0; axis < 3; ++axis)
    {
        double const sum = a[axis] + b[axis] + c[axis];
        measures.areaMoment[axis] += area * sum / 3.0;
        measures.volumeMoment[axis] += volume * sum / 4.0;
    }
}

std::string ColorText(double red, double green, double blue, double alpha)
{
    auto const byte = [](double fraction)
    { return static_cast<int>(std::lround(std::clamp(fraction, 0.0, 1.0) * 255.0)); };
    return fmt::format("#{:02x}{:02x}{:02x}{:02x}", byte(red), byte(green), byte(blue), byte(alpha));
}

}  // namespace KVR

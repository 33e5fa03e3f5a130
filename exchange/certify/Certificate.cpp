#include "exchange/certify/Certificate.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cmath>
#include <functional>

namespace KVR
{

namespace
{

// How far numbers may be apart.
constexpr double kTolerance = 1e-6;

double Relative(double a, double b)
{
    double const most = std::max(std::abs(a), std::abs(b));
    return most > 0.0 ? std::abs(a - b) / most : 0.0;
}

double DiagonalOf(std::vector<Certificate::Stage> const& stages)
{
    for (Certificate::Stage const& stage : stages)
        if (auto const& box = stage.facts.box)
            return std::hypot((*box)[3] - (*box)[0], (*box)[4] - (*box)[1], (*box)[5] - (*box)[2]);
    return 0.0;
}

// Makes a row of what is asked of each stage; stages without an answer do not count.
template <class Value>
Certificate::Row MakeRow(std::string name, std::vector<Certificate::Stage> const& stages,
                         std::function<std::optional<Value>(ModelFacts const&)> const& ask,
                         std::function<std::string(Value const&)> const& show,
                         std::function<double(Value const&, Value const&)> const& compare)
{
    Certificate::Row row;
    row.name = std::move(name);
    std::optional<Value> first;
    for (Certificate::Stage const& stage : stages)
    {
        std::optional<Value> const value = ask(stage.facts);
        row.values.push_back(value ? show(*value) : std::string());
        if (value && first)
            row.difference = std::max(row.difference, compare(*first, *value));
        if (!first)
            first = value;
    }
    row.isGood = row.difference <= kTolerance;
    return row;
}

using Count = unsigned long long;
using Names = std::set<std::string>;
using Point = std::array<double, 3>;

std::optional<Point> CentreOf(std::optional<Measures> const& measures)
{
    if (!measures)
        return {};
    bool const hasVolume = measures->volume != 0.0;
    double const sum = hasVolume ? measures->volume : measures->area;
    if (sum == 0.0)
        return {};
    Point centre = hasVolume ? measures->volumeMoment : measures->areaMoment;
    for (double& x : centre)
        x /= sum;
    return centre;
}

}  // namespace

Certificate::Certificate(std::vector<Stage> const& stages)
{
    double const diagonal = DiagonalOf(stages);
    auto const count = [&](char const* name, std::optional<Count> ModelFacts::*member)
    {
        m_rows.push_back(MakeRow<Count>(
            name, stages, [member](ModelFacts const& facts) { return facts.*member; },
            [](Count const& value) { return std::to_string(value); },
            [](Count const& a, Count const& b) { return Relative(static_cast<double>(a), static_cast<double>(b)); }));
    };
    auto const names = [&](char const* name, std::optional<Names> ModelFacts::*member)
    {
        m_rows.push_back(MakeRow<Names>(
            name, stages, [member](ModelFacts const& facts) { return facts.*member; },
            [](Names const& value) { return std::to_string(value.size()); },
            [](Names const& a, Names const& b) { return a == b ? 0.0 : 1.0; }));
    };
    auto const number = [&](char const* name, std::function<std::optional<double>(ModelFacts const&)> const& ask)
    {
        m_rows.push_back(MakeRow<double>(
            name, stages, ask, [](double const& value) { return fmt::format("{:.9g}", value); }, &Relative));
    };
    auto const lengths =
        [&]<std::size_t size>(char const* name,
                              std::function<std::optional<std::array<double, size>>(ModelFacts const&)> const& ask)
    {
        using List = std::array<double, size>;
        m_rows.push_back(MakeRow<List>(
            name, stages, ask, [](List const& value) { return fmt::format("{:.6g}", fmt::join(value, " ")); },
            [diagonal](List const& a, List const& b)
            {
                double most = 0.0;
                for (std::size_t i = 0; i < size; ++i)
                    most = std::max(most, std::abs(a[i] - b[i]));
                return diagonal > 0.0 ? most / diagonal : most;
            }));
    };
    count("assemblies", &ModelFacts::assemblies);
    count("parts", &ModelFacts::parts);
    count("instances", &ModelFacts::instances);
    count("occurrences", &ModelFacts::occurrences);
    count("solids", &ModelFacts::solids);
    count("faces", &ModelFacts::faces);
    count("edges", &ModelFacts::edges);
    count("triangles", &ModelFacts::triangles);
    names("names", &ModelFacts::names);
    names("colours", &ModelFacts::colors);
    names("drawn colours", &ModelFacts::drawnColors);
    names("layers", &ModelFacts::layers);
    count("layer members", &ModelFacts::layerMembers);
    count("annotations", &ModelFacts::annotations);
    count("drawn annotations", &ModelFacts::drawings);
    count("views", &ModelFacts::views);
    number("volume", [](ModelFacts const& facts)
           { return facts.bodies ? std::optional<double>(facts.bodies->volume) : std::nullopt; });
    number("area", [](ModelFacts const& facts)
           { return facts.bodies ? std::optional<double>(facts.bodies->area) : std::nullopt; });
    lengths.operator()<3>("centroid", [](ModelFacts const& facts) { return CentreOf(facts.bodies); });
    number("mesh volume", [](ModelFacts const& facts)
           { return facts.mesh ? std::optional<double>(facts.mesh->volume) : std::nullopt; });
    number("mesh area",
           [](ModelFacts const& facts) { return facts.mesh ? std::optional<double>(facts.mesh->area) : std::nullopt; });
    lengths.operator()<6>("box", [](ModelFacts const& facts) { return facts.box; });
}

bool Certificate::IsGood() const noexcept
{
    return std::all_of(m_rows.begin(), m_rows.end(), [](Row const& row) { return row.isGood; });
}

}  // namespace KVR

#include "exchange/model/Part21Values.h"

#include <fmt/format.h>

#include <cmath>

namespace KVR
{

namespace
{

using Kind = Part21Parameter::Kind;

Part21Parameter const& At(Part21File::Values const& values, std::size_t place)
{
    static Part21Parameter const none;
    return place < values.size() ? values[place] : none;
}

constexpr std::pair<std::string_view, double> kPrefixes[] = {
    {"EXA", 1e18},  {"PETA", 1e15},  {"TERA", 1e12},   {"GIGA", 1e9},   {"MEGA", 1e6},   {"KILO", 1e3},
    {"HECTO", 1e2}, {"DECA", 1e1},   {"DECI", 1e-1},   {"CENTI", 1e-2}, {"MILLI", 1e-3}, {"MICRO", 1e-6},
    {"NANO", 1e-9}, {"PICO", 1e-12}, {"FEMTO", 1e-15}, {"ATTO", 1e-18},
};

}  // namespace

std::string Part21TextAt(Part21File::Values const& values, std::size_t place)
{
    Part21Parameter const& value = At(values, place);
    if (value.kind == Kind::kText)
        return value.text;
    // A text with a type: LABEL('x').
    return value.kind == Kind::kList && value.items.size() == 1 && value.items[0].kind == Kind::kText
               ? value.items[0].text
               : std::string();
}

Part21File::Number Part21ReferenceAt(Part21File::Values const& values, std::size_t place)
{
    return At(values, place).reference;
}

std::vector<Part21File::Number> Part21ReferencesAt(Part21File::Values const& values, std::size_t place)
{
    Part21Parameter const& value = At(values, place);
    if (value.kind == Kind::kReference)
        return {value.reference};
    std::vector<Part21File::Number> numbers;
    for (std::size_t i = 0; i < value.items.size(); ++i)
        for (Part21File::Number const number : Part21ReferencesAt(value.items, i))
            numbers.push_back(number);
    return numbers;
}

std::optional<double> Part21NumberAt(Part21File::Values const& values, std::size_t place)
{
    Part21Parameter const& value = At(values, place);
    if (value.kind == Kind::kNumber)
        return value.number;
    if (value.kind == Kind::kList && value.items.size() == 1)
        return Part21NumberAt(value.items, 0);
    return std::nullopt;
}

std::optional<Part21Measure> Part21MeasureOf(Part21File const& file, Part21File::Number number)
{
    Part21File::Entity const* const entity = file.Find(number);
    if (!entity)
        return std::nullopt;
    bool const isItem = file.Is(*entity, "MEASURE_REPRESENTATION_ITEM");
    // The value stands behind the name of an item, or in a part of its own.
    bool const isPart = file.Is(*entity, "MEASURE_WITH_UNIT");
    std::string const type = isPart ? "MEASURE_WITH_UNIT" : file.TypeOf(*entity);
    if (!isItem && type.find("MEASURE_WITH_UNIT") == std::string::npos)
        return std::nullopt;
    Part21File::Values const values = file.ParametersOf(*entity, type);
    std::size_t const place = isItem && !isPart ? 1 : 0;
    std::optional<double> const value = Part21NumberAt(values, place);
    if (!value || !std::isfinite(*value))
        return std::nullopt;
    return Part21Measure{*value, values[place].text, Part21ReferenceAt(values, place + 1)};
}

double Part21UnitFactor(Part21File const& file, Part21File::Number unit)
{
    double factor = 1.0;
    // A unit that is measured in another one; more steps than these are a cycle.
    for (int step = 0; step < 8; ++step)
    {
        Part21File::Entity const* const entity = file.Find(unit);
        if (!entity)
            return 0.0;
        if (file.Is(*entity, "SI_UNIT"))
        {
            Part21File::Values const values = file.ParametersOf(*entity, "SI_UNIT");
            // A simple one begins with its dimensions.
            std::size_t const place = values.size() > 2 ? 1 : 0;
            std::string const name = At(values, place + 1).text;
            if (name != "METRE" && name != "RADIAN" && name != "GRAM")
                return 0.0;
            for (auto const& [prefix, power] : kPrefixes)
                if (At(values, place).text == prefix)
                    factor *= power;
            return factor;
        }
        std::optional<Part21Measure> const measure =
            Part21MeasureOf(file, Part21ReferenceAt(file.ParametersOf(*entity, "CONVERSION_BASED_UNIT"), 1));
        if (!measure)
            return 0.0;
        factor *= measure->value;
        unit = measure->unit;
    }
    return 0.0;
}

std::string Part21UnitName(Part21File const& file, Part21File::Number unit)
{
    Part21File::Entity const* const entity = file.Find(unit);
    if (!entity)
        return {};
    std::string name;
    if (file.Is(*entity, "SI_UNIT"))
    {
        Part21File::Values const values = file.ParametersOf(*entity, "SI_UNIT");
        // A simple one begins with its dimensions.
        std::size_t const place = values.size() > 2 ? 1 : 0;
        name = At(values, place).text + At(values, place + 1).text;
    }
    else if (file.Is(*entity, "CONVERSION_BASED_UNIT"))
        name = Part21TextAt(file.ParametersOf(*entity, "CONVERSION_BASED_UNIT"), 0);
    else if (file.Is(*entity, "CONTEXT_DEPENDENT_UNIT"))
        name = Part21TextAt(file.ParametersOf(*entity, "CONTEXT_DEPENDENT_UNIT"), 0);
    for (char& c : name)
        c = c == '_' ? ' ' : c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    for (Part21File::Number const place : Part21ReferencesAt(file.ParametersOf(*entity, "DERIVED_UNIT"), 0))
    {
        Part21File::Entity const* const element = file.Find(place);
        if (!element)
            continue;
        Part21File::Values const values = file.ParametersOf(*element, "DERIVED_UNIT_ELEMENT");
        Part21File::Entity const* const base = file.Find(Part21ReferenceAt(values, 0));
        // No unit is made of itself.
        if (!base || file.Is(*base, "DERIVED_UNIT"))
            continue;
        double const exponent = Part21NumberAt(values, 1).value_or(1.0);
        name += (name.empty() ? "" : " ") + Part21UnitName(file, base->number);
        if (exponent != 1.0)
            name += fmt::format("^{:g}", exponent);
    }
    return name;
}

std::optional<double> Part21PowerOf(Part21File const& file, Part21File::Number number, int power)
{
    std::optional<Part21Measure> const measure = Part21MeasureOf(file, number);
    Part21File::Entity const* const unit = measure ? file.Find(measure->unit) : nullptr;
    if (!unit || !file.Is(*unit, "DERIVED_UNIT"))
        return std::nullopt;
    double factor = 1.0;
    double exponents = 0.0;
    for (Part21File::Number const place : Part21ReferencesAt(file.ParametersOf(*unit, "DERIVED_UNIT"), 0))
    {
        Part21File::Entity const* const element = file.Find(place);
        if (!element)
            continue;
        Part21File::Values const values = file.ParametersOf(*element, "DERIVED_UNIT_ELEMENT");
        Part21File::Number const base = Part21ReferenceAt(values, 0);
        Part21File::Entity const* const baseUnit = file.Find(base);
        double const exponent = Part21NumberAt(values, 1).value_or(0.0);
        if (!baseUnit || !file.Is(*baseUnit, "LENGTH_UNIT"))
            return std::nullopt;
        factor *= std::pow(Part21UnitFactor(file, base), exponent);
        exponents += exponent;
    }
    double const value = measure->value * factor;
    return exponents == power && std::isfinite(value) ? std::optional(value) : std::nullopt;
}

std::optional<double> Part21DensityOf(Part21File const& file, Part21File::Number number)
{
    std::optional<Part21Measure> const measure = Part21MeasureOf(file, number);
    Part21File::Entity const* const unit = measure ? file.Find(measure->unit) : nullptr;
    if (!unit || !file.Is(*unit, "DERIVED_UNIT"))
        return std::nullopt;
    constexpr double kMillimetresPerMetre = 1e3;
    double factor = 1.0;
    double divisor = 1.0;
    bool hasMass = false;
    for (Part21File::Number const place : Part21ReferencesAt(file.ParametersOf(*unit, "DERIVED_UNIT"), 0))
    {
        Part21File::Entity const* const element = file.Find(place);
        if (!element)
            continue;
        Part21File::Values const values = file.ParametersOf(*element, "DERIVED_UNIT_ELEMENT");
        Part21File::Number const base = Part21ReferenceAt(values, 0);
        Part21File::Entity const* const baseUnit = file.Find(base);
        bool const isMass = baseUnit && file.Is(*baseUnit, "MASS_UNIT");
        hasMass = hasMass || isMass;
        double const size = Part21UnitFactor(file, base) * (isMass ? 1.0 : kMillimetresPerMetre);
        double const exponent = Part21NumberAt(values, 1).value_or(0.0);
        // Powers of ten are exact above 1 alone.
        (exponent < 0.0 ? divisor : factor) *= std::pow(size, std::abs(exponent));
    }
    double const density = measure->value * factor / divisor;
    return hasMass && std::isfinite(density) && density > 0.0 ? std::optional(density) : std::nullopt;
}

}  // namespace KVR

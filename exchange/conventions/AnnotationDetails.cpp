#include "exchange/conventions/AnnotationDetails.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <nlohmann/json.hpp>

namespace KVR
{

namespace
{

using nlohmann::json;

constexpr int kLastLocation = 13;

constexpr std::string_view kDimensionTypes[] = {
    "",
    "curved distance",
    "linear distance",
    "linear distance from centre to outer",
    "linear distance from centre to inner",
    "linear distance from outer to centre",
    "linear distance from outer to outer",
    "linear distance from outer to inner",
    "linear distance from inner to centre",
    "linear distance from inner to outer",
    "linear distance from inner to inner",
    "angle",
    "oriented",
    "location with path",
    "curve length",
    "diameter",
    "spherical diameter",
    "radius",
    "spherical radius",
    "toroidal minor diameter",
    "toroidal major diameter",
    "toroidal minor radius",
    "toroidal major radius",
    "toroidal high major diameter",
    "toroidal low major diameter",
    "toroidal high major radius",
    "toroidal low major radius",
    "thickness",
    "angle",
    "size with path",
    "label",
    "presentation",
};

constexpr std::string_view kToleranceTypes[] = {
    "",
    "angularity",
    "circular run-out",
    "circularity",
    "coaxiality",
    "concentricity",
    "cylindricity",
    "flatness",
    "parallelism",
    "perpendicularity",
    "position",
    "profile of line",
    "profile of surface",
    "straightness",
    "symmetry",
    "total run-out",
};

template <std::size_t size>
std::string_view NameOf(std::string_view const (&names)[size], int type)
{
    return type >= 0 && static_cast<std::size_t>(type) < size ? names[type] : std::string_view();
}

template <std::size_t size>
int TypeOf(std::string_view const (&names)[size], std::string_view name)
{
    auto const* const found = std::find(std::begin(names), std::end(names), name);
    return found == std::end(names) ? 0 : static_cast<int>(found - std::begin(names));
}

void Put(json& object, char const* key, std::string const& value)
{
    if (!value.empty())
        object[key] = value;
}
void Put(json& object, char const* key, int value)
{
    if (value != 0)
        object[key] = value;
}
void Put(json& object, char const* key, std::vector<std::string> const& value)
{
    if (!value.empty())
        object[key] = value;
}
template <class Value>
void Put(json& object, char const* key, std::optional<Value> const& value)
{
    if (value)
        object[key] = *value;
}

void Take(json const& value, std::string& target)
{
    if (value.is_string())
        target = value.get<std::string>();
}
void Take(json const& value, int& target)
{
    if (value.is_number_integer())
        target = value.get<int>();
}
void Take(json const& value, std::optional<double>& target)
{
    if (value.is_number())
        target = value.get<double>();
}
void Take(json const& value, std::vector<std::string>& target)
{
    for (json const& element : value)
        if (element.is_string())
            target.push_back(element.get<std::string>());
}
void Take(json const& value, std::optional<std::vector<std::string>>& target)
{
    if (value.is_array())
        Take(value, target.emplace());
}

// Every member by its key, for writing and reading alike.
template <class Details, class Use>
void ForEachMember(Details& details, Use use)
{
    use("number", details.number);
    use("type", details.type);
    use("value", details.value);
    use("minus", details.minus);
    use("plus", details.plus);
    use("lower", details.lower);
    use("upper", details.upper);
    use("second", details.second);
    use("letter", details.letter);
    use("tolerance", details.tolerance);
    use("position", details.position);
    use("modifiers", details.modifiers);
    use("fit", details.fit);
    use("fitOf", details.fitOf);
    use("magnitude", details.magnitude);
    use("maximum", details.maximum);
    use("displacement", details.displacement);
    use("unitSize", details.unitSize);
    use("zone", details.zone);
    use("projection", details.projection);
    use("target", details.target);
    use("targetType", details.targetType);
    use("targetLength", details.targetLength);
    use("targetWidth", details.targetWidth);
}

}  // namespace

void AnnotationDetails::Scale(double factor)
{
    // Numbers that need no change keep their digits.
    if (std::abs(factor - 1.0) < 1e-12)
        return;
    for (std::optional<double>* const length : {&value, &minus, &plus, &lower, &upper, &magnitude, &maximum,
                                                &displacement, &unitSize, &projection, &targetLength, &targetWidth})
        if (*length)
            **length *= factor;
}

std::string AnnotationDetails::Text() const
{
    json object = json::object();
    ForEachMember(*this, [&](char const* key, auto const& member) { Put(object, key, member); });
    return object.dump(-1, ' ', false, json::error_handler_t::replace);
}

std::optional<AnnotationDetails> AnnotationDetails::Of(std::string const& text)
{
    json const object = json::parse(text, nullptr, false);
    if (!object.is_object())
        return std::nullopt;
    AnnotationDetails details;
    ForEachMember(details,
                  [&](char const* key, auto& member)
                  {
                      if (auto const found = object.find(key); found != object.end())
                          Take(*found, member);
                  });
    return details;
}

std::string_view DimensionTypeName(int type)
{
    return NameOf(kDimensionTypes, type);
}

std::string_view ToleranceTypeName(int type)
{
    return NameOf(kToleranceTypes, type);
}

int DimensionTypeOf(std::string_view name)
{
    return TypeOf(kDimensionTypes, name);
}

int ToleranceTypeOf(std::string_view name)
{
    return TypeOf(kToleranceTypes, name);
}

bool IsAngle(int dimensionType)
{
    return dimensionType == kDimensionType_AngularLocation || dimensionType == kDimensionType_AngularSize;
}

bool IsLocation(int dimensionType)
{
    return dimensionType > kDimensionType_None && dimensionType <= kLastLocation;
}

}  // namespace KVR

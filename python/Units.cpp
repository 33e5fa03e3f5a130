#include "python/Units.h"

#include <pybind11/pybind11.h>

#include <cctype>
#include <string_view>

#include "framework/api/UnitText.h"

namespace KVR::Python
{

namespace
{

constexpr std::string_view kPrefix = "kUnitType_";

}  // namespace

std::string NameOfUnit(UnitTypeEnum unit)
{
    char const* const text = unit == kUnitType_Unknown ? nullptr : TextOfUnit(unit);
    if (!text)
        return {};
    std::string name(std::string_view(text).substr(kPrefix.size()));
    name.front() = static_cast<char>(std::tolower(static_cast<unsigned char>(name.front())));
    return name;
}

UnitTypeEnum UnitOfName(std::string const& name)
{
    UnitTypeEnum unit = kUnitType_Unknown;
    std::string text = std::string(kPrefix) + name;
    if (!name.empty())
        text[kPrefix.size()] = static_cast<char>(std::toupper(static_cast<unsigned char>(name.front())));
    if (!UnitOfText(text, unit))
        throw pybind11::value_error("there is no unit '" + name + "'");
    return unit;
}

}  // namespace KVR::Python

#include "exchange/export/StepPropertyUnit.h"

#include <StepBasic_SiUnitAndLengthUnit.hxx>
#include <StepBasic_SiUnitAndMassUnit.hxx>
#include <StepBasic_SiUnitAndPlaneAngleUnit.hxx>
#include <StepBasic_SiUnitAndTimeUnit.hxx>
#include <utility>

namespace KVR
{

namespace
{

using opencascade::handle;

constexpr std::pair<std::string_view, StepBasic_SiPrefix> kPrefixes[] = {
    {"exa", StepBasic_spExa},     {"peta", StepBasic_spPeta},   {"tera", StepBasic_spTera},
    {"giga", StepBasic_spGiga},   {"mega", StepBasic_spMega},   {"kilo", StepBasic_spKilo},
    {"hecto", StepBasic_spHecto}, {"deca", StepBasic_spDeca},   {"deci", StepBasic_spDeci},
    {"centi", StepBasic_spCenti}, {"milli", StepBasic_spMilli}, {"micro", StepBasic_spMicro},
    {"nano", StepBasic_spNano},   {"pico", StepBasic_spPico},   {"femto", StepBasic_spFemto},
    {"atto", StepBasic_spAtto}};

template <class Unit>
StepBasic_Unit Made(std::optional<StepBasic_SiPrefix> prefix, StepBasic_SiUnitName name)
{
    handle<Unit> const unit = new Unit;
    unit->Init(prefix.has_value(), prefix.value_or(StepBasic_spMilli), name);
    StepBasic_Unit select;
    select.SetValue(unit);
    return select;
}

}  // namespace

std::optional<StepPropertyUnit> StepPropertyUnit::Of(std::string_view name)
{
    std::optional<StepBasic_SiPrefix> prefix;
    for (auto const& [text, value] : kPrefixes)
        if (!prefix && name.starts_with(text))
        {
            prefix = value;
            name.remove_prefix(text.size());
        }
    if (name == "metre")
        return StepPropertyUnit{"LENGTH_MEASURE", Made<StepBasic_SiUnitAndLengthUnit>(prefix, StepBasic_sunMetre)};
    if (name == "gram")
        return StepPropertyUnit{"MASS_MEASURE", Made<StepBasic_SiUnitAndMassUnit>(prefix, StepBasic_sunGram)};
    if (name == "radian")
        return StepPropertyUnit{"PLANE_ANGLE_MEASURE",
                                Made<StepBasic_SiUnitAndPlaneAngleUnit>(prefix, StepBasic_sunRadian)};
    if (name == "second")
        return StepPropertyUnit{"TIME_MEASURE", Made<StepBasic_SiUnitAndTimeUnit>(prefix, StepBasic_sunSecond)};
    return std::nullopt;
}

}  // namespace KVR

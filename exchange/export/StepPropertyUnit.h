#pragma once

#include <StepBasic_Unit.hxx>
#include <optional>
#include <string>
#include <string_view>

namespace KVR
{

/// A unit of the SI with the type of what is measured in it: "LENGTH_MEASURE".
struct StepPropertyUnit
{
    char const* measure = nullptr;
    StepBasic_Unit unit;

    /// By its name: a prefix or none, and metre, gram, radian or second, as in "millimetre". Nothing for another.
    static std::optional<StepPropertyUnit> Of(std::string_view name);
};

}  // namespace KVR

#include "host/LengthUnitOption.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <vector>

namespace KVR
{

namespace
{

// In the order of their enumerators.
std::vector<std::string> const& Words()
{
    static std::vector<std::string> const words = {"micrometer", "millimeter", "centimeter", "decimeter",
                                                   "meter",      "kilometer",  "microinch",  "mil",
                                                   "inch",       "foot",       "yard",       "mile"};
    return words;
}

}  // namespace

LengthUnitOption::LengthUnitOption(UnitTypeEnum unit) : m_word(WordOfLength(unit)) {}

void LengthUnitOption::AddTo(CLI::App& command, std::string const& name, std::string const& description)
{
    command.add_option(name, m_word, description)
        ->type_name("UNIT")
        ->check(CLI::IsMember(Words()))
        ->capture_default_str();
}

UnitTypeEnum LengthUnitOption::Unit() const
{
    if (m_word.empty())
        return kUnitType_Unknown;
    auto const place = std::find(Words().begin(), Words().end(), m_word) - Words().begin();
    return static_cast<UnitTypeEnum>(kUnitType_Micrometer + place);
}

std::string const& WordOfLength(UnitTypeEnum unit)
{
    return Words().at(static_cast<std::size_t>(unit - kUnitType_Micrometer));
}

}  // namespace KVR

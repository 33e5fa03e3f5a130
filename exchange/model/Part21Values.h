#pragma once

#include <optional>
#include <string>

#include "exchange/model/Part21File.h"

namespace KVR
{

// Parameters by their place, from 0: what is not there or of another kind is empty.

std::string Part21TextAt(Part21File::Values const& values, std::size_t place);
/// 0 for none, which is no entity's number.
Part21File::Number Part21ReferenceAt(Part21File::Values const& values, std::size_t place);
/// Those of a list, also of one with a type, or a single one.
std::vector<Part21File::Number> Part21ReferencesAt(Part21File::Values const& values, std::size_t place);
/// A number, or that of a value with a type.
std::optional<double> Part21NumberAt(Part21File::Values const& values, std::size_t place);

/// A value with its unit.
struct Part21Measure
{
    double value = 0.0;
    /// "LENGTH_MEASURE"; empty for a plain number.
    std::string type;
    Part21File::Number unit = 0;
};
/// Of an entity of a type that has "MEASURE_WITH_UNIT" or "MEASURE_REPRESENTATION_ITEM" in its name.
std::optional<Part21Measure> Part21MeasureOf(Part21File const& file, Part21File::Number number);
/// What a unit of length is in metres, one of angles in radians, or one of mass in grams; 0 for another.
double Part21UnitFactor(Part21File const& file, Part21File::Number unit);
/// What a unit is called: "millimetre", "inch", "kilogram metre^-3"; empty for one without a name, as of plain numbers.
std::string Part21UnitName(Part21File const& file, Part21File::Number unit);
/// A measure whose unit is a power of a unit of length, in that power of metres; nothing for another one.
std::optional<double> Part21PowerOf(Part21File const& file, Part21File::Number number, int power);
/// In grams for each cubic millimetre; nothing for another measure, or one that is not above 0.
std::optional<double> Part21DensityOf(Part21File const& file, Part21File::Number number);

}  // namespace KVR

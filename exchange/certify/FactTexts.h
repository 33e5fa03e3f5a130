#pragma once

#include <string>

#include "exchange/certify/ModelFacts.h"

namespace KVR::Certification
{

// How tables call things, whatever they are read from.

/// A number as a name has it: what differs in the last digits of a calculation is the same.
std::string NumberText(double value);
/// The text of a property: one of numbers with blanks between them as NumberText has them, all else as it is.
std::string PropertyValueText(std::string const& text);
/// A property by its name and the text of its value.
std::string StatedText(std::string const& name, std::string const& value);
/// The name of properties that are texts of notes.
inline constexpr char kProperty_Text[] = "semantic text";
/// A unit by its length in millimetres: "millimetre", "25.4 mm".
std::string UnitName(double millimetres);
/// A direction of length 1; none for none.
FactPoint UnitOf(FactPoint const& direction);
/// Adds a view; directions are made ones of length 1, and up square to that in which it looks.
void AddView(ModelFacts& facts, std::string const& name, FactPoint const& eye, FactPoint const& direction,
             FactPoint const& up);
/// Adds a plane that cuts what a view shows.
void AddCut(ModelFacts& facts, std::string const& view, FactPoint const& origin, FactPoint const& normal);

}  // namespace KVR::Certification

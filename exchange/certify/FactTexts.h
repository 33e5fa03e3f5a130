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
/// A unit by its length in millimetres: "millimetre", "25.4 mm".
std::string UnitName(double millimetres);
/// Adds a view; the direction is made one of length 1.
void AddView(ModelFacts& facts, std::string const& name, FactPoint const& eye, FactPoint const& direction);

}  // namespace KVR::Certification

#pragma once

#include <optional>
#include <string>
#include <vector>

#include "exchange/model/Part21File.h"

namespace KVR
{

/// A datum as the frame of a tolerance names it.
struct StepDatumReference
{
    /// In the frame, from 1.
    int position = 0;
    std::string letter;
    /// "maximum material requirement".
    std::vector<std::string> modifiers;
};

/// What a STEP file says of a dimension or a tolerance, beside what Open CASCADE reads. Lengths are in the unit that
/// the reader was given.
struct StepTolerance
{
    /// Of the entity.
    Part21File::Number number = 0;
    bool isDimension = false;
    std::string name;
    /// The entities of the geometry that it is of.
    std::vector<Part21File::Number> items;

    /// Of a dimension its name in small letters, or "angle".
    std::string type;

    // Of a tolerance.
    std::optional<double> magnitude;
    std::vector<std::string> modifiers;
    std::optional<double> most;
    std::optional<double> displacement;
    std::optional<double> unitSize;
    std::string zone;
    std::optional<double> projection;
    std::vector<StepDatumReference> frame;

    // Of a dimension: what it is, which is no end of a range, lengths alone; "H7", and "hole" or "shaft" where the file
    // says so.
    std::optional<double> value;
    std::string fit;
    std::string fitOf;
};

/// A place on a part that a datum is taken from.
struct StepDatumTarget
{
    /// Of the entity.
    Part21File::Number number = 0;
    std::string letter;
    /// "1".
    std::string id;
    /// "rectangle", "area".
    std::string type;
    std::optional<double> length;
    std::optional<double> width;
    std::optional<double> diameter;
};

struct StepTolerances
{
    std::vector<StepTolerance> tolerances;
    std::vector<StepDatumTarget> targets;

    /// Lengths come in units of so many metres.
    static StepTolerances Of(Part21File const& file, double metresPerUnit);
};

}  // namespace KVR

#pragma once

#include <array>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <variant>
#include <vector>

#include "exchange/model/Part21File.h"

namespace KVR
{

/// A property that a model's author or its validation gave a product or a usage.
struct StepProperty
{
    /// "what the property is: what the value is", or one of the two; of a piece of the shape behind what that is
    /// called: "bore: surface: roughness".
    std::string name;
    std::variant<std::string, double, int, bool> value;
    /// Of a number, what its unit is called; empty for none.
    std::string unit;
};

struct StepMaterial
{
    std::string name;
    std::string description;
    /// In grams for each cubic millimetre.
    std::optional<double> density;
    /// "POSITIVE_RATIO_MEASURE".
    std::string densityType;
};

/// What a STEP file says of a product beside its shape.
struct StepProduct
{
    std::string number;
    std::string name;
    std::string description;
    std::string revision;
    std::string revisionDescription;
    std::vector<std::string> categories;
    StepMaterial material;
    std::vector<StepProperty> properties;
};

/// What a STEP file says of a component in its place.
struct StepUsage
{
    std::string id;
    std::string name;
    std::string description;
    std::string designator;
    std::vector<StepProperty> properties;
};

/// What a STEP file says that a solid measures, so that whoever reads it can check, in powers of metres and in
/// coordinates.
struct StepSolid
{
    std::optional<double> volume;
    std::optional<double> area;
    std::optional<std::array<double, 3>> centroid;
};

/// The products and usages of a STEP file, by the numbers of their entities (PRODUCT_DEFINITION and
/// NEXT_ASSEMBLY_USAGE_OCCURRENCE).
struct StepProductTable
{
    std::unordered_map<Part21File::Number, StepProduct> products;
    std::unordered_map<Part21File::Number, StepUsage> usages;
    /// By the entities of the solids' shapes.
    std::unordered_map<Part21File::Number, StepSolid> solids;
    /// Each property definition that is a property here or that Open CASCADE reads, with what belongs to it.
    std::unordered_set<Part21File::Number> carried;

    static StepProductTable Of(Part21File const& file);
};

}  // namespace KVR

#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace KVR
{

/// What a dimension, a tolerance or a datum says beside its text and what it speaks of, as extension data holds it: a
/// JSON object with the names of the members as keys. Lengths are in the unit of the note's text, angles in degrees.
struct AnnotationDetails
{
    /// The place among the annotations of the model, from 1.
    int number = 0;
    /// "diameter", "position"; empty for a datum, and where the model states none.
    std::string type;
    /// Of a dimension.
    std::optional<double> value;
    std::optional<double> minus;
    std::optional<double> plus;
    std::optional<double> lower;
    std::optional<double> upper;
    /// Those of the references that a distance or an angle goes to; not set for a size.
    std::optional<std::vector<std::string>> second;
    /// Of a datum, and of one that a tolerance names: the id of the tolerance, and the place in its frame, from 1.
    std::string letter;
    std::string tolerance;
    int position = 0;
    /// As ISO 10303 calls them, in small letters.
    std::vector<std::string> modifiers;
    /// Of a dimension: "H7", and "hole" or "shaft".
    std::string fit;
    std::string fitOf;
    /// Of a tolerance: how wide its zone is, the greatest width that a bonus may give, how far the zone lies outside,
    /// the length or area that it is for, the form of the zone and how far it is projected.
    std::optional<double> magnitude;
    std::optional<double> maximum;
    std::optional<double> displacement;
    std::optional<double> unitSize;
    std::string zone;
    std::optional<double> projection;
    /// Of a datum that is taken from a target: its number, its form and its size.
    std::string target;
    std::string targetType;
    std::optional<double> targetLength;
    std::optional<double> targetWidth;

    /// Multiplies the lengths.
    void Scale(double factor);

    std::string Text() const;
    /// Nothing for a text that is no such object; members of another kind count for nothing.
    static std::optional<AnnotationDetails> Of(std::string const& text);
};

// The types by the numbers that Open CASCADE gives them. Two are called "angle": that of a size is the greater.
constexpr int kDimensionType_None = 0;
constexpr int kDimensionType_AngularLocation = 11;
constexpr int kDimensionType_AngularSize = 28;
constexpr int kDimensionType_Label = 30;
constexpr int kDimensionType_Presentation = 31;
constexpr int kToleranceType_None = 0;

/// Empty for a number without a type.
std::string_view DimensionTypeName(int type);
std::string_view ToleranceTypeName(int type);
/// The first type of this name; none for another text.
int DimensionTypeOf(std::string_view name);
int ToleranceTypeOf(std::string_view name);
bool IsAngle(int dimensionType);
/// Whether a dimension of the type lies between two sets of references.
bool IsLocation(int dimensionType);

}  // namespace KVR

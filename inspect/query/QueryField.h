#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace KVR
{

/// What an expression or a column may ask of an occurrence; docs/query.md says what each means.
enum class QueryField : unsigned char
{
    kKind,
    kName,
    kInstanceName,
    kComponentName,
    kId,
    kInstanceId,
    kComponentId,
    kPath,
    kIdPath,
    kLayer,
    kColor,
    kProperty,
    kInstance,
    kVisible,
    kHidden,
    kMirrored,
    kShared,
    kNotes,
    kBody,
    kMesh,
    kDepth,
    kUsers,
    kCount,
    kBoxX,
    kBoxY,
    kBoxZ,
    kBoxMin,
    kBoxMax,
    kBoxDiagonal,
    kArea,
    kVolume,
    kMass
};

/// What the value of a field is. Lengths, areas, volumes and masses are numbers in millimetres, their squares and
/// cubes, and kilograms.
enum class QueryFieldType : unsigned char
{
    /// Texts, of which there may be none or many.
    kText,
    /// A text with a value of any type, by the name of a property.
    kProperty,
    kFlag,
    kNumber,
    kLength,
    kArea,
    kVolume,
    kMass
};

/// What of a scene has to be read for a field, each with what stands before it.
enum class QuerySource : unsigned char
{
    kDocument,
    kProperties,
    /// All side files.
    kStores
};

struct QueryFieldRow
{
    std::string_view name;
    QueryField field;
    QueryFieldType type;
    QuerySource source = QuerySource::kDocument;
};

/// All fields with their names; that of a property is "property".
std::span<QueryFieldRow const> QueryFields();
/// The row of a field.
QueryFieldRow const& RowOf(QueryField field);
/// The row of a name; null for a name that no field has.
QueryFieldRow const* QueryFieldOf(std::string_view name);

/// How much a unit of that name is in the unit of the fields of a type; nothing for a unit of another type, or none.
std::optional<double> UnitFactorOf(QueryFieldType type, std::string_view unit);
/// The units of a type, for a message: "mm, cm, m, in or ft"; empty for a type without.
std::string UnitNamesOf(QueryFieldType type);

/// A field with the name of the property that it asks for, which is empty for others.
struct QueryColumn
{
    QueryField field = QueryField::kPath;
    std::string property = {};
};

}  // namespace KVR

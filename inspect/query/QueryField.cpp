#include "inspect/query/QueryField.h"

#include <algorithm>
#include <iterator>

namespace KVR
{

namespace
{

using Type = QueryFieldType;

// In the order of the enumeration.
constexpr QueryFieldRow kFields[] = {
    {"kind", QueryField::kKind, Type::kText},
    {"name", QueryField::kName, Type::kText},
    {"instance.name", QueryField::kInstanceName, Type::kText},
    {"component.name", QueryField::kComponentName, Type::kText},
    {"id", QueryField::kId, Type::kText},
    {"instance.id", QueryField::kInstanceId, Type::kText},
    {"component.id", QueryField::kComponentId, Type::kText},
    {"path", QueryField::kPath, Type::kText},
    {"idpath", QueryField::kIdPath, Type::kText},
    {"layer", QueryField::kLayer, Type::kText},
    {"color", QueryField::kColor, Type::kText},
    {"property", QueryField::kProperty, Type::kProperty},
    {"instance", QueryField::kInstance, Type::kFlag},
    {"visible", QueryField::kVisible, Type::kFlag},
    {"hidden", QueryField::kHidden, Type::kFlag},
    {"mirrored", QueryField::kMirrored, Type::kFlag},
    {"shared", QueryField::kShared, Type::kFlag},
    {"notes", QueryField::kNotes, Type::kFlag},
    {"body", QueryField::kBody, Type::kFlag},
    {"mesh", QueryField::kMesh, Type::kFlag},
    {"depth", QueryField::kDepth, Type::kNumber},
    {"users", QueryField::kUsers, Type::kNumber},
    {"count", QueryField::kCount, Type::kNumber},
    {"box.x", QueryField::kBoxX, Type::kLength},
    {"box.y", QueryField::kBoxY, Type::kLength},
    {"box.z", QueryField::kBoxZ, Type::kLength},
    {"box.min", QueryField::kBoxMin, Type::kLength},
    {"box.max", QueryField::kBoxMax, Type::kLength},
    {"box.diagonal", QueryField::kBoxDiagonal, Type::kLength},
    {"area", QueryField::kArea, Type::kArea},
    {"volume", QueryField::kVolume, Type::kVolume},
    {"mass", QueryField::kMass, Type::kMass},
};
static_assert(std::size(kFields) == static_cast<std::size_t>(QueryField::kMass) + 1);

struct Unit
{
    std::string_view name;
    QueryFieldType type;
    double factor;
};

constexpr double kInch = 25.4;
constexpr double kFoot = 304.8;
constexpr double kPound = 0.45359237;

constexpr Unit kUnits[] = {
    {"um", Type::kLength, 1e-3},
    {"mm", Type::kLength, 1.0},
    {"cm", Type::kLength, 10.0},
    {"m", Type::kLength, 1e3},
    {"in", Type::kLength, kInch},
    {"ft", Type::kLength, kFoot},
    {"mm2", Type::kArea, 1.0},
    {"cm2", Type::kArea, 100.0},
    {"m2", Type::kArea, 1e6},
    {"in2", Type::kArea, kInch* kInch},
    {"ft2", Type::kArea, kFoot* kFoot},
    {"mm3", Type::kVolume, 1.0},
    {"cm3", Type::kVolume, 1e3},
    {"m3", Type::kVolume, 1e9},
    {"in3", Type::kVolume, kInch* kInch* kInch},
    {"ft3", Type::kVolume, kFoot* kFoot* kFoot},
    {"l", Type::kVolume, 1e6},
    {"g", Type::kMass, 1e-3},
    {"kg", Type::kMass, 1.0},
    {"t", Type::kMass, 1e3},
    {"lb", Type::kMass, kPound},
    {"oz", Type::kMass, kPound / 16.0},
};

}  // namespace

std::span<QueryFieldRow const> QueryFields()
{
    return kFields;
}

QueryFieldRow const& RowOf(QueryField field)
{
    return kFields[static_cast<std::size_t>(field)];
}

QueryFieldRow const* QueryFieldOf(std::string_view name)
{
    auto const* const found = std::find_if(std::begin(kFields), std::end(kFields),
                                           [&](QueryFieldRow const& row) { return row.name == name; });
    return found == std::end(kFields) ? nullptr : found;
}

std::optional<double> UnitFactorOf(QueryFieldType type, std::string_view unit)
{
    for (Unit const& row : kUnits)
        if (row.type == type && row.name == unit)
            return row.factor;
    return std::nullopt;
}

std::string UnitNamesOf(QueryFieldType type)
{
    std::string names;
    std::string_view last;
    for (Unit const& row : kUnits)
    {
        if (row.type != type)
            continue;
        if (!last.empty())
            names += (names.empty() ? "" : ", ") + std::string(last);
        last = row.name;
    }
    return names.empty() ? std::string(last) : names + " or " + std::string(last);
}

}  // namespace KVR

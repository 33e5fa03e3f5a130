#include "inspect/query/QueryField.h"

#include <algorithm>
#include <iterator>

namespace KVR
{

namespace
{

using Source = QuerySource;
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
    {"color", QueryField::kColor, Type::kText, Source::kStores},
    {"property", QueryField::kProperty, Type::kProperty, Source::kProperties},
    {"instance", QueryField::kInstance, Type::kFlag},
    {"visible", QueryField::kVisible, Type::kFlag},
    {"hidden", QueryField::kHidden, Type::kFlag},
    {"mirrored", QueryField::kMirrored, Type::kFlag},
    {"shared", QueryField::kShared, Type::kFlag, Source::kStores},
    {"notes", QueryField::kNotes, Type::kFlag},
    {"body", QueryField::kBody, Type::kFlag, Source::kStores},
    {"mesh", QueryField::kMesh, Type::kFlag, Source::kStores},
    {"depth", QueryField::kDepth, Type::kNumber},
    {"users", QueryField::kUsers, Type::kNumber},
    {"count", QueryField::kCount, Type::kNumber},
    {"box.x", QueryField::kBoxX, Type::kLength, Source::kStores},
    {"box.y", QueryField::kBoxY, Type::kLength, Source::kStores},
    {"box.z", QueryField::kBoxZ, Type::kLength, Source::kStores},
    {"box.min", QueryField::kBoxMin, Type::kLength, Source::kStores},
    {"box.max", QueryField::kBoxMax, Type::kLength, Source::kStores},
    {"box.diagonal", QueryField::kBoxDiagonal, Type::kLength, Source::kStores},
    {"area", QueryField::kArea, Type::kArea, Source::kStores},
    {"volume", QueryField::kVolume, Type::kVolume, Source::kStores},
    {"mass", QueryField::kMass, Type::kMass, Source::kStores},
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

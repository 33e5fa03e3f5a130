#pragma once

#include <array>
#include <optional>
#include <vector>

#include "framework/api/Enums.h"
#include "framework/api/Matrix3d.h"
#include "framework/api/UTF8String.h"

// What the records of objects have in common; SceneRecords.h tells how to read them.
namespace KVR::Authoring
{

using XYZ = std::array<double, 3>;

/// The ids on the way down from the object that speaks, none of which may hold a "]".
using OccurrencePath = std::vector<UTF8String>;

/// A colour as fractions from 0 to 1 of sRGB, not linear.
struct ColorRecord
{
    double red = 0.0;
    double green = 0.0;
    double blue = 0.0;
    double alpha = 1.0;
};

/// "Unit": the unit of lengths, and those in which to show lengths and angles.
struct UnitRecord
{
    std::optional<UnitTypeEnum> length;
    std::optional<UnitTypeEnum> displayLength;
    std::optional<UnitTypeEnum> displayAngle;
};

/// "ExtensionData": content that a host asks for by its type id.
struct ExtensionDataRecord
{
    UTF8String typeId;
    UTF8String content;
    std::optional<OccurrencePath> occurrencePath;
    std::optional<UnitTypeEnum> lengthUnit;
    std::optional<Matrix3d> transform;
};

/// What every object has.
struct ObjectRecord
{
    UTF8String id;
    UTF8String label;
    std::optional<UTF8String> versionPersistentId;
    std::optional<UTF8String> changeKey;
    std::vector<ExtensionDataRecord> extensionData;
};

/// An object that shows. Styles are ids.
struct ShownRecord : ObjectRecord
{
    bool isVisible = true;
    std::vector<UTF8String> styles;
    std::vector<UTF8String> netStyles;
};

/// "Tolerance": an angle, a distance, and a difference of parameters.
struct ToleranceRecord
{
    std::optional<double> angular;
    std::optional<double> linear;
    std::optional<double> parameter;
};

/// Geometry with a place of its own.
struct GeometryRecord : ShownRecord
{
    UnitRecord unit;
    std::optional<Matrix3d> transform;
    std::optional<ToleranceRecord> tolerance;
};

}  // namespace KVR::Authoring

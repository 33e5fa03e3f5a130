#pragma once

namespace KVR
{

/// Whether a getter wrote its output argument. It may hold any number: IText::TextJustification answers its own value.
enum IsValueSpecifiedEnum : int
{
    kIsValueSpecified_No = 0,
    kIsValueSpecified_Yes = 1
};

/// The snapshot that a change key is asked for; passed through, never tested by the producer.
enum SnapshotVersionEnum : int
{
    kSnapshotVersion_Current = 0
};

/// Result of the curve data operations; every value but 0 means that there is no answer.
enum DataReturnCodeEnum : int
{
    kDataReturnCode_Ok = 0,
    kDataReturnCode_NotAvailable = 1,
    kDataReturnCode_BadArgument = 2
};

/// Who reports an exception.
enum ComponentRoleEnum : int
{
    kComponentRole_Unknown = 0,
    kComponentRole_Host = 1,
    kComponentRole_Producer = 2
};

/// Units of length, angle, mass and time. The text of a unit is its enumerator's name.
enum UnitTypeEnum : int
{
    kUnitType_Unknown = 0,

    kUnitType_Micrometer = 1,
    kUnitType_Millimeter,
    kUnitType_Centimeter,
    kUnitType_Decimeter,
    kUnitType_Meter,
    kUnitType_Kilometer,
    kUnitType_Microinch,
    kUnitType_Mil,
    kUnitType_Inch,
    kUnitType_Foot,
    kUnitType_Yard,
    kUnitType_Mile,

    kUnitType_Radian = 32,
    kUnitType_Degree,
    kUnitType_Gradian,

    kUnitType_Milligram = 48,
    kUnitType_Gram,
    kUnitType_Kilogram,
    kUnitType_Tonne,
    kUnitType_Ounce,
    kUnitType_Pound,
    kUnitType_Slug,

    kUnitType_Millisecond = 64,
    kUnitType_Second,
    kUnitType_Minute,
    kUnitType_Hour,
    kUnitType_Day
};

/// The kind of a property's value.
enum PropertyTypeEnum : int
{
    kPropertyType_String = 0,
    kPropertyType_Int = 1,
    kPropertyType_Double = 2,
    kPropertyType_Bool = 3,
    kPropertyType_Time = 4
};

}  // namespace KVR

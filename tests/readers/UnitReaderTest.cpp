#include "readers/UnitReader.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/ParsedDocument.h"

namespace KVR::Test
{

namespace
{

// What a caller holds before it reads.
struct Read
{
    bool answer = false;
    UnitTypeEnum length = kUnitType_Mile;
    UnitTypeEnum displayAngle = kUnitType_Gradian;
    UnitTypeEnum displayLength = kUnitType_Yard;
    double angular = 7.0;
    double linear = 8.0;
    double param = 9.0;

    std::vector<UnitTypeEnum> Units() const { return {length, displayAngle, displayLength}; }
    std::vector<double> Tolerances() const { return {angular, linear, param}; }
};

using Units = std::vector<UnitTypeEnum>;
using Tolerances = std::vector<double>;

Read Unit(std::string const& element)
{
    ParsedDocument const document(element);
    Read read;
    read.answer = ReadUnit(document.Root(), read.length, read.displayAngle, read.displayLength);
    return read;
}

Read Tolerance(std::string const& element)
{
    ParsedDocument const document(element);
    Read read;
    read.answer = ReadTolerance(document.Root(), read.angular, read.linear, read.param);
    return read;
}

Read UnitAndTolerance(std::string const& element, bool angular = true, bool linear = true, bool param = true)
{
    ParsedDocument const document(element);
    Read read;
    read.answer = ReadUnitAndTolerance(document.Root(), read.length, angular ? &read.angular : nullptr,
                                       linear ? &read.linear : nullptr, param ? &read.param : nullptr);
    return read;
}

}  // namespace

TEST(ReadUnit, TakesThreeUnits)
{
    Read const read = Unit(R"(<Unit LengthUnit="kUnitType_Millimeter" DisplayAngleUnit="kUnitType_Degree"
                                    DisplayLengthUnit="kUnitType_Inch"/>)");
    EXPECT_TRUE(read.answer);
    EXPECT_EQ(read.Units(), (Units{kUnitType_Millimeter, kUnitType_Degree, kUnitType_Inch}));
}

TEST(ReadUnit, LeavesTheDisplayAngleUnitAloneWhenItIsAbsentOrEmpty)
{
    for (char const* const angle : {"", R"(DisplayAngleUnit="")"})
    {
        Read const read = Unit(
            std::string(R"(<Unit LengthUnit="kUnitType_Meter" DisplayLengthUnit="kUnitType_Foot" )") + angle + "/>");
        EXPECT_TRUE(read.answer);
        EXPECT_EQ(read.Units(), (Units{kUnitType_Meter, kUnitType_Gradian, kUnitType_Foot})) << angle;
    }
}

TEST(ReadUnit, AnswersWhetherTheDisplayLengthUnitConverted)
{
    Read read = Unit(R"(<Unit LengthUnit="kUnitType_Meter"/>)");
    EXPECT_FALSE(read.answer) << "an absent one is an empty text, which is no unit";
    EXPECT_EQ(read.Units(), (Units{kUnitType_Meter, kUnitType_Gradian, kUnitType_Yard}));
    read = Unit(R"(<Unit LengthUnit="metre" DisplayAngleUnit="degree" DisplayLengthUnit="kUnitType_Foot"/>)");
    EXPECT_TRUE(read.answer) << "the others do not count";
    EXPECT_EQ(read.Units(), (Units{kUnitType_Mile, kUnitType_Gradian, kUnitType_Foot}));
    read = Unit(R"(<Unit LengthUnit="kUnitType_Meter" DisplayLengthUnit="kunittype_foot"/>)");
    EXPECT_FALSE(read.answer) << "names are compared exactly";
}

TEST(ReadUnit, AnswersFalseForANullNodeAndForAnyOtherName)
{
    Read read;
    EXPECT_FALSE(ReadUnit(nullptr, read.length, read.displayAngle, read.displayLength));
    for (char const* const name : {"unit", "UNIT", "Units", "UnitAndTolerance"})
    {
        read = Unit(std::string("<") + name + R"( LengthUnit="kUnitType_Meter" DisplayLengthUnit="kUnitType_Meter"/>)");
        EXPECT_FALSE(read.answer) << name;
        EXPECT_EQ(read.Units(), Read().Units()) << name;
    }
    ParsedDocument const document(R"(<Scene><?Unit LengthUnit="kUnitType_Meter"?></Scene>)");
    EXPECT_FALSE(ReadUnit(document.FirstNamed(u"Unit"), read.length, read.displayAngle, read.displayLength));
}

TEST(ReadTolerance, TakesThreeNumbers)
{
    Read const read = Tolerance(R"(<Tolerance AngularTolerance="0.1" LinearTolerance="1e-3" ParamTolerance="0"/>)");
    EXPECT_TRUE(read.answer);
    EXPECT_EQ(read.Tolerances(), (Tolerances{0.1, 0.001, 0.0}));
}

TEST(ReadTolerance, LeavesWhatDoesNotConvertAloneAndAnswersForTheLast)
{
    Read read = Tolerance(R"(<Tolerance AngularTolerance="small" ParamTolerance="1"/>)");
    EXPECT_TRUE(read.answer);
    EXPECT_EQ(read.Tolerances(), (Tolerances{7.0, 8.0, 1.0}));
    read = Tolerance(R"(<Tolerance AngularTolerance="1" LinearTolerance="2"/>)");
    EXPECT_FALSE(read.answer);
    EXPECT_EQ(read.Tolerances(), (Tolerances{1.0, 2.0, 9.0}));
}

TEST(ReadTolerance, InAnotherCaseAnswersFalseWithoutReading)
{
    Read read;
    EXPECT_FALSE(ReadTolerance(nullptr, read.angular, read.linear, read.param));
    for (char const* const name : {"tolerance", "TOLERANCE", "UnitAndTolerance"})
    {
        read = Tolerance(std::string("<") + name + R"( AngularTolerance="1" LinearTolerance="1" ParamTolerance="1"/>)");
        EXPECT_FALSE(read.answer) << name;
        EXPECT_EQ(read.Tolerances(), Read().Tolerances()) << name;
    }
}

TEST(ReadUnitAndTolerance, TakesAUnitAndThreeNumbers)
{
    Read const read = UnitAndTolerance(R"(<UnitAndTolerance LengthUnit="kUnitType_Meter" AngularTolerance="1"
        LinearTolerance="2" ParamTolerance="3" DisplayLengthUnit="kUnitType_Foot"/>)");
    EXPECT_TRUE(read.answer);
    EXPECT_EQ(read.Units(), (Units{kUnitType_Meter, kUnitType_Gradian, kUnitType_Yard})) << "no display unit is read";
    EXPECT_EQ(read.Tolerances(), (Tolerances{1.0, 2.0, 3.0}));
}

TEST(ReadUnitAndTolerance, WithNullPointersReadsTheLengthUnitOnly)
{
    char const* const element = R"(<UnitAndTolerance LengthUnit="kUnitType_Meter" AngularTolerance="1"
        LinearTolerance="2" ParamTolerance="3"/>)";
    Read read = UnitAndTolerance(element, false, false, false);
    EXPECT_TRUE(read.answer);
    EXPECT_EQ(read.length, kUnitType_Meter);
    EXPECT_EQ(read.Tolerances(), Read().Tolerances());
    read = UnitAndTolerance(element, false, true, false);
    EXPECT_EQ(read.Tolerances(), (Tolerances{7.0, 2.0, 9.0}));
}

TEST(ReadUnitAndTolerance, AnswersForItsLastConversion)
{
    char const* const badUnit = R"(<UnitAndTolerance LengthUnit="metre" AngularTolerance="1" ParamTolerance="x"/>)";
    EXPECT_FALSE(UnitAndTolerance(badUnit, false, false, false).answer) << "the unit";
    EXPECT_TRUE(UnitAndTolerance(badUnit, true, false, false).answer) << "the angular tolerance";
    EXPECT_FALSE(UnitAndTolerance(badUnit, true, true, false).answer) << "the absent linear tolerance";
    EXPECT_FALSE(UnitAndTolerance(badUnit).answer) << "the tolerance that is no number";
}

TEST(ReadUnitAndTolerance, AnswersFalseForANullNodeAndForAnyOtherName)
{
    Read read;
    EXPECT_FALSE(ReadUnitAndTolerance(nullptr, read.length, nullptr, nullptr, nullptr));
    for (char const* const name : {"unitandtolerance", "UNITANDTOLERANCE", "Unit", "Tolerance"})
    {
        read = UnitAndTolerance(std::string("<") + name + R"( LengthUnit="kUnitType_Meter" AngularTolerance="1"/>)");
        EXPECT_FALSE(read.answer) << name;
        EXPECT_EQ(read.Units(), Read().Units()) << name;
        EXPECT_EQ(read.Tolerances(), Read().Tolerances()) << name;
    }
}

}  // namespace KVR::Test
